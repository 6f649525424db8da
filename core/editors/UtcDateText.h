#pragma once

#include "platform/Clock.h"

#include <string>

namespace saldo {

// The standard textual form of a date value, as the recurring-entries sheet
// shows it: the instant in UTC as "2017-07-01 08:30:00 +0000". The instant is
// floored to whole seconds, so a fraction never rounds into the next second,
// day or year. Days follow the Gregorian calendar in both directions without
// a gap (year 0 is the year before 1, then -1, ...). The year has at least four
// digits, zero-padded; a negative year carries a minus sign before them
// ("-0001-12-31 23:59:59 +0000"), and a year after 9999 is written with all its
// digits ("10000-01-01 00:00:00 +0000"). Values that name no instant (not a
// number, infinite, or more than about 290 billion years away) give an empty
// text.
class UtcDateText {
public:
    static std::string format(ReferenceSeconds datum);
};

} // namespace saldo
