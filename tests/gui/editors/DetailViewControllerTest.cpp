// The detail panel: its box, the form filled from the entry selected when a
// refresh's fade-out ends, and the controls turned into the document's verbs
// (the form's rules themselves are the core's). The form shows current values:
// edits made anywhere, the net amount of what is typed, the reason a name is
// not taken, and a gross amount that split bookings decide.
#include "editors/DetailViewController.h"
#include "app/Document.h"
#include "editors/DetailBox.h"
#include "entrylist/EntryTableModel.h"
#include "entrylist/FormEdit.h"
#include "entrylist/ShownText.h"
#include "gui/support/Recorders.h"
#include "model/Kategorien.h"
#include "platform/DateField.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QTest>
#include <QUndoStack>
#include <gtest/gtest.h>

namespace saldo::gui {
namespace {

using namespace testing;

const std::vector<std::string> kList = { "1000 Kasse Kasse ", "1200 Bank Bank ", "8400 Erlöse 19% USt Gesch. " };

class DetailViewControllerTest : public ::testing::Test {
protected:
    DetailViewControllerTest()
    {
        defaults.setStringArray(Kategorien::kKey, kList);
        entry = Einnahme::make("Miete", "1200 Bank Bank ", 119.0f, 19.0f);
        document.replaceAllEntries({ entry });
        show(entry);
    }
    // Shows the entry as the entry list does and lets both fades run to their end.
    void show(const EinnahmePtr& e)
    {
        panel.showEntry(e);
        panel.finishAnimationsForTesting();
    }
    static void expectColor(const QColor& actual, double r, double g, double b)
    {
        EXPECT_NEAR(actual.redF(), r, 1.0 / 255) << actual.name().toStdString();
        EXPECT_NEAR(actual.greenF(), g, 1.0 / 255) << actual.name().toStdString();
        EXPECT_NEAR(actual.blueF(), b, 1.0 / 255) << actual.name().toStdString();
    }
    // The steps after the fixture's own, the load of its entries.
    int steps() const { return document.undoManager()->count() - 1; }

    InMemoryUserDefaults defaults;
    Document document { defaults };
    DetailViewController panel { document, defaults };
    EinnahmePtr entry;
};

TEST_F(DetailViewControllerTest, ARefreshFillsTheFormAndTheBoxsColoursFromTheEntrySelectedWhenItsFadeOutEnds)
{
    expectColor(panel.box()->fillColor(), 0.0, 1.0, 0.0);
    auto honorar = Einnahme::make("Honorar", "1000 Kasse Kasse ", 50.0f, 0.0f);
    honorar->setArt(kArtAusgabe);
    panel.setSelectedEinnahme(honorar);
    panel.updateDetailView();
    EXPECT_EQ(panel.nameField()->text(), "Miete"); // the fade-out is under way
    panel.setSelectedEinnahme(entry);
    panel.finishAnimationsForTesting();
    EXPECT_EQ(panel.nameField()->text(), "Miete");
    // The colours of the refresh's start, an expense's.
    expectColor(panel.box()->fillColor(), 1.0, 0.5, 0.0);
    expectColor(panel.box()->borderColor(), 1.0, 0.0, 0.0);
    EXPECT_EQ(panel.kategoriePopUp()->currentText(), "1200 Bank Bank ");
    EXPECT_EQ(steps(), 0); // filling the controls is no edit

    // No entry: hidden at once, and no fade brings it back.
    panel.showEntry(nullptr);
    EXPECT_FALSE(panel.box()->isEnabled());
    panel.finishAnimationsForTesting();
    EXPECT_EQ(panel.boxOpacity(), 0.0);
}

TEST_F(DetailViewControllerTest, ReturnTakesTheFormOverAsOneStepThatCanBeUndoneButNoNameTooShort)
{
    const std::uint64_t posts = NotificationCenter::defaultCenter().postCount(kDetailViewUpdated);
    panel.rechnungsnummerField()->setText("R-1");
    panel.bruttoField()->setText("1.234,56");
    QTest::keyClicks(panel.nameField(), "n");
    QTest::keyClick(panel.nameField(), Qt::Key_Return);
    EXPECT_EQ(entry->name(), "Mieten");
    EXPECT_EQ(entry->rechnungsnummer(), "R-1");
    EXPECT_FLOAT_EQ(entry->brutto(), 1234.56f);
    EXPECT_EQ(steps(), 1);
    EXPECT_EQ(NotificationCenter::defaultCenter().postCount(kDetailViewUpdated), posts + 1);
    // Leaving the field afterwards takes nothing over again.
    QFocusEvent out(QEvent::FocusOut, Qt::TabFocusReason);
    QApplication::sendEvent(panel.nameField(), &out);
    EXPECT_EQ(steps(), 1);

    // A name too short is framed with its reason and takes nothing over.
    panel.nameField()->setText("Ab");
    EXPECT_EQ(panel.nameField()->toolTip().toStdString(), FormEdit::kNameTooShort);
    EXPECT_FALSE(panel.nameField()->styleSheet().isEmpty());
    panel.textFieldEdited();
    EXPECT_EQ(steps(), 1);
    panel.nameField()->setText("Abc");
    EXPECT_TRUE(panel.nameField()->toolTip().isEmpty() && panel.nameField()->styleSheet().isEmpty());
    panel.nameField()->setText("Mieten");

    // A text the amount reader refuses shows the stored amount again.
    panel.bruttoField()->setText("zwoelf");
    panel.textFieldEdited();
    EXPECT_EQ(panel.bruttoField()->text(), "1234,56");

    document.undoManager()->undo();
    EXPECT_EQ(entry->name(), "Miete");
    EXPECT_EQ(panel.bruttoField()->text(), "119,00"); // the form follows the undo at once
}

TEST_F(DetailViewControllerTest, TheFormShowsCurrentValuesWhereverTheyChange)
{
    // The net amount follows what is typed.
    QLineEdit* brutto = panel.bruttoField();
    brutto->selectAll();
    QTest::keyClicks(brutto, "238");
    EXPECT_EQ(panel.nettoField()->text(), "200,00");
    panel.textFieldEdited();

    // An edit made elsewhere (a table cell) shows at once, colours included.
    document.editCell(0, EntryColumn::Art, CellEdit::ItemIndex { 1 });
    document.editCell(0, EntryColumn::Brutto, CellEdit::Text { "59,50" });
    EXPECT_EQ(panel.nettoField()->text(), "50,00");
    EXPECT_EQ(panel.artPopUp()->currentIndex(), 1);
    expectColor(panel.box()->fillColor(), 1.0, 0.5, 0.0);

    // Split bookings decide the gross amount: the field cannot be typed in.
    document.editEntry(entry, [](Einnahme& e) { e.setChildTransactions({ Einnahme::make("Teil", "", 5.0f, 0.0f) }); });
    EXPECT_TRUE(panel.bruttoField()->isReadOnly());
}

TEST_F(DetailViewControllerTest, PopUpsBoxesAndTheDateAreStepsOfTheirOwn)
{
    panel.artPopUp()->setCurrentIndex(1); // a programmatic change is no edit
    EXPECT_EQ(entry->art(), kArtEinnahme);
    emit panel.artPopUp()->activated(1);
    EXPECT_EQ(entry->art(), kArtAusgabe);

    panel.kategoriePopUp()->setCurrentIndex(2);
    emit panel.kategoriePopUp()->activated(2);
    EXPECT_EQ(entry->kategorie(), kList[2]);

    entry->setIsNonEU(true);
    panel.innergemCheckBox()->click();
    EXPECT_TRUE(entry->innergemeinschaftlicherErwerb());
    EXPECT_FALSE(panel.nonEUCheckBox()->isChecked()); // the other box shows the cleared flag at once

    const QDateTime chosen(QDate(2024, 3, 1), QTime(9, 30, 15));
    QTest::keyClicks(panel.datumPicker(), chosen.toString(QStringLiteral("dd.MM.yyyy HH:mm:ss")));
    QTest::keyClick(panel.datumPicker(), Qt::Key_Return);
    // 2024-03-01 09:30:15 in Berlin is 08:30:15 UTC: 730974615 s after 2001-01-01.
    EXPECT_EQ(entry->datum(), 730974615.0);
    EXPECT_EQ(steps(), 4);

    // A category outside the list (renamed in the preferences) shows as
    // itself, marked, where it used to show as empty; it is kept, and
    // choosing it again changes nothing.
    entry->setKategorie("0815 Gibt es nicht ");
    show(entry);
    QComboBox* popUp = panel.kategoriePopUp();
    EXPECT_EQ(popUp->currentText(), QStringLiteral("0815 Gibt es nicht  (nicht in der Liste)"));
    EXPECT_EQ(popUp->count(), static_cast<int>(kList.size()) + 2); // the entry's own and a separator
    emit popUp->activated(0);
    panel.textFieldEdited();
    EXPECT_EQ(entry->kategorie(), "0815 Gibt es nicht ");
    popUp->setCurrentIndex(3);
    emit popUp->activated(3);
    EXPECT_EQ(entry->kategorie(), kList[1]);
    EXPECT_EQ(popUp->count(), static_cast<int>(kList.size())); // in the list again
}

// A 64 MiB name took 56 s and 2.6 GB to open in a window. Cells and the
// form show a view of a long text, which cannot be edited there, and taking
// the form over keeps the whole text.
TEST_F(DetailViewControllerTest, ALongTextShowsAsAViewInCellsAndFormAndStaysWhole)
{
    const std::string longName = "Notiz " + std::string(1 << 20, 'x');
    const EinnahmePtr longEntry = Einnahme::make(longName, "", 10.0f, 19.0f);
    longEntry->setRechnungsnummer(std::string(ShownText::kMostShown + 1, '7'));
    document.replaceAllEntries({ longEntry, entry });

    const EntryTableModel& model = *document.model();
    const int name = EntryColumn::Name;
    const int rechnungsnummer = EntryColumn::Rechnungsnummer;
    EXPECT_EQ(model.index(0, name).data().toString().size(), qsizetype(ShownText::kMostShown));
    EXPECT_EQ(model.index(0, rechnungsnummer).data(Qt::EditRole).toString().size(), qsizetype(ShownText::kMostShown));
    EXPECT_FALSE(model.index(0, name).flags() & Qt::ItemIsEditable);
    EXPECT_FALSE(model.index(0, rechnungsnummer).flags() & Qt::ItemIsEditable);
    EXPECT_TRUE(model.index(1, name).flags() & Qt::ItemIsEditable);

    show(longEntry);
    EXPECT_EQ(panel.nameField()->text().size(), qsizetype(ShownText::kMostShown));
    EXPECT_TRUE(panel.nameField()->isReadOnly());
    EXPECT_FALSE(panel.leistungsartField()->isReadOnly());
    // Another field edited and taken over: the long texts stay whole.
    const int before = steps();
    QTest::keyClicks(panel.leistungsartField(), "Beratung");
    QTest::keyClick(panel.leistungsartField(), Qt::Key_Return);
    EXPECT_EQ(longEntry->leistungsart(), "Beratung");
    EXPECT_EQ(longEntry->name(), longName);
    EXPECT_EQ(longEntry->rechnungsnummer().size(), ShownText::kMostShown + 1);
    EXPECT_EQ(steps(), before + 1);
}

} // namespace
} // namespace saldo::gui
