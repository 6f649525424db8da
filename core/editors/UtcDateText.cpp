#include "editors/UtcDateText.h"

#include <charconv>
#include <cmath>
#include <cstdint>

namespace saldo {
namespace {

struct CivilDay {
    std::int64_t year;
    int month;
    int day;
};

// Gregorian year, month and day of a count of days since 1970-01-01, for any
// count that fits: 400-year eras of 146097 days, each split into years that
// start on 1 March, so that the leap day falls at the end of a year.
CivilDay civilFromDays(std::int64_t days)
{
    days += 719468; // from 1970-01-01 to 0000-03-01
    const std::int64_t era = (days >= 0 ? days : days - 146096) / 146097;
    const std::int64_t dayOfEra = days - era * 146097; // [0, 146096]
    const std::int64_t yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
    const std::int64_t dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100); // [0, 365]
    const std::int64_t monthFromMarch = (5 * dayOfYear + 2) / 153; // [0, 11]
    const int day = static_cast<int>(dayOfYear - (153 * monthFromMarch + 2) / 5 + 1);
    const int month = static_cast<int>(monthFromMarch < 10 ? monthFromMarch + 3 : monthFromMarch - 9);
    const std::int64_t year = yearOfEra + era * 400 + (month <= 2 ? 1 : 0);
    return { year, month, day };
}

void appendPadded(std::string& out, std::int64_t value, int width)
{
    char digits[24];
    const auto end = std::to_chars(digits, digits + sizeof digits, value).ptr;
    for (auto n = end - digits; n < width; ++n)
        out += '0';
    out.append(digits, end);
}

} // namespace

std::string UtcDateText::format(ReferenceSeconds datum)
{
    // Whole seconds first, then the offset to the Unix epoch in integers, so that
    // no fraction is lost to the addition. The bound keeps the seconds and the
    // year in 64-bit integers.
    const double whole = std::floor(datum);
    if (!(std::fabs(whole) < 9.0e18))
        return {};
    const std::int64_t unixSeconds
        = static_cast<std::int64_t>(whole) + static_cast<std::int64_t>(kReferenceDateUnixSeconds);
    std::int64_t days = unixSeconds / 86400;
    std::int64_t secondOfDay = unixSeconds % 86400;
    if (secondOfDay < 0) {
        secondOfDay += 86400;
        --days;
    }
    const CivilDay civil = civilFromDays(days);

    std::string text;
    if (civil.year < 0) {
        text += '-';
        appendPadded(text, -civil.year, 4);
    } else {
        appendPadded(text, civil.year, 4);
    }
    text += '-';
    appendPadded(text, civil.month, 2);
    text += '-';
    appendPadded(text, civil.day, 2);
    text += ' ';
    appendPadded(text, secondOfDay / 3600, 2);
    text += ':';
    appendPadded(text, secondOfDay / 60 % 60, 2);
    text += ':';
    appendPadded(text, secondOfDay % 60, 2);
    text += " +0000";
    return text;
}

} // namespace saldo
