#include "model/Kategorien.h"
#include "settings/CategoryListEdits.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

namespace saldo {
namespace {

// FNV-1a over all rows, each followed by a line feed: catches any changed
// character, blank or umlaut in the chart.
std::uint64_t fingerprint(const std::vector<std::string>& rows)
{
    std::uint64_t h = 1469598103934665603ull;
    for (const auto& row : rows) {
        for (unsigned char c : row + "\n") {
            h ^= c;
            h *= 1099511628211ull;
        }
    }
    return h;
}

TEST(KategorienTest, DefaultChartHasItsRowsInOrderWithTheirFinalBlanks)
{
    const auto rows = Kategorien::defaultKategorien();
    ASSERT_EQ(rows.size(), 174u);
    EXPECT_EQ(rows.front(), "0027 EDV-Software Gesch. ");
    EXPECT_EQ(rows[6],
        "0410 Gesch\xC3\xA4"
        "ftsausstattung Gesch. ");
    EXPECT_EQ(rows[46], "2340 Einstellungen in Sonderposten mit ");
    EXPECT_EQ(rows[47],
        "R\xC3\xBC"
        "cklagenanteil (steuerfre Gesch. ");
    EXPECT_EQ(rows[117], "4822 Abschreibungen auf Immatrielle ");
    EXPECT_EQ(rows[148], "8500 Provisionserl\xC3\xB6se Gesch. ");
    EXPECT_EQ(rows[149], "8510 Provisionserl\xC3\xB6se Gesch. ");
    EXPECT_EQ(rows.back(), "9000 Saldenvortr\xC3\xA4ge, Sachkonten Gesch. ");
    for (const auto& row : rows)
        EXPECT_EQ(row.back(), ' ') << row;
    EXPECT_EQ(fingerprint(rows), 0xc053c9f95109c200ull) << std::hex << fingerprint(rows);
}

TEST(KategorienTest, DefaultChartIsStoredOnlyWhenNothingIsStored)
{
    InMemoryUserDefaults defaults;
    EXPECT_FALSE(Kategorien::isKeyPresentInUserDefaults(defaults, "Kategorien"));
    Kategorien::storeDefaultKategorienIfMissing(defaults);
    EXPECT_EQ(defaults.stringArray("Kategorien"), Kategorien::defaultKategorien());
    Kategorien::storeDefaultKategorienIfMissing(defaults);
    EXPECT_EQ(defaults.writeCount(), 1);

    InMemoryUserDefaults empty;
    empty.setStringArray("Kategorien", {});
    Kategorien::storeDefaultKategorienIfMissing(empty);
    EXPECT_EQ(empty.stringArray("Kategorien"), std::vector<std::string> {});

    InMemoryUserDefaults scalar;
    scalar.setRawValue("Kategorien", { false, {} });
    Kategorien::storeDefaultKategorienIfMissing(scalar);
    EXPECT_TRUE(scalar.hasValue("Kategorien"));
    EXPECT_FALSE(scalar.stringArray("Kategorien").has_value());
}

TEST(KategorienTest, ReadersFallBackAsEachNeeds)
{
    InMemoryUserDefaults defaults;
    // Absent: the table cells get nothing, the detail panel gets the chart.
    EXPECT_FALSE(Kategorien::storedList(defaults).has_value());
    EXPECT_EQ(Kategorien::listOrDefault(defaults).size(), 174u);
    EXPECT_EQ(defaults.writeCount(), 0);

    // An array holding a number: not a string list, for every reader.
    defaults.setRawValue("Kategorien", { true, { std::string("1000 Kasse Kasse "), std::nullopt } });
    EXPECT_FALSE(Kategorien::storedList(defaults).has_value());
    EXPECT_EQ(Kategorien::listOrDefault(defaults).size(), 174u);
    EXPECT_TRUE(defaults.hasValue("Kategorien")); // left as it was

    defaults.setStringArray("Kategorien", { "Eigene " });
    EXPECT_EQ(Kategorien::storedList(defaults), std::vector<std::string> { "Eigene " });
    EXPECT_EQ(Kategorien::listOrDefault(defaults), std::vector<std::string> { "Eigene " });
}

using List = std::vector<std::string>;

TEST(CategoryListEditsTest, DropPlacesTheDraggedRowsInDragOrder)
{
    const List abcd { "A", "B", "C", "D" };
    const List six { "0", "1", "2", "3", "4", "5" };
    const std::int64_t huge = std::numeric_limits<std::int64_t>::max();
    struct Case {
        List list;
        std::vector<std::int64_t> rows;
        std::size_t target;
        List expected;
    };
    for (const Case& c : std::vector<Case> {
             { abcd, { 0 }, 3, { "B", "C", "A", "D" } },
             { abcd, { 3 }, 0, { "D", "A", "B", "C" } },
             { abcd, { 0, 1 }, 3, { "C", "A", "B", "D" } },
             { abcd, { 0, 3 }, 2, { "B", "A", "D", "C" } },
             { abcd, { 1 }, 4, { "A", "C", "D", "B" } },
             { six, { 2 }, 5, { "0", "1", "3", "4", "2", "5" } },
             { six, { 5 }, 2, { "0", "1", "5", "2", "3", "4" } },
             // Numbers no table sends are skipped; the other rows still move.
             { abcd, { -1, 4, huge, 0 }, 3, { "B", "C", "A", "D" } },
             { abcd, { 0 }, 5, abcd },
             { abcd, { 3, 3, 3, 3 }, 2, { "A", "B", "D", "C" } },
             { abcd, { 1, 0 }, 3, { "A", "C", "B", "D" } },
         }) {
        List list = c.list;
        const auto moves = CategoryListEdits::dropRows(list, c.rows, c.target);
        EXPECT_EQ(list, c.expected) << c.rows.size() << " rows to above " << c.target;
        // A table repeating the moves ends in the same order.
        List replay = c.list;
        for (const auto& m : moves) {
            const std::string moved = replay[m.from];
            replay.erase(replay.begin() + static_cast<std::ptrdiff_t>(m.from));
            replay.insert(replay.begin() + static_cast<std::ptrdiff_t>(m.to), moved);
        }
        EXPECT_EQ(replay, c.expected);
    }
}

TEST(CategoryListEditsTest, DraggedRowIsTheWholeTextAsADecimalInteger)
{
    for (const auto& [text, row] : std::vector<std::pair<std::string, std::optional<std::int64_t>>> { { "173", 173 },
             { "-1", -1 }, { "", {} }, { " 3", {} }, { "+3", {} }, { "2.0", {} }, { "99999999999999999999", {} } })
        EXPECT_EQ(CategoryListEdits::draggedRow(text), row) << '"' << text << '"';
}

} // namespace
} // namespace saldo
