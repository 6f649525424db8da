#include "tax/LedgerYears.h"

#include "platform/Calendar.h"
#include "tax/TaxItems.h"
#include "tax/TaxPeriod.h"

#include <algorithm>
#include <cmath>

namespace saldo::tax {

std::vector<int> LedgerYears::of(const EinnahmeList& entries, const SnapshotGate* gate)
{
    // The years found, ordered by their bounds, which do not overlap.
    std::vector<TaxPeriod> years;
    std::size_t last = 0; // the year of the previous date, tried first
    const auto note = [&](ReferenceSeconds datum) {
        if (!std::isfinite(datum))
            return;
        if (last < years.size() && years[last].contains(datum))
            return;
        const auto after = std::upper_bound(years.begin(), years.end(), datum,
            [](ReferenceSeconds d, const TaxPeriod& year) { return d < year.start(); });
        if (after != years.begin() && std::prev(after)->contains(datum)) {
            last = static_cast<std::size_t>(std::prev(after) - years.begin());
            return;
        }
        const std::optional<TaxPeriod> year = TaxPeriod::months(Calendar::localFields(datum).year, 1, 12);
        if (!year || !year->contains(datum))
            return;
        last = static_cast<std::size_t>(years.insert(after, *year) - years.begin());
    };
    // Only the top-level entries' dates count: every entry is passed over
    // as unwanted once its date is noted.
    forEachItem(
        entries, gate,
        [&](const Einnahme& top) {
            note(top.datum());
            return false;
        },
        [](const Einnahme&, const Einnahme&, ItemRow) {});

    std::vector<int> found;
    found.reserve(years.size());
    for (const TaxPeriod& year : years)
        found.push_back(year.year());
    return found;
}

} // namespace saldo::tax
