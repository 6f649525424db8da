#include "entrylist/EntryLists.h"
#include "core/support/TestSupport.h"
#include "entrylist/SearchOutcome.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <tuple>

namespace saldo {
namespace {

EinnahmeList makeEntries(std::initializer_list<const char*> names)
{
    EinnahmeList list;
    for (const char* name : names)
        list.push_back(Einnahme::make(name, "", 10.0f, 19.0f));
    return list;
}

using testing::Names;
using testing::namesOf;
using namespace std::string_literals;

TEST(EntryListsTest, StartingEntryAndAddingPlaceNewEntriesInBothLists)
{
    EntryLists lists;
    lists.setStartingEntry();
    ASSERT_EQ(lists.einnahmen().size(), 1u);
    const auto& start = lists.einnahmen()[0];
    EXPECT_EQ(std::tuple(start->name(), start->kategorie(), start->brutto(), start->steuersatz()),
        std::tuple("Neu"s, ""s, 0.0f, 19.0f));
    EXPECT_EQ(lists.backupEinnahmen(), lists.einnahmen());

    // Under a filter that "Neu" does not meet, the new entry is still shown, last.
    lists.setEntries(makeEntries({ "Miete", "Strom", "Miete Garage" }));
    ASSERT_TRUE(lists.applySearch(SearchOutcome::decide("Name", "Miete")));
    ASSERT_EQ(namesOf(lists.einnahmen()), (Names { "Miete", "Miete Garage" }));
    ASSERT_EQ(lists.addEntry(), 2u);
    const auto& added = lists.einnahmen()[2];
    EXPECT_EQ(std::tuple(added->name(), added->brutto(), added->steuersatz()), std::tuple("Neu"s, 0.0f, 0.0f));
    EXPECT_EQ(namesOf(lists.backupEinnahmen()), (Names { "Miete", "Strom", "Miete Garage", "Neu" }));
}

TEST(EntryListsTest, DuplicatingAndReplacingKeepTheShownRowAndTheSourcesPlaceInTheCompleteList)
{
    EntryLists lists;
    lists.setEntries(makeEntries({ "A", "B", "C" }));
    const auto source = lists.einnahmen()[1];
    EXPECT_EQ(lists.duplicate(1), 2u);
    EXPECT_EQ(namesOf(lists.einnahmen()), (Names { "A", "B", "B Kopie", "C" }));
    EXPECT_EQ(namesOf(lists.backupEinnahmen()), (Names { "A", "B", "C", "B Kopie" }));
    EXPECT_EQ(lists.einnahmen()[2], lists.backupEinnahmen()[3]);
    EXPECT_NE(lists.einnahmen()[2], source);
    EXPECT_FALSE(lists.duplicate(4));

    // The command's row: the selected one, else the last; nothing on an empty table.
    EXPECT_EQ(EntryLists::duplicateSourceRow(std::nullopt, 3), 2u);
    EXPECT_EQ(EntryLists::duplicateSourceRow(1u, 3), 1u);
    EXPECT_FALSE(EntryLists::duplicateSourceRow(std::nullopt, 0));

    // A replacement takes the shown row and the source's place in the complete list.
    lists.sortEinnahmen("name", false);
    ASSERT_EQ(namesOf(lists.einnahmen()), (Names { "C", "B Kopie", "B", "A" }));
    EXPECT_TRUE(lists.replaceEntry(2, Einnahme::make("B edited", "", 1.0f, 7.0f)));
    EXPECT_EQ(namesOf(lists.einnahmen()), (Names { "C", "B Kopie", "B edited", "A" }));
    EXPECT_EQ(namesOf(lists.backupEinnahmen()), (Names { "A", "B edited", "C", "B Kopie" }));
    EXPECT_FALSE(lists.replaceEntry(4, Einnahme::make("x", "", 1.0f, 7.0f)));
}

// What undo and redo of a duplicate, a write-back and a series rely on:
// an entry goes back exactly where it was taken from, in both lists.
TEST(EntryListsTest, EntriesTakenOutOrReplacedGoBackToTheirPlaces)
{
    EntryLists lists;
    lists.setEntries(makeEntries({ "a", "b", "c", "d" }));
    ASSERT_TRUE(lists.applySearch(SearchOutcome::decide("Name", "c")));
    lists.applySearch(SearchOutcome::showAll());
    ASSERT_TRUE(lists.applySearch(SearchOutcome::decide("Name", "b")));
    const auto b = lists.einnahmen()[0];

    // A copy put beyond the shown list's end goes last there, and last in the complete list.
    auto copy = b->copy();
    EXPECT_EQ(lists.insertCopy(9, copy), 1u);
    EXPECT_EQ(namesOf(lists.backupEinnahmen()), (Names { "a", "b", "c", "d", "b Kopie" }));

    const auto place = lists.takeOut(0);
    ASSERT_TRUE(place);
    EXPECT_EQ(namesOf(lists.backupEinnahmen()), (Names { "a", "c", "d", "b Kopie" }));
    EXPECT_EQ(lists.putBack(*place, b), 0u);
    EXPECT_EQ(namesOf(lists.backupEinnahmen()), (Names { "a", "b", "c", "d", "b Kopie" }));
    EXPECT_FALSE(lists.takeOut(2));

    // A replacement takes the places of the entry it replaces, also where it is hidden.
    auto edited = Einnahme::make("d edited", "", 1.0f, 0.0f);
    EXPECT_FALSE(lists.replaceObject(lists.backupEinnahmen()[3].get(), edited));
    EXPECT_EQ(lists.backupEinnahmen()[3], edited);
    EXPECT_EQ(lists.replaceObject(b.get(), edited), 0u);
    EXPECT_EQ(namesOf(lists.einnahmen()), (Names { "d edited", "b Kopie" }));

    lists.removeEntries({ edited, copy });
    EXPECT_TRUE(lists.einnahmen().empty());
    EXPECT_EQ(namesOf(lists.backupEinnahmen()), (Names { "a", "c" }));

    // The question before a deletion counts its entries.
    EXPECT_EQ(EntryLists::deleteConfirmationText(1), "Moechten Sie 1 Eintrag loeschen?");
    EXPECT_EQ(EntryLists::deleteConfirmationText(0), "Moechten Sie 0 Eintraege loeschen?");
}

// The one-by-one rules written out literally, to check the single-pass versions
// of delete, its undo (deleted entries appended, highest row first) and redo
// (also under a filter, with rows repeated or outside the shown list, and with
// distinct entries of equal values, which only identity tells apart).
struct Reference {
    EinnahmeList shown;
    EinnahmeList complete;

    EinnahmeList deleteRows(std::vector<std::size_t> rows)
    {
        std::sort(rows.begin(), rows.end(), std::greater<>());
        rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
        EinnahmeList record;
        for (std::size_t row : rows) {
            if (row >= shown.size())
                continue;
            auto entry = shown[row];
            shown.erase(shown.begin() + static_cast<std::ptrdiff_t>(row));
            auto it = std::find(complete.begin(), complete.end(), entry);
            if (it != complete.end())
                complete.erase(it);
            record.push_back(entry);
        }
        return record;
    }

    std::vector<std::size_t> undo(const EinnahmeList& record)
    {
        std::vector<std::size_t> rows;
        for (const auto& entry : record) {
            shown.push_back(entry);
            complete.push_back(entry);
            rows.push_back(static_cast<std::size_t>(std::find(shown.begin(), shown.end(), entry) - shown.begin()));
        }
        return rows;
    }

    void redo(const EinnahmeList& record)
    {
        for (const auto& entry : record) {
            std::erase(shown, entry);
            std::erase(complete, entry);
        }
    }
};

TEST(EntryListsTest, SinglePassEditsMatchTheOneByOneRulesOnRandomLists)
{
    std::mt19937 rng(20240611);
    const char* names[] = { "Miete", "Strom", "Porto", "Miete Garage", "Telefon" };
    const char* keys[] = { "name", "brutto", "datum", "art" };
    for (int round = 0; round < 300; ++round) {
        // A pool of entries placed into the complete list with repetitions, so
        // the same object may stand in several places of both lists.
        EinnahmeList pool;
        const int poolSize = 1 + static_cast<int>(rng() % 8);
        for (int i = 0; i < poolSize; ++i)
            pool.push_back(Einnahme::make(names[rng() % 5], "", static_cast<float>(rng() % 5), 19.0f));
        EinnahmeList initial;
        const int count = static_cast<int>(rng() % 12);
        for (int i = 0; i < count; ++i)
            initial.push_back(pool[rng() % pool.size()]);
        EntryLists lists;
        lists.setEntries(initial);
        std::vector<DeletionRecord> records;

        for (int step = 0; step < 12; ++step) {
            Reference ref { lists.einnahmen(), lists.backupEinnahmen() };
            const int op = static_cast<int>(rng() % 6);
            if (op == 0)
                lists.applySearch(SearchOutcome::decide("Name", rng() % 3 ? "M" : ""));
            else if (op == 1)
                lists.sortEinnahmen(std::string_view(keys[rng() % 4]), rng() % 2 == 0);
            else if (op == 2) {
                std::vector<std::size_t> rows;
                const std::size_t n = rng() % 5;
                for (std::size_t i = 0; i < n; ++i)
                    rows.push_back(rng() % (lists.einnahmen().size() + 2));
                const DeletionRecord record = lists.deleteRows(rows);
                EXPECT_EQ(record.entries(), ref.deleteRows(rows));
                records.push_back(record);
            } else if (op == 3 && !records.empty()) {
                const DeletionRecord& record = records[rng() % records.size()];
                EXPECT_EQ(lists.undoDeletion(record), ref.undo(record.entries()));
            } else if (op == 4 && !records.empty()) {
                const DeletionRecord& record = records[rng() % records.size()];
                lists.redoDeletion(record);
                ref.redo(record.entries());
            } else {
                // A record of pool entries, some of them already in the lists.
                EinnahmeList extra;
                for (std::size_t i = rng() % 3; i > 0; --i)
                    extra.push_back(pool[rng() % pool.size()]);
                EXPECT_EQ(lists.undoDeletion(DeletionRecord(extra)), ref.undo(extra));
            }
            if (op >= 2) {
                ASSERT_EQ(lists.einnahmen(), ref.shown) << "round " << round << " step " << step;
                ASSERT_EQ(lists.backupEinnahmen(), ref.complete) << "round " << round << " step " << step;
            }
        }
    }
}

} // namespace
} // namespace saldo
