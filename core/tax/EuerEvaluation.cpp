#include "tax/EuerEvaluation.h"

#include "tax/EuerRules.h"
#include "tax/TaxItems.h"
#include "tax/TaxPeriod.h"

#include <array>
#include <cmath>
#include <optional>

namespace saldo::tax {

namespace {

// Where an amount on a field's line goes: the line itself, and the sums it
// is part of (the profit takes an expense with a minus sign).
struct Target {
    std::uint16_t line;
    std::int8_t sign;
};
struct Targets {
    std::array<Target, 3> at {};
    std::uint8_t count = 0;
};
using FieldTargets = std::array<Targets, kEuerFieldCount>;

FieldTargets targetsOf(const EuerForm& form)
{
    const auto lines = form.lines();
    auto lineOf = [&](EuerRole role) -> std::optional<std::uint16_t> {
        for (std::size_t i = 0; i < lines.size(); ++i) {
            if (lines[i].role == role)
                return static_cast<std::uint16_t>(i);
        }
        return std::nullopt;
    };
    const auto einnahmen = lineOf(EuerRole::SummeEinnahmen);
    const auto ausgaben = lineOf(EuerRole::SummeAusgaben);
    const auto gewinn = lineOf(EuerRole::Gewinn);
    FieldTargets all {};
    for (std::size_t i = 0; i < lines.size(); ++i) {
        Targets& targets = all[static_cast<std::size_t>(lines[i].field)];
        auto add = [&](std::optional<std::uint16_t> line, std::int8_t sign) {
            if (line)
                targets.at[targets.count++] = { *line, sign };
        };
        add(static_cast<std::uint16_t>(i), 1);
        if (lines[i].role == EuerRole::Einnahme) {
            add(einnahmen, 1);
            add(gewinn, 1);
        } else if (lines[i].role == EuerRole::Ausgabe) {
            add(ausgaben, 1);
            add(gewinn, -1);
        }
    }
    return all;
}

struct Delta {
    std::uint16_t line;
    std::int64_t cents;
};
// Three bookings, each on its line and two sums.
using Deltas = std::array<Delta, 9>;

// The running amounts of the lines. An item's bookings go in whole or not at all.
class LineSums {
public:
    explicit LineSums(const EuerForm& form)
        : targets_(targetsOf(form))
        , sums_(form.lines().size())
    {
    }

    // The item's changes of the lines in `deltas`; false (and nothing
    // changed) when a line would leave 64 bits.
    bool add(const EuerPlacement& placement, Deltas& deltas, std::size_t& count)
    {
        count = 0;
        for (std::size_t b = 0; b < placement.bookingCount; ++b) {
            const EuerBooking& booking = placement.bookings[b];
            const Targets& targets = targets_[static_cast<std::size_t>(booking.field)];
            for (std::size_t t = 0; t < targets.count; ++t) {
                const Delta delta { targets.at[t].line, targets.at[t].sign * booking.cents };
                if (!sums_[delta.line].add(delta.cents)) {
                    while (count > 0) {
                        --count;
                        sums_[deltas[count].line].add(-deltas[count].cents);
                    }
                    return false;
                }
                deltas[count++] = delta;
            }
        }
        return true;
    }

    std::vector<std::int64_t> values() const
    {
        std::vector<std::int64_t> values;
        values.reserve(sums_.size());
        for (const CentSum& sum : sums_)
            values.push_back(sum.value());
        return values;
    }

private:
    FieldTargets targets_;
    std::vector<CentSum> sums_;
};

// One pass over the items of the form's year; `observe(item, row, deltas,
// count)` sees every item whose bookings went on the lines.
template <class Observe>
EuerResult run(const EinnahmeList& entries, const EuerForm& form, bool kleinunternehmer, const SnapshotGate* gate,
    Observe&& observe)
{
    EuerResult result;
    result.form = &form;
    result.kleinunternehmer = kleinunternehmer;
    LineSums sums(form);
    const std::optional<TaxPeriod> year = TaxPeriod::months(form.year(), 1, 12);
    if (!year) {
        result.cents = sums.values();
        return result;
    }
    Deltas deltas;
    EuerRules::Pass rules(kleinunternehmer);
    // An entry whose date is no point in time belongs to no year: it is
    // listed in every year rather than lost.
    const auto wanted = [&](const Einnahme& top) { return year->contains(top.datum()) || !std::isfinite(top.datum()); };
    forEachItem(entries, gate, wanted, [&](const Einnahme& item, const Einnahme& top, ItemRow row) {
        const bool dated = std::isfinite(top.datum());
        ++result.itemCount;
        auto list = [&](std::vector<EuerListed>& to, const char* reason, std::int64_t cents, bool known) {
            to.push_back({ rowText(row), &item, cents, reason, row[0] - 1, known });
        };
        if (!dated) {
            const GrossCents gross = grossCents(item.brutto());
            list(result.nichtZugeordnet, kDatumUngueltig, gross.cents, !gross.fault);
            return;
        }
        EuerPlacement placement = rules.place(item);
        std::size_t count = 0;
        if (!sums.add(placement, deltas, count)) {
            list(result.nichtZugeordnet, kBetragZuGross, grossCents(item.brutto()).cents, true);
            return;
        }
        switch (placement.list) {
        case EuerList::NichtZugeordnet:
            list(result.nichtZugeordnet, placement.reason, placement.listedCents, placement.amountKnown);
            break;
        case EuerList::NichtAbziehbar:
            list(result.nichtAbziehbar, placement.reason, placement.listedCents, true);
            break;
        case EuerList::Anlagegut:
            list(result.anlagegut, placement.reason, placement.listedCents, true);
            break;
        case EuerList::NichtTeil:
            list(result.nichtTeil, placement.reason, placement.listedCents, true);
            break;
        case EuerList::None:
            break;
        }
        if (placement.ohneKontonummer)
            list(result.hinweise, kOhneKontonummer, grossCents(item.brutto()).cents, true);
        if (placement.nichtCentgenau)
            list(result.hinweise, kNichtCentgenau, grossCents(item.brutto()).cents, true);
        if (placement.reverseCharge)
            ++result.reverseChargeCount;
        observe(item, row, deltas, count);
    });
    result.cents = sums.values();
    return result;
}

// What a list shows of an item beside its name and date.
std::optional<std::int64_t> shownCents(const EuerListed& listed)
{
    return listed.amountKnown ? std::optional<std::int64_t>(listed.cents) : std::nullopt;
}
std::optional<std::int64_t> shownCents(const EuerLineItem& item)
{
    return item.cents;
}
const char* reasonOf(const EuerListed& listed)
{
    return listed.reason;
}
const char* reasonOf(const EuerLineItem&)
{
    return nullptr;
}

// Copies items out in batches under the gate's lock, as the evaluation read
// them: an item that changed since is read from the value the gate kept.
template <class Item>
std::vector<ListedItem> copiedOut(const std::vector<Item>& items, const EinnahmeList& entries, const SnapshotGate* gate)
{
    constexpr std::size_t kBatch = 4096;
    std::vector<ListedItem> copied;
    copied.reserve(items.size());
    std::unique_lock<std::mutex> batch;
    for (std::size_t i = 0; i < items.size(); ++i) {
        if (gate && i % kBatch == 0) {
            if (batch.owns_lock())
                batch.unlock();
            batch = gate->lockBatch();
        }
        const Item& listed = items[i];
        const Einnahme& item = gate ? gate->values(*listed.item) : *listed.item;
        const Einnahme& top = gate ? gate->values(*entries[listed.entryIndex]) : *entries[listed.entryIndex];
        copied.push_back({ listed.entryIndex, listed.row, reasonOf(listed), item.name(), top.datum(), item.brutto(),
            shownCents(listed) });
    }
    return copied;
}

} // namespace

std::vector<ListedItem> EuerEvaluation::listedItems(
    const std::vector<EuerListed>& listed, const EinnahmeList& entries, const SnapshotGate* gate)
{
    return copiedOut(listed, entries, gate);
}

std::vector<ListedItem> EuerEvaluation::listedItems(
    const std::vector<EuerLineItem>& items, const EinnahmeList& entries, const SnapshotGate* gate)
{
    return copiedOut(items, entries, gate);
}

EuerResult EuerEvaluation::evaluate(
    const EinnahmeList& entries, const EuerForm& form, bool kleinunternehmer, const SnapshotGate* gate)
{
    return run(entries, form, kleinunternehmer, gate, [](const Einnahme&, ItemRow, const Deltas&, std::size_t) {});
}

std::vector<EuerLineItem> EuerEvaluation::itemsBehind(const EinnahmeList& entries, const EuerForm& form,
    bool kleinunternehmer, std::size_t line, const SnapshotGate* gate)
{
    std::vector<EuerLineItem> items;
    run(entries, form, kleinunternehmer, gate,
        [&](const Einnahme& item, ItemRow row, const Deltas& deltas, std::size_t count) {
            bool behind = false;
            std::int64_t share = 0;
            for (std::size_t d = 0; d < count; ++d) {
                if (deltas[d].line == line) {
                    behind = true;
                    share += deltas[d].cents;
                }
            }
            if (behind)
                items.push_back({ rowText(row), &item, share, row[0] - 1 });
        });
    return items;
}

} // namespace saldo::tax
