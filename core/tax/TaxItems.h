#pragma once

#include "model/Einnahme.h"
#include "model/SnapshotGate.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace saldo::tax {

// What the tax office's figures are made of. An item is an entry without split
// bookings, or a leaf split booking of an entry with split bookings (the split
// bookings are the parts of one receipt, each with its own kind, rate, category
// and flags). Every amount is an integer number of cents, taken once from the
// item's single-precision gross amount; no floating point after that.

// Where an item stands in the ledger: the 1-based position of its top-level
// entry in the ledger's own order, then its 1-based position among the split
// bookings of each level below. Written "12", "12.2" or "12.2.1".
using ItemRow = std::span<const std::uint32_t>;
std::string rowText(ItemRow row);

// Calls visit(item, topLevelEntry, row) for every item of `entries`, in the
// ledger's order (an entry's split bookings in their order, depth first).
template <class Visit>
void forEachItem(const EinnahmeList& entries, Visit&& visit);

// The same for a worker reading a snapshot through its gate (or nullptr),
// in batches under the gate's lock, and only for the top-level entries that
// `wanted(topLevelEntry)` accepts (a period, a year): the others are passed
// over whole.
template <class Wanted, class Visit>
void forEachItem(const EinnahmeList& entries, const SnapshotGate* gate, Wanted&& wanted, Visit&& visit);

// Why an item's amount or rate cannot be taken.
inline constexpr char kBetragUngueltig[] = "Betrag ungueltig";
inline constexpr char kBetragZuGross[] = "Betrag zu gross";
inline constexpr char kSteuersatzUngueltig[] = "Steuersatz ungueltig";
// Why an item whose top-level entry's date is not a point in time belongs to
// no period: it is listed in every one.
inline constexpr char kDatumUngueltig[] = "Datum ungueltig";
// Listed beside an item that is placed, whose amount a float holds only to
// about a cent.
inline constexpr char kNichtCentgenau[] = "nicht centgenau";

// Gross amounts of at least this many euros are refused, so that no sum over
// a ledger can leave 64 bits.
inline constexpr double kLargestGross = 1e10;
// Below this many euros a single-precision amount is exact to the cent.
inline constexpr double kCentExactBelow = 131072.0;

struct GrossCents {
    std::int64_t cents = 0;
    // kBetragUngueltig (NaN, infinite), kBetragZuGross, or nullptr.
    const char* fault = nullptr;
    // False from kCentExactBelow on.
    bool centExact = true;
};
// The gross amount widened to double, times 100, rounded half away from zero.
GrossCents grossCents(float brutto);

// Rates above this many hundredths of a percent (10,000 %) are refused, so that
// a tax on a refused-size amount cannot leave 64 bits.
inline constexpr std::int64_t kLargestRate = 1000000;
// The rate in hundredths of a percent (19 % is 1900), or nothing for a rate
// that is NaN, infinite, negative, above kLargestRate, or more than 0.001 of a
// hundredth away from a whole number of hundredths.
std::optional<std::int64_t> rateHundredths(float steuersatz);

// numerator / denominator rounded half away from zero; denominator > 0.
std::int64_t divideRounded(std::int64_t numerator, std::int64_t denominator);
// The net part of a gross amount: c × 10000 / (10000 + p), rounded half away
// from zero. The tax is c minus it.
std::int64_t netCents(std::int64_t grossCents, std::int64_t rate);
// The tax on a base (a reverse-charge amount): base × p / 10000, rounded half
// away from zero.
std::int64_t taxOnBase(std::int64_t baseCents, std::int64_t rate);

// The account number at the start of a category: the run of ASCII digits that
// opens `kategorie` when a blank or the end of the text follows it ("8400
// Erlöse 19% Gesch. " is 8400; "8400Erlöse" and "€ Sonderposten" have none). A
// run of more than nine digits is no number either.
struct CategoryNumber {
    std::uint32_t value = 0;
    int digits = 0;
};
std::optional<CategoryNumber> categoryNumber(std::string_view kategorie);

// A sum of cents that refuses to overflow: add() returns false and leaves the
// sum as it was when the result would not fit.
class CentSum {
public:
    bool add(std::int64_t cents)
    {
        std::int64_t sum = 0;
        if (__builtin_add_overflow(value_, cents, &sum))
            return false;
        value_ = sum;
        return true;
    }
    std::int64_t value() const { return value_; }

private:
    std::int64_t value_ = 0;
};

// ---------------------------------------------------------------------------

namespace detail {
template <class Visit>
void visitItems(const EinnahmeList& list, const Einnahme& top, std::vector<std::uint32_t>& row, Visit& visit,
    const SnapshotGate* gate = nullptr)
{
    row.push_back(0);
    for (const EinnahmePtr& child : list) {
        ++row.back();
        const Einnahme& entry = gate ? gate->values(*child) : *child;
        if (entry.childTransactions().empty())
            visit(entry, top, ItemRow(row));
        else
            visitItems(entry.childTransactions(), top, row, visit, gate);
    }
    row.pop_back();
}
} // namespace detail

template <class Visit>
void forEachItem(const EinnahmeList& entries, Visit&& visit)
{
    std::vector<std::uint32_t> row { 0 };
    for (const EinnahmePtr& top : entries) {
        ++row[0];
        if (top->childTransactions().empty())
            visit(*top, *top, ItemRow(row));
        else
            detail::visitItems(top->childTransactions(), *top, row, visit);
    }
}

template <class Wanted, class Visit>
void forEachItem(const EinnahmeList& entries, const SnapshotGate* gate, Wanted&& wanted, Visit&& visit)
{
    constexpr std::size_t kBatch = 4096;
    std::unique_lock<std::mutex> batch;
    if (gate)
        batch = gate->lockBatch();
    std::vector<std::uint32_t> row { 0 };
    // The entries lie wherever the allocator put them: fetch them well ahead.
    constexpr std::size_t kAhead = 16;
    for (std::size_t i = 0; i < entries.size(); ++i) {
        if (i + kAhead < entries.size())
            __builtin_prefetch(entries[i + kAhead].get());
        if (gate && i % kBatch == 0 && i != 0) {
            batch.unlock();
            batch.lock();
        }
        const Einnahme& top = gate ? gate->values(*entries[i]) : *entries[i];
        if (!wanted(top))
            continue;
        row[0] = static_cast<std::uint32_t>(i + 1);
        if (top.childTransactions().empty())
            visit(top, top, ItemRow(row));
        else
            detail::visitItems(top.childTransactions(), top, row, visit, gate);
    }
}

} // namespace saldo::tax
