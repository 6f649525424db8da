#include "platform/Calendar.h"

#include <algorithm>
#include <cmath>
#include <ctime>

namespace saldo {
namespace {

std::tm toLocalTm(ReferenceSeconds datum)
{
    // Instants beyond what the calendar can name (about ±3e16 s, where years no
    // longer fit an int) and non-finite ones read as 1 January of year 1900.
    const double unixSeconds = std::floor(datum + kReferenceDateUnixSeconds);
    std::tm tm{};
    tm.tm_mday = 1;
    if (!(std::fabs(unixSeconds) < 3.0e16))
        return tm;
    std::time_t t = static_cast<std::time_t>(unixSeconds);
    if (!localtime_r(&t, &tm)) {
        tm = std::tm{};
        tm.tm_mday = 1;
    }
    return tm;
}

}  // namespace

int Calendar::monthOf(ReferenceSeconds datum)
{
    return toLocalTm(datum).tm_mon + 1;
}

Calendar::Fields Calendar::localFields(ReferenceSeconds datum)
{
    const std::tm tm = toLocalTm(datum);
    return {tm.tm_year + 1900, tm.tm_mon + 1, tm.tm_mday, tm.tm_hour, tm.tm_min, tm.tm_sec};
}

ReferenceSeconds Calendar::fromLocalFields(const Fields& f)
{
    std::tm tm{};
    tm.tm_year = f.year - 1900;
    tm.tm_mon = f.month - 1;
    tm.tm_mday = f.day;
    tm.tm_hour = f.hour;
    tm.tm_min = f.minute;
    tm.tm_sec = f.second;
    tm.tm_isdst = -1;
    return static_cast<double>(std::mktime(&tm)) - kReferenceDateUnixSeconds;
}

std::optional<Calendar::LocalDateTime> Calendar::localDateTime(ReferenceSeconds datum)
{
    const double unixSeconds = datum + kReferenceDateUnixSeconds;
    if (!(std::fabs(unixSeconds) < 3.0e16))
        return std::nullopt;
    const double whole = std::floor(unixSeconds);
    const int millisecond = std::min(999, static_cast<int>(std::floor((unixSeconds - whole) * 1000.0)));
    return LocalDateTime{localFields(datum), millisecond};
}

ReferenceSeconds Calendar::fromLocalDateTime(const LocalDateTime& local)
{
    return fromLocalFields(local.fields) + local.millisecond / 1000.0;
}

std::optional<ReferenceSeconds> Calendar::localMidnight(int year, int month, int day)
{
    if (month < 1 || month > 12 || day < 1 || day > 31 || year < 1 || year > 9999)
        return std::nullopt;
    std::tm tm{};
    tm.tm_year = year - 1900;
    tm.tm_mon = month - 1;
    tm.tm_mday = day;
    tm.tm_isdst = -1;
    const std::time_t t = std::mktime(&tm);
    // mktime normalises 31 February into March: such a day does not exist.
    if (tm.tm_mday != day || tm.tm_mon != month - 1 || tm.tm_year != year - 1900)
        return std::nullopt;
    return static_cast<double>(t) - kReferenceDateUnixSeconds;
}

ReferenceSeconds Calendar::startOfLocalDay(ReferenceSeconds datum)
{
    const Fields f = localFields(datum);
    return localMidnight(f.year, f.month, f.day).value_or(datum);
}

}  // namespace saldo
