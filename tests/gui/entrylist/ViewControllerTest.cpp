// The entry list's selection and its hand-over to the detail panel, the reload
// after "DetailViewUpdated", and the entry points of the two editors.
#include "entrylist/ViewController.h"
#include "app/SplitViewController.h"
#include "editors/DetailViewController.h"
#include "entrylist/EntryColumn.h"
#include "gui/entrylist/EntryListTestSupport.h"

#include <QItemSelectionModel>
#include <QSignalSpy>
#include <QTableView>
#include <gtest/gtest.h>

#include <memory>

using namespace saldo;
using namespace saldo::gui;
using namespace saldo::gui::testing;

namespace {

class EntryListSelection : public ::testing::Test {
protected:
    void SetUp() override
    {
        split = std::make_unique<SplitViewController>(defaults);
        vc = split->viewController();
    }
    DetailViewController* detail() const { return split->detailViewController(); }

    InMemoryUserDefaults defaults;
    std::unique_ptr<SplitViewController> split;
    ViewController* vc = nullptr;
};

} // namespace

TEST_F(EntryListSelection, OnlyASingleSelectedRowReachesTheDetailPanel)
{
    const auto entries = namedEntries({ "A", "B", "C" });
    vc->setEntries(entries);
    PostCounter posted(kTableViewUpdated);
    vc->tableView()->selectRow(1);
    EXPECT_EQ(vc->selectedEinnahme(), entries[1]);
    EXPECT_EQ(detail()->selectedEinnahme(), entries[1]);
    EXPECT_GE(posted.count(), 1u);

    addToSelection(vc, 2);
    EXPECT_EQ(vc->selectedEinnahme(), nullptr);
    EXPECT_EQ(detail()->selectedEinnahme(), nullptr);

    detail()->setBoxOpacity(1.0);
    vc->tableView()->clearSelection();
    EXPECT_EQ(vc->selectedEinnahme(), nullptr);
    EXPECT_EQ(detail()->selectedEinnahme(), nullptr);
    EXPECT_EQ(detail()->boxOpacity(), 0.0);
}

TEST_F(EntryListSelection, DetailViewUpdatedReloadsAndKeepsTheSelectedRowsEntryWhereverItMoved)
{
    const auto entries = namedEntries({ "A", "B", "C", "D" });
    vc->setEntries(entries);
    vc->tableView()->selectRow(0);
    addToSelection(vc, 2); // the last one selected is the table's selected row

    entries[2]->setName("C geändert");
    NotificationCenter::defaultCenter().post(kDetailViewUpdated);
    EXPECT_EQ(selectedRows(vc), std::vector<int>({ 2 }));
    EXPECT_EQ(vc->selectedEinnahme(), entries[2]);
    EXPECT_EQ(
        vc->tableView()->model()->data(vc->tableView()->model()->index(2, EntryColumn::Name)).toString(), "C geändert");

    // After a sort has moved the entry, a reload keeps it selected at its new row.
    vc->tableView()->selectRow(2);
    vc->tableView()->sortByColumn(EntryColumn::Brutto, Qt::DescendingOrder); // D C B A
    NotificationCenter::defaultCenter().post(kDetailViewUpdated);
    EXPECT_EQ(vc->einnahmen()[1], entries[2]);
    EXPECT_EQ(selectedRows(vc), std::vector<int>({ 1 }));
    EXPECT_EQ(detail()->selectedEinnahme(), entries[2]);

    // The observation ends with the list: a later notification reaches nothing.
    split.reset();
    NotificationCenter::defaultCenter().post(kDetailViewUpdated);
}

TEST_F(EntryListSelection, DoubleClickOffersAWorkingCopyOfTheSelectedEntry)
{
    vc->setEntries(namedEntries({ "A", "B" }));
    auto child = Einnahme::make("Teil", "", 5.0f, 19.0f);
    vc->einnahmen()[1]->setChildTransactions({ child });
    vc->tableView()->selectRow(1);
    vc->duplicateEntry(); // "B Kopie", selected
    QSignalSpy requests(vc, &ViewController::splitBookingEditorRequested);

    vc->handleDoubleClick(QModelIndex()); // below the last row
    EXPECT_EQ(requests.count(), 0);

    vc->handleDoubleClick(vc->tableView()->model()->index(2, EntryColumn::Name));
    ASSERT_EQ(requests.count(), 1);
    const auto copy = requests.at(0).at(0).value<EinnahmePtr>();
    ASSERT_NE(copy, nullptr);
    EXPECT_NE(copy, vc->einnahmen()[2]);
    EXPECT_EQ(copy->name(), "B Kopie");
    EXPECT_EQ(copy->childTransactions(), EinnahmeList({ child }));

    QSignalSpy sheets(vc, &ViewController::serialTransactionRequested);
    vc->initiateSerialTransactionController();
    ASSERT_EQ(sheets.count(), 1);
    EXPECT_EQ(sheets.at(0).at(1).toInt(), 2);
    vc->tableView()->clearSelection();
    vc->initiateSerialTransactionController();
    EXPECT_EQ(sheets.count(), 1);
}
