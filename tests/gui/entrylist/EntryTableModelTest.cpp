// The entry table's model as the table sees it: what each cell shows, the
// category cells, the contract of a Qt item model through every structural
// change the list commands make, and the number text of the amount cells.
#include "entrylist/EntryTableModel.h"
#include "entrylist/EntryColumn.h"
#include "entrylist/NumberText.h"
#include "entrylist/ViewController.h"
#include "gui/entrylist/EntryListTestSupport.h"
#include "gui/support/ScriptedDialogs.h"
#include "model/Kategorien.h"

#include <QAbstractItemModelTester>
#include <QHeaderView>
#include <QImage>
#include <QPixmap>
#include <QTableView>
#include <QUndoStack>
#include <gtest/gtest.h>

#include <cmath>
#include <tuple>
#include <utility>

using namespace saldo;
using namespace saldo::gui;
using namespace saldo::gui::testing;

namespace {

QVariant cell(const ViewController& vc, int row, EntryColumn::Id column, int role = Qt::DisplayRole)
{
    const QAbstractItemModel* model = vc.tableView()->model();
    return model->data(model->index(row, column), role);
}

// Which colour dominates the middle of the status circle.
QString circleColour(const QVariant& decoration)
{
    const QImage image = decoration.value<QPixmap>().toImage();
    if (image.isNull())
        return QStringLiteral("none");
    const QColor middle = image.pixelColor(image.width() / 2, image.height() / 2);
    if (middle.green() > middle.red() + 60)
        return QStringLiteral("green");
    if (middle.red() > middle.green() + 60)
        return QStringLiteral("red");
    return QStringLiteral("other");
}

struct CellText {
    int row;
    EntryColumn::Id column;
    const char* text;
};

void expectTexts(const ViewController& vc, std::initializer_list<CellText> cells)
{
    for (const CellText& c : cells)
        EXPECT_EQ(cell(vc, c.row, c.column).toString().toStdString(), c.text)
            << "row " << c.row << ", column " << c.column;
}

} // namespace

TEST(EntryTableModel, NewListShowsTheStartingEntryInThirteenIdentifiedColumns)
{
    InMemoryUserDefaults defaults;
    ViewController vc(defaults);

    // Loading the list stores the default chart when nothing is stored.
    ASSERT_TRUE(defaults.stringArray("Kategorien").has_value());
    EXPECT_EQ(defaults.stringArray("Kategorien")->size(), 174u);

    const QStringList expected = { "NameColumn", "NonEUColumn", "InnergemColumn", "ArtColumn", "KategorieColumn",
        "BruttoColumn", "NettoColumn", "SteuerColumn", "DateColumn", "RechnungsnummerColumn", "SteuernummerColumn",
        "SplitbuchungColumn", "LeistungsartColumn" };
    const QAbstractItemModel* model = vc.tableView()->model();
    ASSERT_EQ(model->columnCount(), expected.size());
    for (int column = 0; column < expected.size(); ++column)
        EXPECT_EQ(
            model->headerData(column, Qt::Horizontal, EntryTableModel::IdentifierRole).toString(), expected[column]);

    ASSERT_EQ(model->rowCount(), 1);
    ASSERT_EQ(vc.einnahmen().size(), 1u);
    EXPECT_EQ(vc.backupEinnahmen(), vc.einnahmen());
    expectTexts(vc,
        { { 0, EntryColumn::Name, "Neu" }, { 0, EntryColumn::Steuer, "19,00" }, { 0, EntryColumn::Brutto, "0,00" },
            { 0, EntryColumn::Art, "Einnahme" }, { 0, EntryColumn::Kategorie, "" } });
    EXPECT_EQ(circleColour(cell(vc, 0, EntryColumn::Name, Qt::DecorationRole)), "green");
    EXPECT_EQ(vc.tableView()->verticalHeader()->defaultSectionSize(), 20);
}

TEST(EntryTableModel, CellsShowTheEntrysCurrentValues)
{
    InMemoryUserDefaults defaults;
    ViewController vc(defaults);
    auto income = Einnahme::make("Honorar", "", 119.0f, 19.0f);
    income->setDatum(520598096.0); // 2017-07-01 12:34:56 in Berlin
    income->setRechnungsnummer("R-17");
    income->setSteuernummer("12/345/67890");
    income->setLeistungsart("Beratung");
    income->setIsNonEU(true);
    auto expense = Einnahme::make("Papier", "", 10.0f, 7.0f);
    expense->setArt(kArtAusgabe);
    expense->setInnergemeinschaftlicherErwerb(true);
    expense->setChildTransactions({ Einnahme::make("Teil", "", 4.0f, 7.0f) });
    vc.setEntries({ income, expense });

    // 119 / (19 / 100 + 1) is 99.99999237 in single precision: two decimals show 100,00.
    // The net amount of 10 at 7 % is 9.3457937.
    expectTexts(vc,
        { { 0, EntryColumn::Brutto, "119,00" }, { 0, EntryColumn::Netto, "100,00" }, { 1, EntryColumn::Netto, "9,35" },
            { 1, EntryColumn::Steuer, "7,00" }, { 0, EntryColumn::Date, "01.07.2017 12:34" },
            { 0, EntryColumn::Rechnungsnummer, "R-17" }, { 0, EntryColumn::Steuernummer, "12/345/67890" },
            { 0, EntryColumn::Leistungsart, "Beratung" }, { 1, EntryColumn::Art, "Ausgabe" } });
    EXPECT_EQ(cell(vc, 1, EntryColumn::Art, Qt::EditRole).toInt(), 1);
    EXPECT_EQ(circleColour(cell(vc, 1, EntryColumn::Name, Qt::DecorationRole)), "red");

    // Check boxes, as {row, column, checked}.
    for (auto [row, column, checked] : { std::tuple { 0, EntryColumn::NonEU, true },
             { 0, EntryColumn::Innergem, false }, { 1, EntryColumn::Innergem, true },
             { 0, EntryColumn::Splitbuchung, false }, { 1, EntryColumn::Splitbuchung, true } })
        EXPECT_EQ(cell(vc, row, column, Qt::CheckStateRole).toInt(), checked ? Qt::Checked : Qt::Unchecked)
            << "row " << row << ", column " << column;

    // The split-booking box is shown, not edited here; the net amount is derived.
    const QAbstractItemModel* model = vc.tableView()->model();
    const auto splitFlags = model->flags(model->index(1, EntryColumn::Splitbuchung));
    EXPECT_FALSE(splitFlags & (Qt::ItemIsUserCheckable | Qt::ItemIsEditable));
    EXPECT_FALSE(model->flags(model->index(1, EntryColumn::Netto)) & Qt::ItemIsEditable);
    EXPECT_TRUE(model->flags(model->index(1, EntryColumn::NonEU)) & Qt::ItemIsUserCheckable);

    // A change made elsewhere shows at the next request.
    income->setArt(kArtAusgabe);
    EXPECT_EQ(circleColour(cell(vc, 0, EntryColumn::Name, Qt::DecorationRole)), "red");
}

TEST(EntryTableModel, CategoryCellsFollowTheStoredList)
{
    InMemoryUserDefaults defaults;
    defaults.setStringArray("Kategorien", { "1000 Kasse Kasse ", "1200 Bank Bank " });
    ViewController vc(defaults);
    auto listed = Einnahme::make("Bank", "1200 Bank Bank ", 5.0f, 0.0f);
    auto unknown = Einnahme::make("Fremd", "9999 Fremd Gesch. ", 5.0f, 0.0f);
    vc.setEntries({ listed, unknown });

    EXPECT_EQ(cell(vc, 0, EntryColumn::Kategorie).toString(), "1200 Bank Bank ");
    EXPECT_EQ(cell(vc, 0, EntryColumn::Kategorie, EntryTableModel::ItemsRole).toStringList(),
        QStringList({ "1000 Kasse Kasse ", "1200 Bank Bank " }));
    // A category missing from the list shows an empty pop-up; the entry keeps it.
    EXPECT_EQ(cell(vc, 1, EntryColumn::Kategorie).toString(), "");
    EXPECT_EQ(unknown->kategorie(), "9999 Fremd Gesch. ");
    // The row must match exactly, final blank included.
    unknown->setKategorie("1200 Bank Bank");
    EXPECT_EQ(cell(vc, 1, EntryColumn::Kategorie).toString(), "");

    // A changed list is read again when the table reloads.
    defaults.setStringArray("Kategorien", { "1200 Bank Bank", "1000 Kasse Kasse " });
    NotificationCenter::defaultCenter().post(kDetailViewUpdated);
    EXPECT_EQ(cell(vc, 1, EntryColumn::Kategorie).toString(), "1200 Bank Bank");
    EXPECT_EQ(cell(vc, 0, EntryColumn::Kategorie).toString(), "");

    // A stored value that is not a list of texts: no pop-up at all.
    InMemoryUserDefaults broken;
    broken.setRawValue("Kategorien", { true, { std::string("1000 Kasse Kasse "), std::nullopt } });
    ViewController other(broken);
    other.setEntries({ Einnahme::make("Kasse", "1000 Kasse Kasse ", 1.0f, 0.0f) });
    EXPECT_FALSE(cell(other, 0, EntryColumn::Kategorie, EntryTableModel::ItemsRole).isValid());
    EXPECT_EQ(cell(other, 0, EntryColumn::Kategorie).toString(), "");
    const QAbstractItemModel* model = other.tableView()->model();
    EXPECT_FALSE(model->flags(model->index(0, EntryColumn::Kategorie)) & Qt::ItemIsEditable);
    EXPECT_FALSE(broken.stringArray("Kategorien").has_value()); // left as it was
}

TEST(EntryTableModel, KeepsTheItemModelContractThroughEveryListCommand)
{
    QtWarningRecorder qtWarnings;
    InMemoryUserDefaults defaults;
    ScriptedDialogs dialogs;
    QUndoStack undoStack;
    ViewController vc(defaults);
    vc.setUndoStack(&undoStack);
    QAbstractItemModelTester tester(vc.tableView()->model(), QAbstractItemModelTester::FailureReportingMode::Warning);

    vc.setEntries(namedEntries({ "a", "b", "c", "d", "e", "f" }));
    vc.viewWillAppear();
    vc.addEntry();
    vc.duplicateEntry();
    vc.tableView()->selectRow(1);
    vc.duplicateRow(3);
    QItemSelectionModel* selection = vc.tableView()->selectionModel();
    const QAbstractItemModel* model = vc.tableView()->model();
    for (int row : { 0, 2, 3, 6 })
        selection->select(model->index(row, 0), QItemSelectionModel::Select | QItemSelectionModel::Rows);
    dialogs.confirmAnswers = { true, true };
    vc.deleteEntries();
    vc.deleteRow(0);
    undoStack.undo();
    undoStack.undo();
    undoStack.redo();
    vc.updateTableView();
    vc.setEntries({});

    EXPECT_EQ(model->rowCount(), 0);
    EXPECT_TRUE(qtWarnings.warnings.isEmpty()) << qtWarnings.warnings.join('\n').toStdString();
}

TEST(EntryTableModel, EveryCellTextRequestIsAnnounced)
{
    InMemoryUserDefaults defaults;
    ViewController vc(defaults);
    const QAbstractItemModel* model = vc.tableView()->model();
    PostCounter posted(kTableViewUpdated);
    model->data(model->index(0, EntryColumn::Name), Qt::DisplayRole);
    model->data(model->index(0, EntryColumn::Brutto), Qt::DisplayRole);
    model->data(model->index(0, EntryColumn::Brutto), Qt::EditRole);
    EXPECT_EQ(posted.count(), 2u);
}

TEST(NumberText, ReadsTheLeadingNumberWithCommaOrPointAndWritesTwoDecimalsWithAComma)
{
    // No leading number reads as 0.
    const std::pair<const char*, float> read[]
        = { { "12,50", 12.5f }, { "12.50", 12.5f }, { "  -7", -7.0f }, { "+3,25 EUR", 3.25f }, { ",5", 0.5f },
              { "7.", 7.0f }, { "1e3", 1000.0f }, { "2e", 2.0f }, { "0.1", 0.1f }, { "1e-999", 0.0f }, { "", 0.0f },
              { "abc", 0.0f }, { ",", 0.0f }, { "-", 0.0f }, { "EUR 5", 0.0f }, { "nan", 0.0f }, { "inf", 0.0f } };
    for (const auto& [text, value] : read)
        EXPECT_EQ(NumberText::parseLeading(QString::fromLatin1(text)), value) << text;
    EXPECT_TRUE(std::isinf(NumberText::parseLeading("1e999")));

    // Writing is the core's decimal-comma text (tested there): two decimals, or
    // more where the value needs them to read back the same.
    EXPECT_EQ(NumberText::format(2.675f), "2,67"); // 2.675f is 2.6749999523
    EXPECT_EQ(NumberText::format(-7.0f), "-7,00");
    EXPECT_EQ(NumberText::editable(12.345f), "12,345");
    EXPECT_EQ(NumberText::editable(0.1f), "0,10");
}
