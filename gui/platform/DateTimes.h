#pragma once

#include "platform/Clock.h"

#include <QDateTime>

namespace saldo::gui {

// The stored instant of an entry as the local date and time that the date
// fields of the table and the forms show and edit, and back: the core's one
// conversion (Calendar::localDateTime), with QDateTime holding its fields.
class DateTimes {
public:
    // The local date and time of the instant; an invalid QDateTime for an
    // instant the calendar cannot name.
    static QDateTime toQDateTime(ReferenceSeconds datum);
    // The instant of a local date and time.
    static ReferenceSeconds toReferenceSeconds(const QDateTime& dateTime);
};

}  // namespace saldo::gui
