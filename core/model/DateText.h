#pragma once

#include "platform/Calendar.h"

#include <optional>
#include <string>
#include <string_view>

namespace saldo {

// Dates as a German user reads and types them in the date fields of the
// tables and the forms: shown as "15.03.2026 14:30", typed day first in any
// of the usual short forms. A typed text
// always starts with the day, whatever the field showed before. The time of
// day is kept from the shown value unless one is typed, so a person never has
// to type it.
//
// Accepted dates: day, month and year separated by points (or by the commas a
// German number pad types), each part one or two digits and the year two or
// four ("15.03.2026", "15.3.26", "1.7."); a missing month or year is the shown
// one ("15." or "15.3"). Digits alone are read by their count: "15" is the
// day, "1503" day and month, "150326" and "15032026" day, month and year. A
// two-digit year is the one from fifty years before the shown year to 49
// after it ("26" in 2026 is 2026, "76" is 1976, "75" is 2075). A time may
// follow after a blank, "14:30" or "14:30:05": it sets the hours and minutes,
// and the seconds (clearing the milliseconds) only when they are typed, so
// the shown text taken back changes nothing. Any other text, or a day the
// calendar does not have (31.02.), is refused.
class DateText {
public:
    static std::string format(const Calendar::LocalDateTime& local);

    static std::optional<Calendar::LocalDateTime> parse(std::string_view text, const Calendar::LocalDateTime& shown);
};

} // namespace saldo
