// Adding, duplicating and deleting entries, with the deletion's undo and redo.
#include "app/SplitViewController.h"
#include "editors/DetailViewController.h"
#include "entrylist/ViewController.h"
#include "gui/entrylist/EntryListTestSupport.h"
#include "gui/support/ScriptedDialogs.h"

#include <QItemSelectionModel>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTableView>
#include <QUndoStack>
#include <gtest/gtest.h>

#include <memory>

using namespace saldo;
using namespace saldo::gui;
using namespace saldo::gui::testing;

namespace {

class ListCommands : public ::testing::Test {
protected:
    void SetUp() override
    {
        split = std::make_unique<SplitViewController>(defaults);
        vc = split->viewController();
        vc->setUndoStack(&undoStack);
        changes = std::make_unique<QSignalSpy>(vc, &ViewController::changeDone);
    }

    void use(const std::vector<std::string>& names)
    {
        entries = namedEntries(names);
        vc->setEntries(entries);
    }
    void select(std::initializer_list<int> rows)
    {
        QItemSelectionModel* selection = vc->tableView()->selectionModel();
        selection->clearSelection();
        for (int row : rows)
            selection->select(
                vc->tableView()->model()->index(row, 0), QItemSelectionModel::Select | QItemSelectionModel::Rows);
    }

    InMemoryUserDefaults defaults;
    ScriptedDialogs dialogs;
    QUndoStack undoStack;
    std::unique_ptr<SplitViewController> split;
    ViewController* vc = nullptr;
    EinnahmeList entries;
    std::unique_ptr<QSignalSpy> changes;
};

} // namespace

TEST_F(ListCommands, AddingAppendsANewEntryToBothListsAndSelectsItAlone)
{
    use({ "A", "B", "C" });
    select({ 0, 1 });
    vc->addEntry();
    ASSERT_EQ(vc->einnahmen().size(), 4u);
    const EinnahmePtr added = vc->einnahmen()[3];
    EXPECT_EQ(added->name(), "Neu");
    EXPECT_EQ(added->steuersatz(), 0.0f);
    EXPECT_EQ(added->kategorie(), "");
    EXPECT_EQ(vc->backupEinnahmen().back(), added);
    EXPECT_EQ(selectedRows(vc), std::vector<int>({ 3 }));
    EXPECT_EQ(vc->selectedEinnahme(), added);
    EXPECT_EQ(split->detailViewController()->selectedEinnahme(), added);
    EXPECT_EQ(changes->count(), 1);
    EXPECT_EQ(undoStack.count(), 0); // adding cannot be undone
}

TEST_F(ListCommands, DuplicatePlacesTheCopyAfterItsSourceButAtTheEndOfTheCompleteList)
{
    use({ "A", "B", "C" });
    vc->tableView()->selectRow(1);
    vc->duplicateEntry();
    EXPECT_EQ(namesOf(vc->einnahmen()), std::vector<std::string>({ "A", "B", "B Kopie", "C" }));
    EXPECT_EQ(namesOf(vc->backupEinnahmen()), std::vector<std::string>({ "A", "B", "C", "B Kopie" }));
    EXPECT_EQ(vc->einnahmen()[2], vc->backupEinnahmen()[3]);
    EXPECT_EQ(selectedRows(vc), std::vector<int>({ 2 }));
    EXPECT_EQ(changes->count(), 1);

    // Nothing selected: the last row is duplicated.
    vc->tableView()->clearSelection();
    vc->duplicateEntry();
    EXPECT_EQ(namesOf(vc->einnahmen()), std::vector<std::string>({ "A", "B", "B Kopie", "C", "C Kopie" }));
    EXPECT_EQ(selectedRows(vc), std::vector<int>({ 4 }));

    // The row action duplicates its own row, whatever is selected.
    vc->duplicateRow(0);
    EXPECT_EQ(namesOf(vc->einnahmen()), std::vector<std::string>({ "A", "A Kopie", "B", "B Kopie", "C", "C Kopie" }));
    EXPECT_EQ(selectedRows(vc), std::vector<int>({ 1 }));
    EXPECT_EQ(changes->count(), 3);

    // An empty table has nothing to duplicate.
    vc->setEntries({});
    vc->duplicateEntry();
    EXPECT_TRUE(vc->einnahmen().empty());
    EXPECT_EQ(changes->count(), 3);
}

TEST_F(ListCommands, DeletionAsksThenUndoAppendsInRecordOrderAndRedoRemovesTheSameObjects)
{
    use({ "e0", "e1", "e2", "e3", "e4" });
    // An entry with the same field values as e1 must survive every step.
    auto twin = Einnahme::make("e1", "", 20.0f, 19.0f);
    twin->setDatum(entries[1]->datum());
    EinnahmeList withTwin = entries;
    withTwin.push_back(twin);
    vc->setEntries(withTwin);
    vc->tableView()->selectRow(0);
    select({ 1, 3 });

    dialogs.confirmAnswers = { true };
    vc->deleteEntries();
    EXPECT_EQ(dialogs.asked, QStringList({ "Moechten Sie 2 Eintraege loeschen?" }));
    const EinnahmeList afterDelete = { entries[0], entries[2], entries[4], twin };
    EXPECT_EQ(vc->einnahmen(), afterDelete);
    EXPECT_EQ(vc->backupEinnahmen(), afterDelete);
    EXPECT_TRUE(selectedRows(vc).empty());
    EXPECT_EQ(vc->selectedEinnahme(), nullptr);
    EXPECT_EQ(split->detailViewController()->boxOpacity(), 0.0);
    ASSERT_EQ(undoStack.count(), 1);
    EXPECT_EQ(undoStack.undoText(), "Loeschen");
    EXPECT_EQ(changes->count(), 0); // the undo stack marks the document

    undoStack.undo();
    const EinnahmeList afterUndo = { entries[0], entries[2], entries[4], twin, entries[3], entries[1] };
    EXPECT_EQ(vc->einnahmen(), afterUndo);
    EXPECT_EQ(vc->backupEinnahmen(), afterUndo);
    EXPECT_EQ(selectedRows(vc), std::vector<int>({ 4, 5 }));
    EXPECT_EQ(undoStack.redoText(), "Loeschen");

    undoStack.redo();
    EXPECT_EQ(vc->einnahmen(), afterDelete);
    EXPECT_EQ(vc->backupEinnahmen(), afterDelete);

    undoStack.undo();
    EXPECT_EQ(vc->einnahmen(), afterUndo);
}

TEST_F(ListCommands, ManyScatteredRowsAreDeletedAndRestoredAsOneStep)
{
    std::vector<std::string> names;
    for (int i = 0; i < 24; ++i)
        names.push_back("e" + std::to_string(i));
    use(names);
    QItemSelectionModel* selection = vc->tableView()->selectionModel();
    for (int row = 1; row < 24; row += 2) // twelve separate rows
        selection->select(
            vc->tableView()->model()->index(row, 0), QItemSelectionModel::Select | QItemSelectionModel::Rows);
    dialogs.confirmAnswers = { true };
    vc->deleteEntries();
    EXPECT_EQ(dialogs.asked, QStringList({ "Moechten Sie 12 Eintraege loeschen?" }));
    EinnahmeList even, restored;
    for (int i = 0; i < 24; i += 2)
        even.push_back(entries[static_cast<std::size_t>(i)]);
    EXPECT_EQ(vc->einnahmen(), even);
    EXPECT_EQ(vc->backupEinnahmen(), even);
    EXPECT_EQ(vc->tableView()->model()->rowCount(), 12);
    EXPECT_TRUE(selectedRows(vc).empty());

    undoStack.undo();
    restored = even;
    for (int i = 23; i > 0; i -= 2) // highest row first
        restored.push_back(entries[static_cast<std::size_t>(i)]);
    EXPECT_EQ(vc->einnahmen(), restored);
    EXPECT_EQ(vc->tableView()->model()->rowCount(), 24);
    std::vector<int> lastTwelve;
    for (int row = 12; row < 24; ++row)
        lastTwelve.push_back(row);
    EXPECT_EQ(selectedRows(vc), lastTwelve);

    undoStack.redo();
    EXPECT_EQ(vc->einnahmen(), even);
    EXPECT_EQ(vc->tableView()->model()->rowCount(), 12);
}

TEST_F(ListCommands, UnderASearchFilterTheCommandsChangeTheCompleteListToo)
{
    use({ "Miete Jan", "Strom", "Miete Feb", "Wasser", "Miete Mar" });
    auto* field = vc->findChild<QLineEdit*>(QStringLiteral("searchField"));
    ASSERT_NE(field, nullptr);
    field->setText(QStringLiteral("Miete")); // the search mode starts as "Name"
    ASSERT_EQ(namesOf(vc->einnahmen()), std::vector<std::string>({ "Miete Jan", "Miete Feb", "Miete Mar" }));

    select({ 0, 2 });
    dialogs.confirmAnswers = { true };
    vc->deleteEntries();
    EXPECT_EQ(namesOf(vc->einnahmen()), std::vector<std::string>({ "Miete Feb" }));
    EXPECT_EQ(namesOf(vc->backupEinnahmen()), std::vector<std::string>({ "Strom", "Miete Feb", "Wasser" }));

    // A new entry joins the shown list although it does not match.
    vc->addEntry();
    EXPECT_EQ(namesOf(vc->einnahmen()), std::vector<std::string>({ "Miete Feb", "Neu" }));
    EXPECT_EQ(namesOf(vc->backupEinnahmen()), std::vector<std::string>({ "Strom", "Miete Feb", "Wasser", "Neu" }));

    undoStack.undo();
    EXPECT_EQ(namesOf(vc->einnahmen()), std::vector<std::string>({ "Miete Feb", "Neu", "Miete Mar", "Miete Jan" }));
    EXPECT_EQ(namesOf(vc->backupEinnahmen()),
        std::vector<std::string>({ "Strom", "Miete Feb", "Wasser", "Neu", "Miete Mar", "Miete Jan" }));
}

TEST_F(ListCommands, RefusedOrEmptyDeletionChangesNothing)
{
    use({ "A", "B", "C" });
    vc->tableView()->selectRow(1);
    dialogs.confirmAnswers = { false };
    vc->deleteEntries();
    EXPECT_EQ(dialogs.asked, QStringList({ "Moechten Sie 1 Eintrag loeschen?" }));
    EXPECT_EQ(vc->einnahmen(), entries);
    EXPECT_EQ(vc->backupEinnahmen(), entries);
    EXPECT_EQ(undoStack.count(), 0);
    EXPECT_EQ(selectedRows(vc), std::vector<int>({ 1 }));

    // Nothing selected: not even a question.
    vc->tableView()->clearSelection();
    vc->deleteEntries();
    EXPECT_EQ(dialogs.asked.size(), 1);
    EXPECT_EQ(vc->einnahmen(), entries);
}

TEST_F(ListCommands, TheRowActionDeletesItsRowAndLeavesTheSelectionOnItsEntry)
{
    use({ "A", "B", "C", "D" });
    vc->tableView()->selectRow(3);
    dialogs.confirmAnswers = { true };
    vc->deleteRow(1);
    EXPECT_EQ(dialogs.asked, QStringList({ "Moechten Sie 1 Eintrag loeschen?" }));
    EXPECT_EQ(namesOf(vc->einnahmen()), std::vector<std::string>({ "A", "C", "D" }));
    EXPECT_EQ(selectedRows(vc), std::vector<int>({ 2 }));
    EXPECT_EQ(vc->selectedEinnahme(), entries[3]);
    undoStack.undo();
    EXPECT_EQ(namesOf(vc->einnahmen()), std::vector<std::string>({ "A", "C", "D", "B" }));
    EXPECT_EQ(selectedRows(vc), std::vector<int>({ 3 }));
}

TEST_F(ListCommands, UndoAfterTheWindowClosedDoesNothing)
{
    auto own = std::make_unique<ViewController>(defaults);
    own->setUndoStack(&undoStack);
    own->setEntries(namedEntries({ "A", "B" }));
    own->tableView()->selectRow(0);
    dialogs.confirmAnswers = { true };
    own->deleteEntries();
    ASSERT_EQ(undoStack.count(), 1);
    own.reset();
    undoStack.undo();
    undoStack.redo();
    SUCCEED(); // reaching this line without touching the destroyed list is the test
}
