// The entry table's model as the table sees it: the identified columns, what
// each cell shows, the category cells, and an edit arriving through setData
// as the delegates send it (the rules themselves are the core's).
#include "entrylist/EntryTableModel.h"
#include "app/Document.h"
#include "entrylist/EntryColumn.h"
#include "gui/support/Recorders.h"
#include "model/Kategorien.h"
#include "platform/DateTimes.h"

#include <QImage>
#include <QPixmap>
#include <QUndoStack>
#include <gtest/gtest.h>

#include <tuple>

namespace saldo::gui {
namespace {

using namespace testing;

// Green minus red in the middle of the status circle.
int greenOverRed(const QVariant& decoration)
{
    const QImage image = decoration.value<QPixmap>().toImage();
    if (image.isNull())
        return 0;
    const QColor middle = image.pixelColor(image.width() / 2, image.height() / 2);
    return middle.green() - middle.red();
}

class EntryTableModelTest : public ::testing::Test {
protected:
    QVariant cell(int row, EntryColumn::Id column, int role = Qt::DisplayRole) const
    {
        return model->data(model->index(row, column), role);
    }
    QString text(int row, EntryColumn::Id column) const { return cell(row, column).toString(); }

    InMemoryUserDefaults defaults;
    Document document { defaults };
    EntryTableModel* model = document.model();
};

TEST_F(EntryTableModelTest, CellsShowTheEntrysCurrentValuesUnderTheirColumnIdentifiers)
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

TEST_F(EntryTableModelTest, AnEditFromATableCellIsTheDocumentsVerb)
{
    DiagnosticRecorder diagnostics;
    document.replaceAllEntries(namedEntries({ "Miete" }));
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
    EXPECT_EQ(document.undoManager()->count(), 1 + 4); // the load, then four edits
}

TEST_F(EntryTableModelTest, CategoryCellsFollowTheStoredList)
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

} // namespace
} // namespace saldo::gui
