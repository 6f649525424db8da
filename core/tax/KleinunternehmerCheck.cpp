#include "tax/KleinunternehmerCheck.h"

#include "tax/TaxItems.h"
#include "tax/TaxPeriod.h"
#include "tax/UstvaCalculation.h"
#include "tax/UstvaPlacement.h"

#include <algorithm>
#include <cmath>

namespace saldo::tax {

namespace {
struct Counted {
    ReferenceSeconds datum;
    std::int64_t cents;
    std::size_t top;
    std::string row;
    std::string name;
    float brutto;
};
} // namespace

KleinunternehmerResult KleinunternehmerCheck::check(
    const EinnahmeList& entries, const UstvaForm& form, const SnapshotGate* gate)
{
    KleinunternehmerResult result;
    result.year = form.year;
    result.previousYearLimitCents = form.kleinunternehmerPreviousYearCents;
    result.currentYearLimitCents = form.kleinunternehmerCurrentYearCents;
    const std::optional<TaxPeriod> previous = TaxPeriod::months(form.year - 1, 1, 12);
    const std::optional<TaxPeriod> current = TaxPeriod::months(form.year, 1, 12);
    if (!previous || !current)
        return result;

    std::vector<Counted> counted;
    CentSum previousSum;
    const auto wanted = [&](const Einnahme& top) {
        const ReferenceSeconds datum = top.datum();
        return previous->contains(datum) || current->contains(datum) || !std::isfinite(datum);
    };
    forEachItem(entries, gate, wanted, [&](const Einnahme& item, const Einnahme& top, ItemRow row) {
        if (!(item.art() == kArtEinnahme || item.isIncome()))
            return;
        const std::size_t index = row[0] - 1;
        const ReferenceSeconds datum = top.datum();
        if (!std::isfinite(datum)) {
            result.notCounted.push_back(ListedItem::of(index, row, kDatumUngueltig, item, datum));
            return;
        }
        const UstvaPlacement placement = UstvaPlacement::place(item);
        if (placement.reason == kBetragUngueltig || placement.reason == kBetragZuGross) {
            result.notCounted.push_back(ListedItem::of(index, row, placement.reason, item, datum));
            return;
        }
        if (placement.kind == UstvaPlacement::Kind::NichtTeil)
            return;
        if (current->contains(datum)) {
            counted.push_back(Counted { datum, placement.cents, index, rowText(row), item.name(), item.brutto() });
        } else if (!previousSum.add(placement.cents)) {
            result.notCounted.push_back(ListedItem::of(index, row, kSummeZuGross, item, datum));
        }
    });
    result.previousYearCents = previousSum.value();

    // Collected in the ledger's order: a stable sort keeps it among equal dates.
    std::stable_sort(
        counted.begin(), counted.end(), [](const Counted& a, const Counted& b) { return a.datum < b.datum; });
    CentSum currentSum;
    for (const Counted& c : counted) {
        if (!currentSum.add(c.cents)) {
            result.notCounted.push_back(
                ListedItem { c.top, c.row, kSummeZuGross, c.name, c.datum, c.brutto, std::nullopt });
            continue;
        }
        if (!result.crossing && currentSum.value() > result.currentYearLimitCents)
            result.crossing = ListedItem { c.top, c.row, nullptr, c.name, c.datum, c.brutto, std::nullopt };
    }
    result.currentYearCents = currentSum.value();
    return result;
}

} // namespace saldo::tax
