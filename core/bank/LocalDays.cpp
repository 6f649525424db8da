#include "bank/LocalDays.h"

#include "platform/Calendar.h"

#include <iterator>
#include <optional>

namespace saldo {

std::int64_t LocalDays::dayNumberOf(ReferenceSeconds datum)
{
    auto after = days_.upper_bound(datum);
    if (after != days_.begin()) {
        const auto& [start, span] = *std::prev(after);
        if (datum < span.end)
            return span.day;
    }
    const Calendar::Fields f = Calendar::localFields(datum);
    const BankDate day { f.year, f.month, f.day };
    const std::optional<ReferenceSeconds> start = Calendar::localMidnight(f.year, f.month, f.day);
    // The next day's midnight: noon plus a day, floored to its local midnight.
    const std::optional<ReferenceSeconds> end
        = start ? std::optional(Calendar::startOfLocalDay(*start + 36 * 3600.0)) : std::nullopt;
    if (start && end && *start <= datum && datum < *end)
        days_.emplace(*start, Span { *end, day.dayNumber() });
    return day.dayNumber();
}

ReferenceSeconds LocalDays::noonOf(const BankDate& day)
{
    const std::int64_t number = day.dayNumber();
    const auto known = noons_.find(number);
    if (known != noons_.end())
        return known->second;
    const ReferenceSeconds noon = Calendar::fromLocalFields({ day.year, day.month, day.day, 12, 0, 0 });
    noons_.emplace(number, noon);
    return noon;
}

} // namespace saldo
