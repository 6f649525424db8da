// The entry list in its window: the selection that the verbs leave and that
// reaches the detail panel, the confirmation before a deletion, the search
// field's modes, search and header sort keeping the selected entries, the
// selection summary, the editors asked for, and the cell editors' looks.
// The table's model as the table sees it: the identified columns, what each
// cell shows, the category cells, and an edit arriving through setData as
// the delegates send it (the rules themselves are the core's). And the
// summary panel beside the list: the report of the entries its document
// shows, as soon as the window opens and then at each tick of its timer.
#include "entrylist/ViewController.h"
#include "app/Document.h"
#include "app/DocumentWindow.h"
#include "app/SplitViewController.h"
#include "editors/DetailViewController.h"
#include "entrylist/EntryColumn.h"
#include "entrylist/EntryLists.h"
#include "entrylist/EntryTableModel.h"
#include "entrylist/SearchFieldController.h"
#include "entrylist/SearchOutcome.h"
#include "entrylist/SelectionSummary.h"
#include "entrylist/SelectionSummaryView.h"
#include "evaluation/CalcEngine.h"
#include "evaluation/SummaryViewController.h"
#include "gui/support/LedgerFixtures.h"
#include "gui/support/Recorders.h"
#include "gui/support/ScriptedDialogs.h"
#include "model/Kategorien.h"
#include "platform/Contrast.h"
#include "platform/DateField.h"
#include "platform/DateTimes.h"
#include "platform/DeleteConfirmation.h"
#include "platform/UserDefaults.h"

#include <QAbstractButton>
#include <QAbstractItemDelegate>
#include <QAction>
#include <QHeaderView>
#include <QImage>
#include <QItemSelectionModel>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPixmap>
#include <QPushButton>
#include <QSignalSpy>
#include <QTableView>
#include <QTest>
#include <QUndoStack>
#include <gtest/gtest.h>

#include <tuple>

namespace saldo::gui {
namespace {

using namespace testing;
using Rows = std::vector<std::size_t>;

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
    for (QAction* action : menu->actions()) {
        if (action->text() == title)
            return action;
        if (action->menu())
            if (QAction* inner = itemTitled(action->menu(), title))
                return inner;
    }
    return nullptr;
}

Contrast::Rgb rgbOf(const QColor& colour)
{
    return { static_cast<std::uint8_t>(colour.red()), static_cast<std::uint8_t>(colour.green()),
        static_cast<std::uint8_t>(colour.blue()) };
}

// Green minus red in the middle of the status circle.
int greenOverRed(const QVariant& decoration)
{
    const QImage image = decoration.value<QPixmap>().toImage();
    if (image.isNull())
        return 0;
    const QColor middle = image.pixelColor(image.width() / 2, image.height() / 2);
    return middle.green() - middle.red();
}

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
    QVariant cell(int row, EntryColumn::Id column, int role = Qt::DisplayRole) const
    {
        return model->data(model->index(row, column), role);
    }
    QString text(int row, EntryColumn::Id column) const { return cell(row, column).toString(); }
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
    EntryTableModel* model = document.model();
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

TEST(DeleteConfirmationTest, AsksCriticallyWithOkFirstAndTheCountedNoun)
{
    auto [box, ok] = DeleteConfirmation::create(nullptr, QString::fromStdString(EntryLists::deleteConfirmationText(3)));
    EXPECT_EQ(box->icon(), QMessageBox::Critical);
    EXPECT_EQ(box->text(), QStringLiteral("Moechten Sie 3 Eintraege loeschen?"));
    EXPECT_TRUE(box->informativeText().isEmpty());
    const QList<QAbstractButton*> buttons = box->buttons();
    ASSERT_EQ(buttons.size(), 2);
    EXPECT_EQ(box->buttonRole(buttons[0]), QMessageBox::AcceptRole);
    EXPECT_EQ(buttons[0]->text(), QStringLiteral("OK"));
    EXPECT_EQ(buttons[1]->text(), QStringLiteral("Abbrechen"));
    EXPECT_EQ(box->defaultButton(), ok);
}

TEST_F(ViewControllerTest, TheSearchMenuChoosesTheModeWhichTakesEffectWithTheNextText)
{
    SearchFieldController* search = list->searchFieldController();
    QLineEdit* field = search->searchField();
    EXPECT_EQ(describe(search->searchMenu()),
        "Name, Kategorie, Art, Non EU, Innergemeinschaftlich, Brutto [Brutto >=, Brutto =, Brutto <=], "
        "Netto [Netto >=, Netto <=], Steuersatz [Steuersatz >=, Steuersatz =, Steuersatz <=], "
        "Datum [Datum >=, Datum =, Datum <=]");
    EXPECT_EQ(field->placeholderText(), "Name");
    QTest::keyClicks(field, "C");
    EXPECT_EQ(namesOf(document.einnahmen()), (Names { "C" }));

    PostCounter posted(kTableViewUpdated);
    QSignalSpy resets(document.model(), &QAbstractItemModel::modelReset);
    itemTitled(search->searchMenu(), QStringLiteral("Brutto >="))->trigger();
    itemTitled(search->searchMenu(), QStringLiteral("Datum"))->trigger(); // holds a submenu: chooses nothing
    EXPECT_EQ(field->placeholderText(), "Brutto >=");
    EXPECT_EQ(document.einnahmen().size(), 1u);
    // A number that cannot be read changes nothing, not even the table.
    field->setText(QStringLiteral("20,5"));
    EXPECT_EQ(posted.count(), 0u);
    EXPECT_EQ(resets.count(), 0);
    field->setText(QStringLiteral("40"));
    EXPECT_EQ(namesOf(document.einnahmen()), (Names { "D", "E" }));

    // Escape empties the field and shows everything again.
    QTest::keyClick(field, Qt::Key_Escape);
    EXPECT_TRUE(field->text().isEmpty());
    EXPECT_EQ(document.einnahmen(), document.backupEinnahmen());
}

// The editors opened in the table's cells: legible over the table's blue
// (which stays where no row covers it), and the date editor wide enough for
// the whole date and time.
TEST_F(ViewControllerTest, CellEditorsAreLegibleAndTheDateEditorShowsTheWholeDateAndTime)
{
    QTableView* table = list->tableView();
    EXPECT_EQ(table->viewport()->palette().color(QPalette::Base), QColor(0, 0, 255));
    for (const EntryColumn::Id column : { EntryColumn::Name, EntryColumn::Art, EntryColumn::Date }) {
        const QModelIndex index = table->model()->index(0, column);
        table->setCurrentIndex(index);
        table->edit(index);
        QWidget* editor = table->indexWidget(index);
        ASSERT_NE(editor, nullptr) << column;
        const QPalette palette = editor->palette();
        for (const QPalette::ColorGroup group : { QPalette::Active, QPalette::Inactive }) {
            for (const auto& [text, background] : { std::pair { QPalette::Text, QPalette::Base },
                     std::pair { QPalette::HighlightedText, QPalette::Highlight },
                     std::pair { QPalette::ButtonText, QPalette::Button } }) {
                EXPECT_GE(Contrast::ratio(rgbOf(palette.color(group, text)), rgbOf(palette.color(group, background))),
                    Contrast::kLegible)
                    << "column " << column << ", roles " << text << " on " << background;
            }
        }
        if (auto* field = qobject_cast<DateField*>(editor)) {
            EXPECT_EQ(field->text().size(), 16); // dd.MM.yyyy HH:mm
            EXPECT_GE(field->contentsRect().width() - 4, field->fontMetrics().horizontalAdvance(field->text()));
        }
        emit table->itemDelegateForColumn(column)->closeEditor(editor);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
}

TEST_F(ViewControllerTest, TheModelsCellsShowTheEntrysCurrentValuesUnderTheirColumnIdentifiers)
{
    const QStringList identifiers = { "NameColumn", "NonEUColumn", "InnergemColumn", "ArtColumn", "KategorieColumn",
        "BruttoColumn", "NettoColumn", "SteuerColumn", "DateColumn", "RechnungsnummerColumn", "SteuernummerColumn",
        "SplitbuchungColumn", "LeistungsartColumn" };
    ASSERT_EQ(model->columnCount(), identifiers.size());
    for (int column = 0; column < identifiers.size(); ++column)
        EXPECT_EQ(model->headerData(column, Qt::Horizontal, EntryTableModel::IdentifierRole), identifiers[column]);

    auto income = Einnahme::make("Honorar", "", 119.0f, 19.0f);
    income->setDatum(520598096.0); // 2017-07-01 12:34:56 in Berlin
    income->setRechnungsnummer("R-17");
    income->setIsNonEU(true);
    auto expense = Einnahme::make("Papier", "", 10.0f, 7.0f);
    expense->setArt(kArtAusgabe);
    expense->setInnergemeinschaftlicherErwerb(true);
    expense->setChildTransactions({ Einnahme::make("Teil", "", 4.0f, 7.0f) });
    document.replaceAllEntries({ income, expense });

    // 119 / 1.19 is 99.99999237 in single precision; 10 at 7 % nets 9.3457937.
    for (auto [row, column, shown] : { std::tuple { 0, EntryColumn::Brutto, "119,00" },
             { 0, EntryColumn::Netto, "100,00" }, { 1, EntryColumn::Netto, "9,35" }, { 1, EntryColumn::Steuer, "7,00" },
             { 0, EntryColumn::Date, "01.07.2017 12:34" }, { 0, EntryColumn::Rechnungsnummer, "R-17" },
             { 1, EntryColumn::Art, "Ausgabe" } })
        EXPECT_EQ(text(row, column), QString::fromUtf8(shown)) << row << "/" << column;
    EXPECT_EQ(cell(1, EntryColumn::Art, Qt::EditRole).toInt(), 1);
    EXPECT_GT(greenOverRed(cell(0, EntryColumn::Name, Qt::DecorationRole)), 60);
    EXPECT_LT(greenOverRed(cell(1, EntryColumn::Name, Qt::DecorationRole)), -60);
    for (auto [row, column, checked] : { std::tuple { 0, EntryColumn::NonEU, true }, { 1, EntryColumn::Innergem, true },
             { 1, EntryColumn::Splitbuchung, true } })
        EXPECT_EQ(cell(row, column, Qt::CheckStateRole).toInt(), checked ? Qt::Checked : Qt::Unchecked);
    // The split-booking box and the net amount are shown, never edited.
    EXPECT_FALSE(
        model->flags(model->index(1, EntryColumn::Splitbuchung)) & (Qt::ItemIsUserCheckable | Qt::ItemIsEditable));
    EXPECT_FALSE(model->flags(model->index(1, EntryColumn::Netto)) & Qt::ItemIsEditable);

    // Every text a cell is asked for is announced.
    PostCounter posts(kTableViewUpdated);
    text(0, EntryColumn::Name);
    EXPECT_EQ(posts.count(), 1u);
}

TEST_F(ViewControllerTest, AnEditFromATableCellIsTheDocumentsVerb)
{
    DiagnosticRecorder diagnostics;
    document.replaceAllEntries(namedEntries({ "Miete" }));
    const int steps = document.undoManager()->count();
    const EinnahmePtr entry = document.einnahmen()[0];
    const QModelIndex brutto = model->index(0, EntryColumn::Brutto);

    // The German way with thousands: the cell shows what was read at once.
    EXPECT_TRUE(model->setData(brutto, QStringLiteral("1.234,56")));
    EXPECT_FLOAT_EQ(entry->brutto(), 1234.56f);
    EXPECT_EQ(text(0, EntryColumn::Brutto), "1234,56");

    // A check box, a pop-up and the date, as their delegates hand them over.
    EXPECT_TRUE(model->setData(model->index(0, EntryColumn::Innergem), Qt::Checked, Qt::CheckStateRole));
    EXPECT_TRUE(model->setData(model->index(0, EntryColumn::Art), 1));
    const QDateTime noon(QDate(2025, 3, 30), QTime(12, 0)); // the day clocks go forward in Berlin
    EXPECT_TRUE(model->setData(model->index(0, EntryColumn::Date), noon));
    EXPECT_TRUE(entry->innergemeinschaftlicherErwerb());
    EXPECT_EQ(entry->art(), kArtAusgabe);
    EXPECT_EQ(DateTimes::toQDateTime(entry->datum()), noon);
    EXPECT_EQ(entry->datum() + kReferenceDateUnixSeconds, 1743328800.0); // 10:00 UTC
    EXPECT_EQ(document.undoManager()->count(), steps + 4);
}

TEST_F(ViewControllerTest, CategoryCellsFollowTheStoredList)
{
    defaults.setStringArray(Kategorien::kKey, { "1000 Kasse Kasse ", "1200 Bank Bank " });
    document.replaceAllEntries({ Einnahme::make("Bank", "1200 Bank Bank ", 5.0f, 0.0f),
        Einnahme::make("Fremd", "1200 Bank Bank", 5.0f, 0.0f) });
    EXPECT_EQ(cell(0, EntryColumn::Kategorie, EntryTableModel::ItemsRole).toStringList(),
        QStringList({ "1000 Kasse Kasse ", "1200 Bank Bank " }));
    // Not a row of the list (the final blank counts): shown as itself and
    // marked, no longer as an empty pop-up; the entry keeps it.
    EXPECT_EQ(text(1, EntryColumn::Kategorie), "1200 Bank Bank (nicht in der Liste)");
    EXPECT_EQ(cell(1, EntryColumn::Kategorie, EntryTableModel::OwnItemRole).toString(), "1200 Bank Bank");
    EXPECT_FALSE(cell(0, EntryColumn::Kategorie, EntryTableModel::OwnItemRole).isValid());
    EXPECT_EQ(document.einnahmen()[1]->kategorie(), "1200 Bank Bank");

    defaults.setStringArray(Kategorien::kKey, { "1200 Bank Bank" });
    model->reload();
    EXPECT_EQ(text(1, EntryColumn::Kategorie), "1200 Bank Bank");
    EXPECT_EQ(text(0, EntryColumn::Kategorie), "1200 Bank Bank  (nicht in der Liste)");

    // A stored value that is not a list of texts: no pop-up at all, the value kept.
    defaults.setRawValue(Kategorien::kKey, { true, { std::string("1000 Kasse Kasse "), std::nullopt } });
    model->reload();
    EXPECT_FALSE(cell(0, EntryColumn::Kategorie, EntryTableModel::ItemsRole).isValid());
    EXPECT_FALSE(model->flags(model->index(0, EntryColumn::Kategorie)) & Qt::ItemIsEditable);
}

QString reportOf(const EinnahmeList& entries)
{
    CalcEngine engine;
    engine.calculate(entries);
    return QString::fromStdString(engine.ergebnisString());
}

TEST(SummaryViewControllerTest, ShowsTheReportOfTheShownEntriesAtOnceAndThenAtEachTick)
{
    InMemoryUserDefaults defaults;
    auto document = testing::shownDocument(defaults, 10);
    SummaryViewController* summary = document->windowController()->splitViewController()->summaryViewController();
    const QString whole = reportOf(document->einnahmen());
    summary->finishRefresh(); // the first report, too, is worked out on a worker
    EXPECT_EQ(summary->resultTextView()->toPlainText(), whole);
    EXPECT_TRUE(summary->resultTextView()->isReadOnly());
    EXPECT_TRUE(summary->timer().isActive());
    EXPECT_EQ(summary->timer().interval(), 5000);
    EXPECT_FALSE(summary->timer().isSingleShot());

    // A search changes the shown entries; the panel follows at its next tick only.
    document->applySearch(SearchOutcome::decide("Name", "Posten 1"));
    ASSERT_EQ(document->einnahmen().size(), 2u);
    summary->viewDidLoad(); // already started: neither a second timer nor a refresh
    EXPECT_EQ(summary->resultTextView()->toPlainText(), whole);
    QMetaObject::invokeMethod(const_cast<QTimer*>(&summary->timer()), "timeout");
    summary->finishRefresh(); // the tick's evaluation runs on a worker
    EXPECT_EQ(summary->resultTextView()->toPlainText(), reportOf(document->einnahmen()));

    document->replaceAllEntries({});
    summary->updateLabels();
    EXPECT_TRUE(summary->resultTextView()->toPlainText().isEmpty());
}

TEST(SummaryViewControllerTest, ALineAboveTheReportSaysWhileTheIncomeIsOverTheLimit)
{
    InMemoryUserDefaults defaults;
    auto document = testing::shownDocument(defaults, 3); // income 119 + 357
    SummaryViewController* summary = document->windowController()->splitViewController()->summaryViewController();
    const QLabel* warning = summary->limitWarningLabel();
    EXPECT_TRUE(warning->isHidden());

    testing::SoundRecorder sounds;
    einnahmenLimit() = 400.0f;
    summary->updateLabels();
    EXPECT_EQ(sounds.lines, (std::vector<std::string> { "Ping" }));
    EXPECT_FALSE(warning->isHidden());
    EXPECT_EQ(warning->text(), QStringLiteral("Einnahmegrenze ueberschritten: € 476.00 von € 400.00"));
    EXPECT_EQ(summary->resultTextView()->toPlainText(), reportOf(document->einnahmen()));

    einnahmenLimit() = 476.0f;
    summary->updateLabels();
    EXPECT_TRUE(warning->isHidden());
    einnahmenLimit().reset();
}

} // namespace
} // namespace saldo::gui
