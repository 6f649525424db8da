#include "settings/CategoryListEdits.h"

#include <gtest/gtest.h>

#include <limits>

namespace saldo {
namespace {

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
