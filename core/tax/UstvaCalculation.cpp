#include "tax/UstvaCalculation.h"

#include "tax/TaxItems.h"
#include "tax/UstvaPlacement.h"

#include <cmath>
#include <cstdlib>

namespace saldo::tax {

namespace {
// No box and no booked total may go beyond this many cents (4e15 EUR): then a
// base in whole euros times 19 %, and Kz 83 as the sum of all lines, stay
// inside 64 bits.
constexpr std::int64_t kLargestSum = 400'000'000'000'000'000;

bool fits(std::int64_t sum, std::int64_t add, std::int64_t& result)
{
    return !__builtin_add_overflow(sum, add, &result) && std::llabs(result) <= kLargestSum;
}
} // namespace

std::int64_t UstvaResult::baseEuros(const UstvaLine& line) const
{
    return line.hasBase() ? sum(line.baseBox) / 100 : 0;
}

std::int64_t UstvaResult::taxCents(const UstvaLine& line) const
{
    if (line.computedRate != 0)
        return divideRounded(baseEuros(line) * line.computedRate, 100);
    return line.hasTaxKz() ? sum(line.taxBox) : 0;
}

std::int64_t UstvaResult::remainingCents() const
{
    std::int64_t remaining = 0;
    if (!form)
        return remaining;
    for (const UstvaLine& line : form->lines)
        remaining += line.sign * taxCents(line);
    return remaining;
}

UstvaResult UstvaCalculation::calculate(
    const EinnahmeList& entries, const TaxPeriod& period, const UstvaForm& form, const SnapshotGate* gate)
{
    UstvaResult result;
    result.form = &form;
    result.period = period;
    const auto wanted = [&](const Einnahme& top) {
        const ReferenceSeconds datum = top.datum();
        return period.contains(datum) || !std::isfinite(datum);
    };
    forEachItem(entries, gate, wanted, [&](const Einnahme& item, const Einnahme& top, ItemRow row) {
        const std::size_t index = row[0] - 1;
        const auto list = [&](std::vector<ListedItem>& into, const char* reason) {
            into.push_back(ListedItem::of(index, row, reason, item, top.datum()));
        };
        if (!std::isfinite(top.datum())) {
            list(result.nichtZugeordnet, kDatumUngueltig);
            return;
        }
        const UstvaPlacement placement = UstvaPlacement::place(item);
        switch (placement.kind) {
        case UstvaPlacement::Kind::NichtTeil:
            list(result.nichtTeil, placement.reason);
            return;
        case UstvaPlacement::Kind::NichtZugeordnet:
            list(result.nichtZugeordnet, placement.reason);
            return;
        case UstvaPlacement::Kind::OhneVorsteuer:
            ++result.ohneVorsteuer;
            break;
        case UstvaPlacement::Kind::Form: {
            // All of the item's sums, or none.
            std::array<std::int64_t, 3> sums {};
            std::int64_t booked = 0;
            bool ok = fits(result.bookedTax, placement.bookedTax, booked);
            for (std::uint8_t i = 0; ok && i < placement.addCount; ++i) {
                const UstvaPlacement::Add& add = placement.adds[i];
                ok = fits(result.cents[static_cast<std::size_t>(add.box)], add.cents, sums[i]);
            }
            if (!ok) {
                list(result.nichtZugeordnet, kSummeZuGross);
                return;
            }
            for (std::uint8_t i = 0; i < placement.addCount; ++i)
                result.cents[static_cast<std::size_t>(placement.adds[i].box)] = sums[i];
            result.bookedTax = booked;
            break;
        }
        }
        ++result.placed;
        if (!placement.centExact)
            list(result.nichtCentgenau, kNichtCentgenau);
    });
    return result;
}

} // namespace saldo::tax
