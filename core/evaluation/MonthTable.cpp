#include "evaluation/MonthTable.h"

#include "platform/Calendar.h"

#include <algorithm>
#include <cmath>

namespace saldo {
namespace {

// The table is only built for instants between these two bounds (years 1800 to
// 2400 or so); beyond them the calendar answers directly. This keeps a stray
// date millions of years away from making a table of millions of months.
constexpr ReferenceSeconds kTableLow = -6.4e9;
constexpr ReferenceSeconds kTableHigh = 1.26e10;

// Unix time of the first second of the local month (year, month), found from
// local midnight of the 1st and checked against the calendar; where the zone
// has no midnight that day (or mktime lands elsewhere) it is searched for.
std::optional<double> monthStart(int year, int month)
{
    const std::optional<ReferenceSeconds> midnight = Calendar::localMidnight(year, month, 1);
    if (!midnight)
        return std::nullopt;
    const ReferenceSeconds guess = *midnight;
    if (Calendar::monthOf(guess) == month && Calendar::monthOf(guess - 1.0) != month)
        return guess + kReferenceDateUnixSeconds;
    // Search whole seconds within two days of the guess for the first one of the month.
    double lo = guess - 2 * 86400.0; // before the month
    double hi = guess + 2 * 86400.0; // inside the month
    if (Calendar::monthOf(lo) == month || Calendar::monthOf(hi) != month)
        return std::nullopt;
    while (hi - lo > 1.0) {
        const double mid = std::floor((lo + hi) / 2.0);
        if (Calendar::monthOf(mid) == month)
            hi = mid;
        else
            lo = mid;
    }
    return hi + kReferenceDateUnixSeconds;
}

} // namespace

MonthTable::MonthTable(ReferenceSeconds earliest, ReferenceSeconds latest)
{
    earliest = std::max(earliest, kTableLow);
    latest = std::min(latest, kTableHigh);
    if (earliest <= latest)
        build(earliest, latest);
}

void MonthTable::build(ReferenceSeconds earliest, ReferenceSeconds latest)
{
    const Calendar::Fields first = Calendar::localFields(earliest);
    const Calendar::Fields last = Calendar::localFields(latest);
    int year = first.year;
    int month = first.month;
    // One start per covered month plus the start of the month after the last.
    const long count = (last.year - first.year) * 12L + (last.month - first.month) + 2;
    starts_.reserve(static_cast<std::size_t>(std::max(count, 0L)));
    months_.reserve(starts_.capacity());
    for (long i = 0; i < count; ++i) {
        const std::optional<double> start = monthStart(year, month);
        if (!start || (!starts_.empty() && *start <= starts_.back())) {
            starts_.clear();
            months_.clear();
            return;
        }
        starts_.push_back(*start);
        months_.push_back(static_cast<unsigned char>(month));
        if (++month > 12) {
            month = 1;
            ++year;
        }
    }
}

int MonthTable::monthOf(ReferenceSeconds datum) const
{
    // The calendar floors datum + the Unix offset to whole seconds; since every
    // start is a whole second, comparing the unfloored sum gives the same month.
    const double unixTime = datum + kReferenceDateUnixSeconds;
    if (starts_.empty() || !(unixTime >= starts_.front()) || !(unixTime < starts_.back()))
        return Calendar::monthOf(datum);
    // Last start not after unixTime; written without branches on the data so
    // that dates in random order cost no mispredictions.
    const double* base = starts_.data();
    std::size_t n = starts_.size();
    while (n > 1) {
        const std::size_t half = n / 2;
        base = base[half] <= unixTime ? base + half : base;
        n -= half;
    }
    return months_[static_cast<std::size_t>(base - starts_.data())];
}

} // namespace saldo
