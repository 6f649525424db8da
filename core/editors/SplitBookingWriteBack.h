#pragma once

#include "model/Einnahme.h"

#include <cstddef>
#include <optional>
#include <vector>

namespace saldo {

// What confirming the split-booking editor does to the entry list, decided
// before anything changes: the working copy takes the place of the entry at the
// one selected row of the shown list, and the place of that same object in the
// complete list (EntryLists::replaceEntry). The plan holds both objects, so that
// undoing puts the source back where the copy stands.
struct SplitBookingWriteBack {
    std::size_t row = 0;
    EinnahmePtr source;
    EinnahmePtr replacement;

    // Nothing, and the working copy untouched, unless exactly one row is
    // selected, that row lies in `einnahmen` and there is a working copy.
    // Otherwise derives the copy's kind and gross from its split bookings
    // (SplitBookings::deriveKindAndGross; nothing else holds the copy yet) and
    // answers the plan.
    static std::optional<SplitBookingWriteBack> plan(
        const EinnahmeList& einnahmen, const std::vector<std::size_t>& selectedRows, const EinnahmePtr& workingCopy);
};

} // namespace saldo
