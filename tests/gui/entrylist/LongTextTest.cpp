// A 64 MiB name took 56 s and 2.6 GB to open in a window. Cells and the
// detail form show a view of a long text, which cannot be edited there, and
// taking the form over keeps the whole text.
#include "app/Document.h"
#include "editors/DetailViewController.h"
#include "entrylist/EntryColumn.h"
#include "entrylist/EntryTableModel.h"
#include "entrylist/ShownText.h"
#include "platform/UserDefaults.h"

#include <QLineEdit>
#include <QTest>
#include <QUndoStack>
#include <gtest/gtest.h>

namespace saldo::gui {
namespace {

TEST(LongTextTest, CellsAndTheFormShowAViewAndKeepTheWholeText)
{
    InMemoryUserDefaults defaults;
    Document document(defaults);
    const std::string longName = "Notiz " + std::string(1 << 20, 'x');
    const EinnahmePtr longEntry = Einnahme::make(longName, "", 10.0f, 19.0f);
    longEntry->setRechnungsnummer(std::string(ShownText::kMostShown + 1, '7'));
    document.replaceAllEntries({ longEntry, Einnahme::make("Miete", "", 500.0f, 19.0f) });

    const EntryTableModel& model = *document.model();
    const int name = EntryColumn::Name;
    const int rechnungsnummer = EntryColumn::Rechnungsnummer;
    EXPECT_EQ(model.index(0, name).data().toString().size(), qsizetype(ShownText::kMostShown));
    EXPECT_EQ(model.index(0, rechnungsnummer).data(Qt::EditRole).toString().size(), qsizetype(ShownText::kMostShown));
    EXPECT_FALSE(model.index(0, name).flags() & Qt::ItemIsEditable);
    EXPECT_FALSE(model.index(0, rechnungsnummer).flags() & Qt::ItemIsEditable);
    EXPECT_TRUE(model.index(1, name).flags() & Qt::ItemIsEditable);

    DetailViewController panel(document, defaults);
    panel.showEntry(longEntry);
    panel.finishAnimationsForTesting();
    EXPECT_EQ(panel.nameField()->text().size(), qsizetype(ShownText::kMostShown));
    EXPECT_TRUE(panel.nameField()->isReadOnly());
    EXPECT_FALSE(panel.leistungsartField()->isReadOnly());
    // Another field edited and taken over: the long texts stay whole.
    const int steps = document.undoManager()->count();
    QTest::keyClicks(panel.leistungsartField(), "Beratung");
    QTest::keyClick(panel.leistungsartField(), Qt::Key_Return);
    EXPECT_EQ(longEntry->leistungsart(), "Beratung");
    EXPECT_EQ(longEntry->name(), longName);
    EXPECT_EQ(longEntry->rechnungsnummer().size(), ShownText::kMostShown + 1);
    EXPECT_EQ(document.undoManager()->count(), steps + 1);
}

} // namespace
} // namespace saldo::gui
