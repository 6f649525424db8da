#include "entrylist/CellEdit.h"

#include <gtest/gtest.h>

#include <functional>

namespace saldo {
namespace {

using Outcome = CellEdit::Outcome;
using Table = CellEdit::Table;

// One cell edit each, on a fresh expense of 50 at 19 % with no flags set.
TEST(CellEditTest, EachColumnStoresItsValueByTheRulesOfItsTable)
{
    struct Case {
        const char* what;
        EntryColumn::Id column;
        CellEdit::Value value;
        Table table;
        Outcome outcome;
        std::function<bool(const Einnahme&)> holds;
    };
    const auto split = Einnahme::make("Teil", "", 1.0f, 0.0f);
    const std::vector<Case> cases = {
        { "name", EntryColumn::Name, CellEdit::Text { "Miete Mai" }, Table::Entries, Outcome::Stored,
            [](const Einnahme& e) { return e.name() == "Miete Mai"; } },
        { "gross, German", EntryColumn::Brutto, CellEdit::Text { "1.234,56" }, Table::Entries, Outcome::Stored,
            [](const Einnahme& e) { return e.brutto() == 1234.56f; } },
        { "gross 0", EntryColumn::Brutto, CellEdit::Text { "0" }, Table::Entries, Outcome::Refused,
            [](const Einnahme& e) { return e.brutto() == 50.0f; } },
        { "gross negative", EntryColumn::Brutto, CellEdit::Text { "-7" }, Table::SplitBookings, Outcome::Refused,
            [](const Einnahme& e) { return e.brutto() == 50.0f; } },
        { "gross unreadable", EntryColumn::Brutto, CellEdit::Text { "12 Euro" }, Table::Entries, Outcome::Refused,
            [](const Einnahme& e) { return e.brutto() == 50.0f; } },
        { "rate negative", EntryColumn::Steuer, CellEdit::Text { "-7" }, Table::Entries, Outcome::Stored,
            [](const Einnahme& e) { return e.steuersatz() == -7.0f; } },
        { "rate unreadable", EntryColumn::Steuer, CellEdit::Text { "7%" }, Table::Entries, Outcome::Refused,
            [](const Einnahme& e) { return e.steuersatz() == 19.0f; } },
        { "net", EntryColumn::Netto, CellEdit::Text { "1" }, Table::Entries, Outcome::NothingStored,
            [](const Einnahme& e) { return e.brutto() == 50.0f; } },
        { "invoice", EntryColumn::Rechnungsnummer, CellEdit::Text { "R-1" }, Table::Entries, Outcome::Stored,
            [](const Einnahme& e) { return e.rechnungsnummer() == "R-1"; } },
        { "non-EU on", EntryColumn::NonEU, CellEdit::Check { true }, Table::Entries, Outcome::Stored,
            [](const Einnahme& e) { return e.isNonEU() && !e.innergemeinschaftlicherErwerb(); } },
        { "split box", EntryColumn::Splitbuchung, CellEdit::Check { true }, Table::Entries, Outcome::NothingStored,
            [](const Einnahme& e) { return e.childTransactions().empty(); } },
        { "kind 0", EntryColumn::Art, CellEdit::ItemIndex { 0 }, Table::Entries, Outcome::Stored,
            [](const Einnahme& e) { return e.art() == kArtEinnahme; } },
        { "kind 5", EntryColumn::Art, CellEdit::ItemIndex { 5 }, Table::Entries, Outcome::Stored,
            [](const Einnahme& e) { return e.art() == kArtAusgabe; } },
        { "no category chosen", EntryColumn::Kategorie, CellEdit::ItemTitle {}, Table::Entries, Outcome::Dropped,
            [](const Einnahme& e) { return e.kategorie() == "Alt "; } },
        { "category", EntryColumn::Kategorie, CellEdit::ItemTitle { "1000 Kasse " }, Table::Entries, Outcome::Stored,
            [](const Einnahme& e) { return e.kategorie() == "1000 Kasse "; } },
        { "date", EntryColumn::Date, CellEdit::Date { 12345.5 }, Table::Entries, Outcome::Stored,
            [](const Einnahme& e) { return e.datum() == 12345.5; } },
        { "date into a text column", EntryColumn::Name, CellEdit::Date { 1.0 }, Table::Entries, Outcome::Dropped,
            [](const Einnahme& e) { return e.name() == "Strom"; } },
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        Einnahme entry("Strom", "Alt ", 50.0f, 19.0f);
        entry.setArt(kArtAusgabe);
        entry.setInnergemeinschaftlicherErwerb(true);
        EXPECT_EQ(CellEdit::apply(entry, c.column, c.value, c.table), c.outcome);
        EXPECT_TRUE(c.holds(entry));
    }

    // An entry with split bookings: its gross is theirs in the entry table, a
    // split booking's own in the split-booking editor's table.
    for (auto [table, outcome] :
        { std::pair { Table::Entries, Outcome::Refused }, std::pair { Table::SplitBookings, Outcome::Stored } }) {
        Einnahme entry("Einkauf", "", 50.0f, 19.0f);
        entry.setChildTransactions({ split });
        EXPECT_EQ(CellEdit::apply(entry, EntryColumn::Brutto, CellEdit::Text { "12,5" }, table), outcome);
    }
}

TEST(CellEditTest, TheRowLineJoinsItsSixItemsWithBlanks)
{
    EXPECT_EQ(CellEdit::diagnosticText(3, 5, "12,50"), "Row:  3 , Column:  5  Inhalt:  12,50");
    EXPECT_EQ(CellEdit::diagnosticText(0, 0, ""), "Row:  0 , Column:  0  Inhalt:  ");
}

} // namespace
} // namespace saldo
