#pragma once

#include "model/Einnahme.h"

#include <cstddef>
#include <optional>

namespace saldo {

// The rules of the split-booking editor that need no window. The editor works on
// a working copy of one entry: a copy that keeps the source's name and has its
// own list of split bookings, which starts with the source's own child entries
// (so editing one of those changes the source's child too, while adding and
// removing touches only the copy). While the copy has split bookings, their
// signed sum stands for its gross amount: income counts positive, every other
// kind negative. On confirmation that sum decides the copy's kind and gross.
class SplitBookings {
public:
    // The copy the editor edits: the copy rule of the entry, with the source's
    // name instead of the name with " Kopie".
    static EinnahmePtr workingCopy(const Einnahme& source);

    // Nothing without split bookings; else, starting at 0 and walking the split
    // bookings in list order, + gross for income and - gross for any other kind,
    // every step in single precision. The sum may be negative.
    static std::optional<float> childTransactionsSum(const Einnahme& entry);

    // The write-back on confirmation. With split bookings of sum s: s < 0 makes
    // the entry an "Ausgabe" of gross |s|, otherwise (0 included) an "Einnahme"
    // of gross s. Without split bookings kind and gross stay as they are. The
    // rate is never derived.
    static void deriveKindAndGross(Einnahme& entry);

    // Appends a new split booking "Neu", empty category, gross 0, rate 0 to the
    // entry and answers its row.
    static std::size_t addChildEntry(Einnahme& entry);

    // Removes the split booking at `row`; false, and nothing changed, when there
    // is no row or no split booking there.
    static bool removeChildEntry(Einnahme& entry, std::optional<std::size_t> row);
};

} // namespace saldo
