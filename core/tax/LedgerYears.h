#pragma once

#include "model/Einnahme.h"
#include "model/SnapshotGate.h"

#include <vector>

namespace saldo::tax {

// The local years a ledger's entries fall in, by their top-level entries'
// dates, for choosing the year of a yearly return. A date that is no point
// in time, or one the calendar cannot name, belongs to no year. Entries
// cluster in a few years: each date is compared with the bounds of the years
// found so far, and the calendar is asked only for a date outside all of them.
class LedgerYears {
public:
    // Ascending, each year once. A worker reads a snapshot through its gate.
    static std::vector<int> of(const EinnahmeList& entries, const SnapshotGate* gate = nullptr);
};

} // namespace saldo::tax
