// The entry list in its window: the selection that the verbs leave and that
// reaches the detail panel, the confirmation before a deletion, search and
// header sort keeping the selected entries, the selection summary, and the
// editors asked for.
#include "entrylist/ViewController.h"
#include "app/Document.h"
#include "app/DocumentWindow.h"
#include "app/SplitViewController.h"
#include "editors/DetailViewController.h"
#include "entrylist/EntryColumn.h"
#include "entrylist/SearchFieldController.h"
#include "entrylist/SelectionSummary.h"
#include "entrylist/SelectionSummaryView.h"
#include "gui/support/LedgerFixtures.h"
#include "gui/support/Recorders.h"
#include "gui/support/ScriptedDialogs.h"

#include <QHeaderView>
#include <QItemSelectionModel>
#include <QLineEdit>
#include <QMenu>
#include <QSignalSpy>
#include <QTableView>
#include <QTest>
#include <QUndoStack>
#include <gtest/gtest.h>

namespace saldo::gui {
namespace {

using namespace testing;
using Rows = std::vector<std::size_t>;
using Names = std::vector<std::string>;

class ViewControllerTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        document.replaceAllEntries(namedEntries({ "A", "B", "C", "D", "E" }));
        document.makeWindowControllers();
        window = document.windowController();
        window->resize(1400, 800);
        window->show();
        list = window->splitViewController()->viewController();
        detail = window->splitViewController()->detailViewController();
    }
    void select(const Rows& rows)
    {
        list->tableView()->clearSelection();
        for (std::size_t row : rows)
            list->tableView()->selectionModel()->setCurrentIndex(list->tableView()->model()->index(int(row), 0),
                QItemSelectionModel::Select | QItemSelectionModel::Rows);
    }
    void clickHeader(int section)
    {
        QHeaderView* header = list->tableView()->horizontalHeader();
        const QPoint centre(
            header->sectionViewportPosition(section) + header->sectionSize(section) / 2, header->height() / 2);
        QTest::mouseClick(header->viewport(), Qt::LeftButton, Qt::NoModifier, centre);
    }

    InMemoryUserDefaults defaults;
    ScriptedDialogs dialogs;
    Document document { defaults };
    DocumentWindow* window = nullptr;
    ViewController* list = nullptr;
    DetailViewController* detail = nullptr;
};

TEST_F(ViewControllerTest, OnlyASingleSelectedRowReachesTheDetailPanel)
{
    // The window opens with its first row selected.
    EXPECT_EQ(list->selectedRows(), Rows { 0 });
    EXPECT_EQ(detail->selectedEinnahme(), document.einnahmen()[0]);
    select({ 1, 3 });
    EXPECT_EQ(detail->selectedEinnahme(), nullptr);
}

TEST_F(ViewControllerTest, TheVerbsLeaveTheSelectionTheirRulesGive)
{
    select({ 0, 1 });
    list->addEntry();
    EXPECT_EQ(list->selectedRows(), Rows { 5 });

    select({ 1 });
    list->duplicateEntry();
    EXPECT_EQ(list->selectedRows(), Rows { 2 });

    // Deleting asks with the count; "Abbrechen" leaves everything.
    select({ 1, 3 });
    dialogs.confirmAnswers = { false, true };
    list->deleteEntries();
    EXPECT_EQ(document.einnahmen().size(), 7u);
    list->deleteEntries();
    EXPECT_EQ(dialogs.asked.last(), "Moechten Sie 2 Eintraege loeschen?");
    EXPECT_EQ(document.einnahmen().size(), 5u);
    // Undo appends the deleted entries and selects them.
    document.undoManager()->undo();
    EXPECT_EQ(list->selectedRows(), (Rows { 5, 6 }));

    // The row action deletes its own row, whatever is selected.
    dialogs.confirmAnswers = { true };
    list->deleteRow(0);
    EXPECT_EQ(document.einnahmen().front()->name(), "B Kopie");
}

TEST_F(ViewControllerTest, SearchAndHeaderClicksKeepTheSelectedEntries)
{
    QLineEdit* field = list->searchFieldController()->searchField();
    select({ 1, 4 });
    const EinnahmePtr b = document.einnahmen()[1];
    QTest::keyClicks(field, "B");
    EXPECT_EQ(list->selectedRows(), Rows { 0 });
    EXPECT_EQ(detail->selectedEinnahme(), b);

    field->clear();
    select({ 1 });
    clickHeader(EntryColumn::Brutto);
    clickHeader(EntryColumn::Brutto); // the second click reverses
    EXPECT_EQ(namesOf(document.einnahmen()), (Names { "E", "D", "C", "B", "A" }));
    EXPECT_EQ(list->selectedRows(), Rows { 3 });
    // The next search shows the complete list's order again, without indicator.
    QTest::keyClicks(field, "x");
    field->clear();
    EXPECT_EQ(namesOf(document.einnahmen()), (Names { "A", "B", "C", "D", "E" }));
    EXPECT_EQ(list->tableView()->horizontalHeader()->sortIndicatorSection(), -1);
}

// What the summary says is the core's rule; here it follows the selection and
// an edit made in the detail form (through the document) at once.
TEST_F(ViewControllerTest, TheSelectionSummaryFollowsTheSelectionAndEditsAnywhere)
{
    select({ 3, 1 });
    document.editEntry(document.einnahmen()[3], [](Einnahme& e) { e.setBrutto(500.0f); });
    EXPECT_EQ(
        list->selectedEntriesView()->toPlainText().toStdString(), selectionSummary(document.einnahmen(), { 1, 3 }));

    // DetailViewUpdated reloads the table and keeps the selected row's entry.
    select({ 2 });
    NotificationCenter::defaultCenter().post(kDetailViewUpdated);
    EXPECT_EQ(list->selectedRows(), Rows { 2 });
    EXPECT_EQ(detail->selectedEinnahme(), document.einnahmen()[2]);
}

TEST_F(ViewControllerTest, ADoubleClickOnARowAsksForTheSplitBookingEditor)
{
    QSignalSpy requests(list, &ViewController::splitBookingEditorRequested);
    select({ 2 });
    QTableView* table = list->tableView();
    const QRect second = table->visualRect(table->model()->index(2, EntryColumn::Netto));
    QTest::mouseClick(table->viewport(), Qt::LeftButton, Qt::NoModifier, second.center());
    QTest::mouseDClick(table->viewport(), Qt::LeftButton, Qt::NoModifier, second.center());
    ASSERT_EQ(requests.count(), 1);
    EXPECT_EQ(requests.takeFirst().at(0).toInt(), 2);
    // Below the last row there is no row.
    const QPoint below(second.center().x(), table->viewport()->height() - 5);
    QTest::mouseClick(table->viewport(), Qt::LeftButton, Qt::NoModifier, below);
    QTest::mouseDClick(table->viewport(), Qt::LeftButton, Qt::NoModifier, below);
    EXPECT_EQ(requests.count(), 0);
}

} // namespace
} // namespace saldo::gui
