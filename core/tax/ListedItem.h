#pragma once

#include "model/Einnahme.h"
#include "platform/Clock.h"
#include "tax/TaxItems.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

namespace saldo::tax {

// An item that a tax evaluation lists beside its figures instead of (or
// besides) placing it, with the reason: what a person needs to find it in the
// ledger and see why. Copied out of the entries while they are read, so a
// list stays as it was when the entries change afterwards.
struct ListedItem {
    // The top-level entry's 0-based position in the list that was evaluated.
    std::size_t top = 0;
    // The item's row: "12", or "12.2.1" for a split booking.
    std::string row;
    const char* reason = nullptr;
    std::string name;
    // The top-level entry's date.
    ReferenceSeconds datum = 0.0;
    // The gross amount as stored (also when it could not be taken).
    float brutto = 0.0f;
    // The amount the list shows when it is not the gross amount: a net
    // amount, or an item's share of a line.
    std::optional<std::int64_t> cents;

    // The top-level entry's local day, "dd.MM.yyyy"; empty for a date the
    // calendar cannot name.
    std::string dayText() const;
    // The amount shown, "1.234,56": `cents` when there are, else the gross
    // amount; as stored ("nan", "inf") when it could not be taken.
    std::string amountText() const;

    static ListedItem of(std::size_t top, ItemRow row, const char* reason, const Einnahme& item, ReferenceSeconds datum)
    {
        return ListedItem { top, rowText(row), reason, item.name(), datum, item.brutto(), std::nullopt };
    }
};

} // namespace saldo::tax
