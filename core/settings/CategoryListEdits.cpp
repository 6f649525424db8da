#include "settings/CategoryListEdits.h"

#include <algorithm>
#include <charconv>

namespace saldo {
namespace {

// Removes the element at `from` and inserts it at `to`, shifting the ones between.
void moveElement(std::vector<std::string>& list, std::size_t from, std::size_t to)
{
    const auto first = list.begin();
    if (from < to)
        std::rotate(first + static_cast<std::ptrdiff_t>(from), first + static_cast<std::ptrdiff_t>(from) + 1,
            first + static_cast<std::ptrdiff_t>(to) + 1);
    else if (to < from)
        std::rotate(first + static_cast<std::ptrdiff_t>(to), first + static_cast<std::ptrdiff_t>(from),
            first + static_cast<std::ptrdiff_t>(from) + 1);
}

} // namespace

std::optional<std::int64_t> CategoryListEdits::draggedRow(std::string_view text)
{
    std::int64_t value = 0;
    const char* last = text.data() + text.size();
    const auto [end, ec] = std::from_chars(text.data(), last, value, 10);
    if (ec != std::errc() || end != last || text.empty())
        return std::nullopt;
    return value;
}

std::vector<CategoryListEdits::Move> CategoryListEdits::dropRows(
    std::vector<std::string>& list, const std::vector<std::int64_t>& draggedRows, std::size_t target)
{
    std::vector<Move> moves;
    const auto size = static_cast<std::int64_t>(list.size());
    const auto r = static_cast<std::int64_t>(target);
    if (target > list.size())
        return moves;
    const auto inList = [size](std::int64_t index) { return index >= 0 && index < size; };

    std::int64_t oldOffset = 0;
    std::int64_t newOffset = 0;
    for (const std::int64_t i : draggedRows) {
        // A number outside the list would be skipped below in either branch;
        // leaving it out first keeps the sums clear of overflow.
        if (!inList(i))
            continue;
        if (i < r) {
            const std::int64_t from = i + oldOffset;
            const std::int64_t to = r - 1;
            if (!inList(from) || !inList(to))
                continue;
            moveElement(list, static_cast<std::size_t>(from), static_cast<std::size_t>(to));
            moves.push_back({ static_cast<std::size_t>(from), static_cast<std::size_t>(to) });
            --oldOffset;
        } else {
            const std::int64_t to = r + newOffset;
            if (!inList(to))
                continue;
            moveElement(list, static_cast<std::size_t>(i), static_cast<std::size_t>(to));
            moves.push_back({ static_cast<std::size_t>(i), static_cast<std::size_t>(to) });
            ++newOffset;
        }
    }
    return moves;
}

} // namespace saldo
