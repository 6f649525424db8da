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

using Names = std::vector<std::string>;
using Rows = std::vector<int>;

class ListCommands : public ::testing::Test {
protected:
    void SetUp() override
    {
        split = std::make_unique<SplitViewController>(defaults);
        vc = split->viewController();
        vc->setUndoStack(&undoStack);
        changes = std::make_unique<QSignalSpy>(vc, &ViewController::changeDone);
    }

    void use(const Names& names)
    {
        entries = namedEntries(names);
        vc->setEntries(entries);
    }
    void select(const Rows& rows)
    {
        QItemSelectionModel* selection = vc->tableView()->selectionModel();
        selection->clearSelection();
        for (int row : rows)
            selection->select(
                vc->tableView()->model()->index(row, 0), QItemSelectionModel::Select | QItemSelectionModel::Rows);
    }
    // The shown list, and the complete list where it differs.
    void expectNames(const Names& shown, const Names& complete = {})
    {
        EXPECT_EQ(namesOf(vc->einnahmen()), shown);
        EXPECT_EQ(namesOf(vc->backupEinnahmen()), complete.empty() ? shown : complete);
    }
    void expectLists(const EinnahmeList& both)
    {
        EXPECT_EQ(vc->einnahmen(), both);
        EXPECT_EQ(vc->backupEinnahmen(), both);
        EXPECT_EQ(vc->tableView()->model()->rowCount(), static_cast<int>(both.size()));
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
    EXPECT_EQ(selectedRows(vc), Rows({ 3 }));
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
    expectNames({ "A", "B", "B Kopie", "C" }, { "A", "B", "C", "B Kopie" });
    EXPECT_EQ(vc->einnahmen()[2], vc->backupEinnahmen()[3]);
    EXPECT_EQ(selectedRows(vc), Rows({ 2 }));
    EXPECT_EQ(changes->count(), 1);

    // Nothing selected: the last row is duplicated.
    vc->tableView()->clearSelection();
    vc->duplicateEntry();
    EXPECT_EQ(namesOf(vc->einnahmen()), Names({ "A", "B", "B Kopie", "C", "C Kopie" }));
    EXPECT_EQ(selectedRows(vc), Rows({ 4 }));

    // The row action duplicates its own row, whatever is selected.
    vc->duplicateRow(0);
    EXPECT_EQ(namesOf(vc->einnahmen()), Names({ "A", "A Kopie", "B", "B Kopie", "C", "C Kopie" }));
    EXPECT_EQ(selectedRows(vc), Rows({ 1 }));
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
    expectLists(afterDelete);
    EXPECT_TRUE(selectedRows(vc).empty());
    EXPECT_EQ(vc->selectedEinnahme(), nullptr);
    EXPECT_EQ(split->detailViewController()->boxOpacity(), 0.0);
    ASSERT_EQ(undoStack.count(), 1);
    EXPECT_EQ(undoStack.undoText(), "Loeschen");
    EXPECT_EQ(changes->count(), 0); // the undo stack marks the document

    undoStack.undo();
    const EinnahmeList afterUndo = { entries[0], entries[2], entries[4], twin, entries[3], entries[1] };
    expectLists(afterUndo);
    EXPECT_EQ(selectedRows(vc), Rows({ 4, 5 }));
    EXPECT_EQ(undoStack.redoText(), "Loeschen");

    undoStack.redo();
    expectLists(afterDelete);
    undoStack.undo();
    expectLists(afterUndo);
}

TEST_F(ListCommands, ManyScatteredRowsAreDeletedAndRestoredAsOneStep)
{
    Names names;
    Rows odd, lastTwelve; // twelve separate rows; after the undo, the last twelve
    for (int i = 0; i < 24; ++i) {
        names.push_back("e" + std::to_string(i));
        if (i % 2)
            odd.push_back(i);
        if (i >= 12)
            lastTwelve.push_back(i);
    }
    use(names);
    select(odd);
    dialogs.confirmAnswers = { true };
    vc->deleteEntries();
    EXPECT_EQ(dialogs.asked, QStringList({ "Moechten Sie 12 Eintraege loeschen?" }));
    EinnahmeList even;
    for (int i = 0; i < 24; i += 2)
        even.push_back(entries[static_cast<std::size_t>(i)]);
    expectLists(even);
    EXPECT_TRUE(selectedRows(vc).empty());

    undoStack.undo();
    EinnahmeList restored = even;
    for (int i = 23; i > 0; i -= 2) // highest row first
        restored.push_back(entries[static_cast<std::size_t>(i)]);
    expectLists(restored);
    EXPECT_EQ(selectedRows(vc), lastTwelve);

    undoStack.redo();
    expectLists(even);
}

TEST_F(ListCommands, UnderASearchFilterTheCommandsChangeTheCompleteListToo)
{
    use({ "Miete Jan", "Strom", "Miete Feb", "Wasser", "Miete Mar" });
    auto* field = vc->findChild<QLineEdit*>(QStringLiteral("searchField"));
    ASSERT_NE(field, nullptr);
    field->setText(QStringLiteral("Miete")); // the search mode starts as "Name"
    ASSERT_EQ(namesOf(vc->einnahmen()), Names({ "Miete Jan", "Miete Feb", "Miete Mar" }));

    select({ 0, 2 });
    dialogs.confirmAnswers = { true };
    vc->deleteEntries();
    expectNames({ "Miete Feb" }, { "Strom", "Miete Feb", "Wasser" });

    // A new entry joins the shown list although it does not match.
    vc->addEntry();
    expectNames({ "Miete Feb", "Neu" }, { "Strom", "Miete Feb", "Wasser", "Neu" });

    undoStack.undo();
    expectNames({ "Miete Feb", "Neu", "Miete Mar", "Miete Jan" },
        { "Strom", "Miete Feb", "Wasser", "Neu", "Miete Mar", "Miete Jan" });
}

TEST_F(ListCommands, RefusedOrEmptyDeletionChangesNothingAndTheRowActionKeepsTheSelectedEntry)
{
    use({ "A", "B", "C", "D" });
    vc->tableView()->selectRow(1);
    dialogs.confirmAnswers = { false };
    vc->deleteEntries();
    EXPECT_EQ(dialogs.asked, QStringList({ "Moechten Sie 1 Eintrag loeschen?" }));
    expectLists(entries);
    EXPECT_EQ(undoStack.count(), 0);
    EXPECT_EQ(selectedRows(vc), Rows({ 1 }));

    // Nothing selected: not even a question.
    vc->tableView()->clearSelection();
    vc->deleteEntries();
    EXPECT_EQ(dialogs.asked.size(), 1);
    expectLists(entries);

    // The row action deletes its own row; the selection stays on its entry.
    vc->tableView()->selectRow(3);
    dialogs.confirmAnswers = { true };
    vc->deleteRow(1);
    EXPECT_EQ(dialogs.asked.size(), 2);
    EXPECT_EQ(dialogs.asked.back(), "Moechten Sie 1 Eintrag loeschen?");
    expectNames({ "A", "C", "D" });
    EXPECT_EQ(selectedRows(vc), Rows({ 2 }));
    EXPECT_EQ(vc->selectedEinnahme(), entries[3]);
    undoStack.undo();
    expectNames({ "A", "C", "D", "B" });
    EXPECT_EQ(selectedRows(vc), Rows({ 3 }));
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
