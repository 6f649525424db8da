#pragma once

#include "bank/BankBooking.h"
#include "platform/Clock.h"

#include <cstdint>
#include <map>
#include <unordered_map>

namespace saldo {

// The local day of an instant and the noon of a day, asked of the calendar
// once per day instead of once per entry: a statement and a ledger of a
// hundred thousand lines fall on a few hundred days, and every question to
// the calendar goes to the time zone's rules. One cache serves one import;
// it assumes the time zone does not change meanwhile.
class LocalDays {
public:
    // The number of the local day (days since 1970-01-01) that holds `datum`.
    std::int64_t dayNumberOf(ReferenceSeconds datum);
    // Noon, local time, of the day.
    ReferenceSeconds noonOf(const BankDate& day);

private:
    struct Span {
        ReferenceSeconds end;
        std::int64_t day;
    };
    std::map<ReferenceSeconds, Span> days_; // by the start of each day seen
    std::unordered_map<std::int64_t, ReferenceSeconds> noons_;
};

} // namespace saldo
