#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace saldo {

// Reordering the category list by drag and drop, without a table. Dragged rows
// travel as their row numbers in decimal; the drop goes above the row that
// stands at the target R before the drop (R equal to the row count: below the
// last row). The rows are placed one by one, in drag order, with two counters:
// a row above R (moving down) is taken from its number plus `oldOffset` (how
// many earlier rows already moved down past it) to R - 1, and `oldOffset`
// decreases; any other row (moving up, or onto its own place) is taken from its
// number to R + `newOffset`, and `newOffset` increases. Each move removes the
// element and inserts it at the destination.
//
// Row numbers a program never sends are ignored, never trusted: a target
// beyond the list moves nothing, and a dragged row whose source or destination
// falls outside the list (a negative number, one past the end, a row dragged
// twice) is skipped without touching either counter.
class CategoryListEdits {
public:
    // One move as done: remove the element at `from`, insert it at `to`.
    struct Move {
        std::size_t from;
        std::size_t to;
        bool operator==(const Move&) const = default;
    };

    // The row number a dragged item carries: the whole text as a decimal
    // integer (an optional minus sign, digits, nothing else); nothing for any
    // other text.
    static std::optional<std::int64_t> draggedRow(std::string_view text);

    // Moves the dragged rows of `list` to above `target` and answers the moves
    // in the order done, for a table to repeat them.
    static std::vector<Move> dropRows(
        std::vector<std::string>& list, const std::vector<std::int64_t>& draggedRows, std::size_t target);
};

} // namespace saldo
