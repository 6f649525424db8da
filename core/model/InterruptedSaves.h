#pragma once

#include "model/Einnahme.h"

#include <ctime>
#include <optional>
#include <string>

namespace saldo {

// The temporary files that saves of a ledger left beside it when their
// program was killed (see TemporaryFile: one no running program holds).
// They are removed when the ledger is opened and after each save of it, all
// but one: the newest that reads as a complete ledger and is newer than the
// ledger itself holds work the ledger lacks, and is offered to the user the
// way a recovery copy of untitled work is.
class InterruptedSaves {
public:
    struct Found {
        std::string path;
        EinnahmeList entries;
        std::time_t written = 0;
    };

    // Removes the leftovers beside `ledger`; with `keepNewer`, answers the
    // newest complete one newer than the ledger instead of removing it.
    static std::optional<Found> sweep(const std::string& ledger, bool keepNewer);
};

} // namespace saldo
