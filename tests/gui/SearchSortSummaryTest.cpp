// The search field with its menu, sorting by header clicks, and the selection
// summary beside the table, driven as a user drives them.
#include "app/Document.h"
#include "app/DocumentWindow.h"
#include "app/SplitViewController.h"
#include "entrylist/EntryColumn.h"
#include "entrylist/SearchFieldController.h"
#include "entrylist/ViewController.h"
#include "evaluation/CalcEngine.h"
#include "gui/entrylist/EntryListTestSupport.h"

#include <QAbstractItemModelTester>
#include <QAction>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QLineEdit>
#include <QMenu>
#include <QPainter>
#include <QPlainTextEdit>
#include <QSignalSpy>
#include <QTableView>
#include <QTest>
#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>

using namespace saldo;
using namespace saldo::gui;
using namespace saldo::gui::testing;

namespace {

// The menu's item titles, each submenu's in brackets after its item.
std::string describe(const QMenu* menu)
{
    std::string text;
    for (const QAction* action : menu->actions()) {
        text += (text.empty() ? "" : ", ") + action->text().toStdString();
        if (action->menu())
            text += " [" + describe(action->menu()) + "]";
    }
    return text;
}

QAction* itemTitled(const QMenu* menu, const QString& title)
{
    for (QAction* action : menu->actions())
        if (action->text() == title)
            return action;
    return nullptr;
}

class FindAndTotal : public ::testing::Test {
protected:
    void SetUp() override
    {
        split = std::make_unique<SplitViewController>(defaults);
        split->resize(1400, 800);
        vc = split->viewController();
        search = vc->findChild<SearchFieldController*>();
        field = vc->findChild<QLineEdit*>(QStringLiteral("searchField"));
        summary = vc->findChild<QPlainTextEdit*>(QStringLiteral("selectedEntriesView"));
        ASSERT_NE(search, nullptr);
        ASSERT_EQ(field, search->searchField());
        ASSERT_NE(summary, nullptr);
    }
    void TearDown() override
    {
        // The offscreen platform's note on shown windows is no fault.
        qtWarnings.warnings.removeIf([](const QString& text) { return text.contains("propagateSizeHints"); });
        EXPECT_TRUE(qtWarnings.warnings.isEmpty()) << qtWarnings.warnings.join('\n').toStdString();
    }
    // The tester reads cells, and each read posts "TableViewUpdated": not while posts are counted.
    void testModel()
    {
        tester = std::make_unique<QAbstractItemModelTester>(
            vc->tableView()->model(), QAbstractItemModelTester::FailureReportingMode::Warning);
    }

    // Chooses a mode the way the menu does: triggering the item.
    void chooseMode(const QString& title)
    {
        QAction* item = itemTitled(search->searchMenu(), title);
        if (!item)
            for (QAction* top : search->searchMenu()->actions())
                if (top->menu() && (item = itemTitled(top->menu(), title)))
                    break;
        ASSERT_NE(item, nullptr) << title.toStdString();
        item->trigger();
    }
    void type(const QString& text)
    {
        field->selectAll();
        QTest::keyClicks(field, text);
    }
    void clickHeader(int section)
    {
        QHeaderView* header = vc->tableView()->horizontalHeader();
        const QPoint centre(
            header->sectionViewportPosition(section) + header->sectionSize(section) / 2, header->height() / 2);
        QTest::mouseClick(header->viewport(), Qt::LeftButton, Qt::NoModifier, centre);
    }
    std::vector<float> shownBrutto() const
    {
        std::vector<float> amounts;
        for (const auto& entry : vc->einnahmen())
            amounts.push_back(entry->brutto());
        return amounts;
    }
    static std::string engineReport(const EinnahmeList& entries)
    {
        CalcEngine& engine = sharedCalcEngine();
        engine.calculate(entries);
        return engine.ergebnisString();
    }
    std::string summaryText() const { return summary->toPlainText().toStdString(); }

    QtWarningRecorder qtWarnings;
    InMemoryUserDefaults defaults;
    std::unique_ptr<SplitViewController> split;
    ViewController* vc = nullptr;
    SearchFieldController* search = nullptr;
    QLineEdit* field = nullptr;
    QPlainTextEdit* summary = nullptr;
    std::unique_ptr<QAbstractItemModelTester> tester;
};

} // namespace

TEST_F(FindAndTotal, SearchMenuOffersTheModesAndChoosingOneOnlyChangesThePlaceholder)
{
    const QMenu* menu = search->searchMenu();
    EXPECT_EQ(menu->title(), "Menu");
    EXPECT_EQ(describe(menu),
        "Name, Kategorie, Art, Non EU, Innergemeinschaftlich, Brutto [Brutto >=, Brutto =, Brutto <=], "
        "Netto [Netto >=, Netto <=], Steuersatz [Steuersatz >=, Steuersatz =, Steuersatz <=], "
        "Datum [Datum >=, Datum =, Datum <=]");

    EXPECT_EQ(field->placeholderText(), "Name");
    const auto entries = namedEntries({ "Miete", "Strom", "Miete Mai" });
    vc->setEntries(entries);
    type(QStringLiteral("Miete"));
    ASSERT_EQ(vc->einnahmen().size(), 2u);

    // The new mode waits for the next text change.
    PostCounter posted(kTableViewUpdated);
    QSignalSpy resets(vc->tableView()->model(), &QAbstractItemModel::modelReset);
    chooseMode(QStringLiteral("Brutto >="));
    EXPECT_EQ(field->placeholderText(), "Brutto >=");
    EXPECT_EQ(field->text(), "Miete");
    EXPECT_EQ(vc->einnahmen().size(), 2u);
    // An item that holds a submenu chooses nothing.
    itemTitled(menu, QStringLiteral("Datum"))->trigger();
    EXPECT_EQ(field->placeholderText(), "Brutto >=");
    EXPECT_EQ(posted.count(), 0u);
    EXPECT_EQ(resets.count(), 0);

    type(QStringLiteral("20"));
    EXPECT_EQ(namesOf(vc->einnahmen()), (std::vector<std::string> { "Strom", "Miete Mai" }));
}

TEST_F(FindAndTotal, TextSearchRespectsCaseKeepsTheCompleteOrderAndPostsOncePerChange)
{
    const auto entries = namedEntries({ "Miete Juni", "miete Juli", "Strom", "Miete Mai" });
    vc->setEntries(entries);
    vc->tableView()->selectRow(2);

    PostCounter posted(kTableViewUpdated);
    field->setText(QStringLiteral("Miete"));
    EXPECT_EQ(namesOf(vc->einnahmen()), (std::vector<std::string> { "Miete Juni", "Miete Mai" }));
    EXPECT_EQ(vc->einnahmen()[1], entries[3]); // the same objects, not copies
    EXPECT_EQ(vc->tableView()->model()->rowCount(), 2);
    EXPECT_EQ(vc->backupEinnahmen(), entries);
    // The selected entry is no longer shown; the selection change posts on its own.
    const auto afterFilter = posted.count();
    EXPECT_GE(afterFilter, 1u);

    PostCounter once(kTableViewUpdated);
    field->setText(QStringLiteral("Miete M"));
    EXPECT_EQ(namesOf(vc->einnahmen()), (std::vector<std::string> { "Miete Mai" }));
    EXPECT_EQ(once.count(), 1u);

    PostCounter cleared(kTableViewUpdated);
    field->clear();
    EXPECT_EQ(vc->einnahmen(), entries);
    EXPECT_EQ(vc->tableView()->model()->rowCount(), 4);
    EXPECT_EQ(cleared.count(), 1u);

    // Escape in the field clears it too.
    field->setText(QStringLiteral("Strom"));
    ASSERT_EQ(vc->einnahmen().size(), 1u);
    QTest::keyClick(field, Qt::Key_Escape);
    EXPECT_TRUE(field->text().isEmpty());
    EXPECT_EQ(vc->einnahmen(), entries);
}

TEST_F(FindAndTotal, UnreadableNumbersAndDatesLeaveEverythingAsItWas)
{
    auto entries = namedEntries({ "A", "B", "C", "D" });
    entries[0]->setBrutto(100.0f);
    entries[1]->setBrutto(100.5f);
    entries[2]->setBrutto(99.99f);
    entries[3]->setBrutto(119.0f);
    vc->setEntries(entries);
    chooseMode(QStringLiteral("Brutto >="));

    field->setText(QStringLiteral("100"));
    EXPECT_EQ(namesOf(vc->einnahmen()), (std::vector<std::string> { "A", "B", "D" }));

    PostCounter posted(kTableViewUpdated);
    QSignalSpy resets(vc->tableView()->model(), &QAbstractItemModel::modelReset);
    QSignalSpy changed(vc->tableView()->model(), &QAbstractItemModel::dataChanged);
    field->setText(QStringLiteral("100,50"));
    EXPECT_EQ(namesOf(vc->einnahmen()), (std::vector<std::string> { "A", "B", "D" }));
    EXPECT_EQ(posted.count(), 0u);
    EXPECT_EQ(resets.count(), 0);
    EXPECT_EQ(changed.count(), 0);

    // C notation is read.
    field->setText(QStringLiteral("100.50"));
    EXPECT_EQ(namesOf(vc->einnahmen()), (std::vector<std::string> { "B", "D" }));

    // Dates: dd-MM-yyyy, the start of the local day (Europe/Berlin in tests).
    entries[0]->setDatum(520552740.0); // 30.06.2017 23:59
    entries[1]->setDatum(520552800.0); // 01.07.2017 00:00
    entries[2]->setDatum(520599600.0); // 01.07.2017 13:00
    entries[3]->setDatum(520639200.0); // 02.07.2017 00:00
    chooseMode(QStringLiteral("Datum ="));
    field->setText(QStringLiteral("01-07-2017"));
    EXPECT_EQ(namesOf(vc->einnahmen()), (std::vector<std::string> { "B", "C" }));

    // Clearing after a failed conversion shows everything.
    field->setText(QStringLiteral("gestern"));
    EXPECT_EQ(vc->einnahmen().size(), 2u);
    field->clear();
    EXPECT_EQ(vc->einnahmen(), entries);
}

TEST_F(FindAndTotal, HeaderClicksSortTheShownEntriesOnlyAndKeepTheSelection)
{
    split->show();
    auto entries = namedEntries({ "A", "B", "C", "D" });
    const float amounts[] = { 30.0f, 10.0f, 40.0f, 20.0f };
    for (std::size_t i = 0; i < entries.size(); ++i)
        entries[i]->setBrutto(amounts[i]);
    vc->setEntries(entries);
    vc->tableView()->selectRow(2); // C, 40
    ASSERT_EQ(vc->selectedEinnahme(), entries[2]);
    const std::string summaryBefore = summaryText();
    QSignalSpy changes(vc, &ViewController::changeDone);
    testModel();
    QHeaderView* header = vc->tableView()->horizontalHeader();

    clickHeader(EntryColumn::Brutto);
    EXPECT_EQ(shownBrutto(), (std::vector<float> { 10.0f, 20.0f, 30.0f, 40.0f }));
    EXPECT_TRUE(header->isSortIndicatorShown());
    EXPECT_EQ(header->sortIndicatorSection(), EntryColumn::Brutto);
    EXPECT_EQ(header->sortIndicatorOrder(), Qt::AscendingOrder);
    // The cells follow the list.
    EXPECT_EQ(vc->tableView()->model()->index(0, EntryColumn::Name).data().toString(), "B");
    // The selection stays on the same entry, now in the last row.
    const auto selected = vc->tableView()->selectionModel()->selectedRows();
    ASSERT_EQ(selected.size(), 1);
    EXPECT_EQ(selected.front().row(), 3);
    EXPECT_EQ(vc->selectedEinnahme(), entries[2]);

    clickHeader(EntryColumn::Brutto);
    EXPECT_EQ(shownBrutto(), (std::vector<float> { 40.0f, 30.0f, 20.0f, 10.0f }));
    EXPECT_EQ(header->sortIndicatorOrder(), Qt::DescendingOrder);
    EXPECT_EQ(vc->tableView()->selectionModel()->selectedRows().front().row(), 0);

    // Sorting is no change of the document and leaves the complete list alone.
    EXPECT_EQ(vc->backupEinnahmen(), entries);
    EXPECT_EQ(changes.count(), 0);
    EXPECT_EQ(summaryText(), summaryBefore);
}

TEST_F(FindAndTotal, ColumnsAfterTheEleventhSortByKindThenGrossWhateverTheDirection)
{
    split->show();
    auto entries = namedEntries({ "A", "B", "C", "D" });
    entries[0]->setBrutto(50.0f);
    entries[1]->setArt(kArtAusgabe);
    entries[1]->setBrutto(70.0f);
    entries[2]->setBrutto(5.0f);
    entries[3]->setArt(kArtAusgabe);
    entries[3]->setBrutto(60.0f);
    vc->setEntries(entries);
    const std::vector<std::string> expected = { "D", "B", "C", "A" }; // Ausgabe 60, 70; Einnahme 5, 50
    clickHeader(EntryColumn::Splitbuchung);
    EXPECT_EQ(namesOf(vc->einnahmen()), expected);
    clickHeader(EntryColumn::Splitbuchung);
    EXPECT_EQ(vc->tableView()->horizontalHeader()->sortIndicatorOrder(), Qt::DescendingOrder);
    EXPECT_EQ(namesOf(vc->einnahmen()), expected);
}

TEST_F(FindAndTotal, ASortUnderAFilterEndsWithTheNextFilterOrTheClearedField)
{
    split->show();
    const auto entries = namedEntries({ "Miete C", "Strom", "Miete A", "Miete B" });
    vc->setEntries(entries);
    testModel();
    QHeaderView* header = vc->tableView()->horizontalHeader();

    field->setText(QStringLiteral("Miete"));
    clickHeader(EntryColumn::Name);
    EXPECT_EQ(namesOf(vc->einnahmen()), (std::vector<std::string> { "Miete A", "Miete B", "Miete C" }));
    EXPECT_EQ(vc->backupEinnahmen(), entries);

    field->setText(QStringLiteral("Miete "));
    EXPECT_EQ(namesOf(vc->einnahmen()), (std::vector<std::string> { "Miete C", "Miete A", "Miete B" }));
    EXPECT_EQ(header->sortIndicatorSection(), -1);

    clickHeader(EntryColumn::Name);
    clickHeader(EntryColumn::Name);
    ASSERT_EQ(namesOf(vc->einnahmen()), (std::vector<std::string> { "Miete C", "Miete B", "Miete A" }));
    field->clear();
    EXPECT_EQ(vc->einnahmen(), entries);
    EXPECT_EQ(header->sortIndicatorSection(), -1);
    // After the indicator was cleared, a click sorts ascending again.
    clickHeader(EntryColumn::Name);
    EXPECT_EQ(namesOf(vc->einnahmen()), (std::vector<std::string> { "Miete A", "Miete B", "Miete C", "Strom" }));
    // Entries handed over (an import) come in their own order too.
    vc->setEntries(entries);
    EXPECT_EQ(header->sortIndicatorSection(), -1);
}

TEST_F(FindAndTotal, SelectionSummaryEvaluatesTheSelectedShownEntriesInRowOrderAndFollowsCellEdits)
{
    const auto entries = namedEntries({ "A", "B", "C", "D" });
    entries[1]->setBrutto(119.0f);
    vc->setEntries(entries);
    EXPECT_TRUE(summary->isReadOnly());

    vc->tableView()->selectRow(1);
    // The report itself is the engine's (tested there): here, of which entries.
    EXPECT_EQ(summaryText(), "Selektion: \n\n" + engineReport({ entries[1] }));

    // Rows selected from the bottom up are evaluated top down.
    vc->tableView()->selectRow(3);
    addToSelection(vc, 0);
    addToSelection(vc, 2);
    EXPECT_EQ(summaryText(), "Selektion: \n\n" + engineReport({ entries[0], entries[2], entries[3] }));

    vc->tableView()->clearSelection();
    EXPECT_TRUE(summary->toPlainText().isEmpty());

    // With a filter, the rows are those of the shown list.
    field->setText(QStringLiteral("C"));
    ASSERT_EQ(vc->einnahmen().size(), 1u);
    vc->tableView()->selectRow(0);
    EXPECT_EQ(summaryText(), "Selektion: \n\n" + engineReport({ entries[2] }));

    // A cell edit of the gross amount reaches the summary at once.
    const std::string before = summaryText();
    QAbstractItemModel* model = vc->tableView()->model();
    ASSERT_TRUE(model->setData(model->index(0, EntryColumn::Brutto), QStringLiteral("238"), Qt::EditRole));
    EXPECT_EQ(entries[2]->brutto(), 238.0f);
    EXPECT_NE(summaryText(), before);
    EXPECT_EQ(summaryText(), "Selektion: \n\n" + engineReport({ entries[2] }));
}

TEST_F(FindAndTotal, CtrlFFocusesTheSearchField)
{
    split->show();
    split->activateWindow();
    (void)QTest::qWaitForWindowActive(split.get(), 200);
    vc->tableView()->setFocus();
    ASSERT_FALSE(field->hasFocus());
    QTest::keyClick(vc->tableView(), Qt::Key_F, Qt::ControlModifier);
    EXPECT_TRUE(field->hasFocus());
    // The simulated release of Control still reports Control held; a plain key
    // puts the application's modifier state back for the tests that follow
    // (ExtendedSelection reads it when rows are selected).
    QTest::keyClick(field, Qt::Key_End);
    EXPECT_EQ(QGuiApplication::keyboardModifiers(), Qt::NoModifier);
}

// Writes the search menu and a filtered, sorted table with a summary of three
// selected rows as PNGs of the example ledger's window when
// SALDO_SCREENSHOT_DIR names a directory (the screenshots script sets it).
TEST(FindAndTotalPictures, ScreenshotsWhenAsked)
{
    const char* dir = std::getenv("SALDO_SCREENSHOT_DIR");
    if (!dir || !*dir)
        GTEST_SKIP() << "SALDO_SCREENSHOT_DIR not set";
    const QDir target(QString::fromLocal8Bit(dir));
    QDir().mkpath(target.path());
    const char* example = std::getenv("SALDO_EXAMPLE_LEDGER");
    QFile file(example && *example ? QString::fromLocal8Bit(example)
                                   : QStringLiteral(SALDO_TEST_DATA_DIR "/../../examples/Musterfirma-2025.saldo"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly)) << file.fileName().toStdString();

    InMemoryUserDefaults defaults;
    Document document(defaults); // no file of its own: nothing is ever saved
    ASSERT_TRUE(document.readFromData(file.readAll()));
    document.showWindows();
    DocumentWindow* window = document.windowController();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(window));
    ViewController* vc = document.entryList();
    auto* search = vc->findChild<SearchFieldController*>();
    QLineEdit* field = search->searchField();
    // Let the detail panel's fade-in end.
    const auto settle = [] {
        QElapsedTimer settling;
        settling.start();
        while (settling.elapsed() < 400)
            QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    };
    settle();

    // The menu with the "Brutto" submenu open, drawn over the window where it pops up.
    QMenu* menu = search->searchMenu();
    search->popUpSearchMenu();
    QAction* brutto = itemTitled(menu, QStringLiteral("Brutto"));
    menu->setActiveAction(brutto);
    brutto->menu()->popup(menu->mapToGlobal(menu->actionGeometry(brutto).topRight()));
    settle();
    QPixmap picture = window->grab();
    {
        QPainter painter(&picture);
        const QPoint origin = window->mapToGlobal(QPoint(0, 0));
        painter.drawPixmap(menu->pos() - origin, menu->grab());
        painter.drawPixmap(brutto->menu()->pos() - origin, brutto->menu()->grab());
    }
    brutto->menu()->close();
    menu->close();
    EXPECT_TRUE(picture.save(target.filePath(QStringLiteral("search-menu.png"))));

    // "Gestaltung" entries, highest gross amount first, three of them selected.
    field->setText(QStringLiteral("Gestaltung"));
    vc->tableView()->sortByColumn(EntryColumn::Brutto, Qt::DescendingOrder);
    QItemSelectionModel* selection = vc->tableView()->selectionModel();
    vc->tableView()->selectRow(0);
    for (int row : { 5, 12 })
        selection->setCurrentIndex(
            vc->tableView()->model()->index(row, 0), QItemSelectionModel::Select | QItemSelectionModel::Rows);
    settle();
    EXPECT_TRUE(window->grab().save(target.filePath(QStringLiteral("filtered-sorted-selection.png"))));
}
