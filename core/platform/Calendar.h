#pragma once

#include "platform/Clock.h"

#include <optional>

namespace saldo {

// The user's calendar: the Gregorian calendar in the local time zone of the
// process (the TZ variable, else the system zone), through localtime_r/mktime.
class Calendar {
public:
    // Month 1..12 of the instant `datum` in local time. The instant is floored
    // to whole seconds first, so 0.5 s before a month starts is still the old
    // month, also for dates before 2001 where `datum` is negative.
    static int monthOf(ReferenceSeconds datum);

    // Local midnight at the start of the given day, or nothing when the day does
    // not exist (31 February) or lies outside what the platform can represent.
    static std::optional<ReferenceSeconds> localMidnight(int year, int month, int day);

    // Start of the local day that contains `datum`.
    static ReferenceSeconds startOfLocalDay(ReferenceSeconds datum);

    // Local calendar fields of `datum`.
    struct Fields {
        int year, month, day, hour, minute, second;
    };
    static Fields localFields(ReferenceSeconds datum);

    // Instant of the given local date and time (mktime's rules for gaps).
    static ReferenceSeconds fromLocalFields(const Fields& fields);

    // The one conversion between a stored instant and the local date and time
    // a person sees and edits, to the millisecond: the fields of the instant
    // floored to whole milliseconds, and back. A date the calendar cannot name
    // (beyond about ±3e16 s, or not a number) has no local date and time.
    struct LocalDateTime {
        Fields fields;
        int millisecond;
    };
    static std::optional<LocalDateTime> localDateTime(ReferenceSeconds datum);
    static ReferenceSeconds fromLocalDateTime(const LocalDateTime& local);
};

}  // namespace saldo
