// The preferences window: each change of the category list stored whole and
// heard by an open ledger's pop-ups, drops through the model's MIME data, the
// income limit field, the one window of the program, and a store left alone
// until the person changes the list.
#include "settings/PreferencesViewController.h"
#include "app/Document.h"
#include "app/DocumentController.h"
#include "app/DocumentWindow.h"
#include "app/WindowActions.h"
#include "entrylist/EntryColumn.h"
#include "entrylist/EntryTableModel.h"
#include "evaluation/CalcEngine.h"
#include "gui/support/LedgerFixtures.h"
#include "gui/support/Recorders.h"
#include "gui/support/ScriptedDialogs.h"
#include "model/Kategorien.h"
#include "settings/CategoryListModel.h"

#include <QAbstractItemModelTester>
#include <QAction>
#include <QLineEdit>
#include <QMimeData>
#include <QTableView>
#include <QTemporaryDir>
#include <QUndoStack>
#include <QTest>
#include <gtest/gtest.h>

#include <memory>

namespace saldo::gui {
namespace {

using namespace testing;
using List = std::vector<std::string>;

QStringList popUpItems(const Document& document)
{
    EntryTableModel* model = document.model();
    return model->data(model->index(0, EntryColumn::Kategorie), EntryTableModel::ItemsRole).toStringList();
}

QStringList qt(const List& list)
{
    QStringList texts;
    for (const auto& text : list)
        texts << QString::fromStdString(text);
    return texts;
}

TEST(PreferencesViewControllerTest, EveryChangeIsStoredWholeAndReachesAnOpenLedgersPopUps)
{
    InMemoryUserDefaults defaults;
    // A stored value that is not a list of texts: the default chart is shown
    // and the value stays until the first change replaces it.
    defaults.setRawValue(Kategorien::kKey, { true, { std::string("1000 Kasse Kasse "), std::nullopt } });
    auto document = shownDocument(defaults, 2);
    PreferencesViewController preferences(defaults);
    EXPECT_EQ(preferences.containerArray(), Kategorien::defaultKategorien());
    EXPECT_EQ(defaults.writeCount(), 0);
    QAbstractItemModelTester tester(preferences.tableView()->model());
    const auto stored = [&] { return *defaults.stringArray(Kategorien::kKey); };
    const PostCounter posted(kDetailViewUpdated);

    DiagnosticRecorder lines;
    preferences.addEntry();
    EXPECT_EQ(lines.lines, (List { "174", "175" }));
    ASSERT_EQ(stored().size(), 175u);
    EXPECT_EQ(stored().back(), "Neu");
    EXPECT_EQ(preferences.selectedRow(), 174);
    EXPECT_EQ(popUpItems(*document), qt(stored()));

    // A rename takes the text as typed, the empty text included.
    QAbstractItemModel* model = preferences.tableView()->model();
    EXPECT_TRUE(model->setData(model->index(174, 0), QString()));
    EXPECT_EQ(stored().back(), "");
    EXPECT_EQ(popUpItems(*document).back(), QString());

    preferences.tableView()->selectRow(0);
    preferences.removeEntry();
    EXPECT_EQ(stored().size(), 174u);
    EXPECT_EQ(stored().front(), Kategorien::defaultKategorien()[1]);
    EXPECT_EQ(popUpItems(*document), qt(stored()));
    EXPECT_EQ(posted.count(), 3u);

    preferences.tableView()->clearSelection();
    const int writes = defaults.writeCount();
    preferences.removeEntry();
    EXPECT_EQ(defaults.writeCount(), writes) << "removing without a selected row does nothing";
}

TEST(PreferencesViewControllerTest, RowsTravelAsDecimalNumbersAndOnlyDropsBetweenRowsAreTaken)
{
    InMemoryUserDefaults defaults;
    defaults.setStringArray(Kategorien::kKey, { "A", "B", "C", "D" });
    PreferencesViewController preferences(defaults);
    QAbstractItemModel* model = preferences.tableView()->model();
    QAbstractItemModelTester tester(model);
    const QString type = QString::fromLatin1(CategoryListModel::kDragDropType);

    preferences.tableView()->selectRow(0);
    preferences.tableView()->selectionModel()->select(
        model->index(1, 0), QItemSelectionModel::Select | QItemSelectionModel::Rows);
    const std::unique_ptr<QMimeData> dragged(model->mimeData({ model->index(1, 0), model->index(0, 0) }));
    EXPECT_EQ(dragged->data(type), "0\n1");

    EXPECT_FALSE(model->dropMimeData(dragged.get(), Qt::MoveAction, -1, -1, model->index(3, 0)));
    EXPECT_EQ(preferences.containerArray(), (List { "A", "B", "C", "D" }));

    const PostCounter posted(kDetailViewUpdated);
    EXPECT_TRUE(model->dropMimeData(dragged.get(), Qt::MoveAction, 3, 0, {}));
    EXPECT_EQ(preferences.containerArray(), (List { "C", "A", "B", "D" }));
    EXPECT_EQ(defaults.stringArray(Kategorien::kKey), preferences.containerArray());
    EXPECT_EQ(posted.count(), 1u);
    // The selection moved with its rows.
    EXPECT_EQ(preferences.tableView()->selectionModel()->selectedRows().size(), 2);
    EXPECT_TRUE(preferences.tableView()->selectionModel()->isRowSelected(1));
    EXPECT_TRUE(preferences.tableView()->selectionModel()->isRowSelected(2));
}

TEST(PreferencesViewControllerTest, OneWindowForEveryLedgerAndALimitReadInCNotation)
{
    InMemoryUserDefaults defaults;
    auto document = shownDocument(defaults, 1);
    einnahmenLimit().reset();
    QAction* open = document->windowController()->actions()->preferencesAction();
    EXPECT_EQ(open->shortcut(), QKeySequence(QStringLiteral("Ctrl+,")));
    open->trigger();
    PreferencesViewController* preferences = PreferencesViewController::openPreferences();
    ASSERT_TRUE(preferences);
    EXPECT_FALSE(preferences->isModal());
    EXPECT_FALSE(preferences->parentWidget());
    EXPECT_EQ(preferences->size(), QSize(450, 300));
    open->trigger();
    EXPECT_EQ(PreferencesViewController::openPreferences(), preferences);

    QLineEdit* field = preferences->maxEinnahmenLimit();
    field->setText(QStringLiteral("1000.50"));
    emit field->editingFinished();
    EXPECT_EQ(einnahmenLimit(), 1000.5f);

    // Escape in a cell being edited abandons the edit; in the table it closes the window.
    preferences->tableView()->setCurrentIndex(preferences->tableView()->model()->index(0, 0));
    preferences->tableView()->edit(preferences->tableView()->currentIndex());
    QWidget* cell = preferences->tableView()->indexWidget(preferences->tableView()->currentIndex());
    ASSERT_TRUE(cell);
    QTest::keyClick(cell, Qt::Key_Escape);
    EXPECT_TRUE(preferences->isVisible());
    QTest::keyClick(preferences->tableView(), Qt::Key_Escape);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_FALSE(PreferencesViewController::openPreferences());
    open->trigger();
    EXPECT_EQ(PreferencesViewController::openPreferences()->maxEinnahmenLimit()->text(), QStringLiteral("1000.5"));
    delete PreferencesViewController::openPreferences();
    einnahmenLimit().reset();
}

// A rename used to leave the entries with a category the list no longer
// held, shown as empty. Now the open ledgers are asked whether their entries
// follow; if so, each ledger renames them in one step of its own.
TEST(PreferencesViewControllerTest, ARenameIsOfferedToTheOpenLedgersAsOneStepEach)
{
    InMemoryUserDefaults defaults;
    defaults.setStringArray(Kategorien::kKey, { "4930 Buerobedarf ", "8400 Erloese " });
    QTemporaryDir dir;
    ScriptedDialogs dialogs;
    DocumentController controller(defaults);
    auto entry = [](const char* name, const char* kategorie) { return Einnahme::make(name, kategorie, 1.0f, 19.0f); };
    const EinnahmeList a { entry("Papier", "4930 Buerobedarf ") };
    a[0]->setChildTransactions({ entry("Toner", "4930 Buerobedarf ") });
    const EinnahmeList b { entry("Ordner", "4930 Buerobedarf "), entry("Honorar", "8400 Erloese ") };
    std::vector<Document*> documents;
    for (const auto& [name, entries] : { std::pair { "A.saldo", a }, std::pair { "B.saldo", b } }) {
        ASSERT_TRUE(writeBytes(dir.filePath(QString::fromLatin1(name)), encoded(entries)));
        documents.push_back(controller.openDocument(dir.filePath(QString::fromLatin1(name))));
        ASSERT_TRUE(documents.back());
    }
    const auto kategorien = [&](const Document* document) {
        List texts;
        for (const auto& e : document->backupEinnahmen()) {
            texts.push_back(e->kategorie());
            for (const auto& child : e->childTransactions())
                texts.push_back(child->kategorie());
        }
        return texts;
    };
    QAbstractItemModel* model = controller.showPreferences()->tableView()->model();

    // Declined: the entries keep their text, no step.
    dialogs.confirmAnswers = { false, true };
    ASSERT_TRUE(model->setData(model->index(1, 0), QStringLiteral("8400 Erlöse ")));
    ASSERT_EQ(dialogs.asked.size(), 1);
    EXPECT_TRUE(dialogs.asked[0].startsWith(QStringLiteral("Ein Eintrag der geoeffneten Dokumente traegt")));
    EXPECT_EQ(kategorien(documents[1]), (List { "4930 Buerobedarf ", "8400 Erloese " }));
    EXPECT_EQ(documents[1]->undoManager()->count(), 0);

    // Taken: every entry carrying the old text, split bookings included.
    ASSERT_TRUE(model->setData(model->index(0, 0), QStringLiteral("4930 Bürobedarf ")));
    ASSERT_EQ(dialogs.asked.size(), 2);
    EXPECT_TRUE(dialogs.asked[1].startsWith(QStringLiteral("3 Eintraege der geoeffneten Dokumente tragen")));
    EXPECT_EQ(kategorien(documents[0]), (List { "4930 Bürobedarf ", "4930 Bürobedarf " }));
    EXPECT_EQ(kategorien(documents[1]), (List { "4930 Bürobedarf ", "8400 Erloese " }));
    for (const Document* document : documents) {
        EXPECT_EQ(document->undoManager()->count(), 1);
        EXPECT_EQ(document->undoManager()->undoText(), QStringLiteral("Kategorie umbenennen"));
        EXPECT_TRUE(document->isDocumentEdited());
    }

    // A row no entry carries asks nothing.
    ASSERT_TRUE(model->setData(model->index(1, 0), QStringLiteral("8401 Erlöse ")));
    EXPECT_EQ(dialogs.asked.size(), 2);
    delete PreferencesViewController::openPreferences();
}

} // namespace
} // namespace saldo::gui
