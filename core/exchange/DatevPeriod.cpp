#include "exchange/DatevPeriod.h"

#include "platform/Calendar.h"

#include <algorithm>

namespace saldo {

namespace {
std::optional<int> digits(std::string_view text)
{
    int value = 0;
    for (const char c : text) {
        if (c < '0' || c > '9')
            return std::nullopt;
        value = value * 10 + (c - '0');
    }
    return value;
}

void appendPadded(std::string& out, int value, int width)
{
    std::string text = std::to_string(value);
    if (static_cast<int>(text.size()) < width)
        out.append(static_cast<std::size_t>(width) - text.size(), '0');
    out += text;
}
} // namespace

int LocalDay::daysInMonth(int year, int month)
{
    static constexpr int kDays[] = { 31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31 };
    const bool leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
    return month == 2 && leap ? 29 : kDays[month - 1];
}

bool LocalDay::exists(int year, int month, int day)
{
    return year >= 1000 && year <= 9998 && month >= 1 && month <= 12 && day >= 1 && day <= daysInMonth(year, month);
}

std::optional<LocalDay> LocalDay::parse(std::string_view text)
{
    if (text.size() != 10 || text[4] != '-' || text[7] != '-')
        return std::nullopt;
    const auto year = digits(text.substr(0, 4));
    const auto month = digits(text.substr(5, 2));
    const auto day = digits(text.substr(8, 2));
    if (!year || !month || !day || !exists(*year, *month, *day))
        return std::nullopt;
    return LocalDay { *year, *month, *day };
}

std::optional<LocalDay> LocalDay::of(ReferenceSeconds datum)
{
    const auto local = Calendar::localDateTime(datum);
    if (!local)
        return std::nullopt;
    return LocalDay { local->fields.year, local->fields.month, local->fields.day };
}

LocalDay LocalDay::previous() const
{
    if (day > 1)
        return { year, month, day - 1 };
    if (month > 1)
        return { year, month - 1, daysInMonth(year, month - 1) };
    return { year - 1, 12, 31 };
}

std::string LocalDay::compact() const
{
    std::string text;
    appendPadded(text, year, 4);
    appendPadded(text, month, 2);
    appendPadded(text, day, 2);
    return text;
}

std::string LocalDay::german() const
{
    std::string text;
    appendPadded(text, day, 2);
    text += '.';
    appendPadded(text, month, 2);
    text += '.';
    appendPadded(text, year, 4);
    return text;
}

std::vector<DatevPeriod> DatevPeriod::split(LocalDay from, LocalDay to, int fiscalYearFirstMonth)
{
    std::vector<DatevPeriod> periods;
    if (to < from || fiscalYearFirstMonth < 1 || fiscalYearFirstMonth > 12)
        return periods;
    LocalDay start = from;
    while (start <= to) {
        const LocalDay nextYear { start.year + 1, 1, 1 };
        const LocalDay nextFiscalYear { start.month < fiscalYearFirstMonth ? start.year : start.year + 1,
            fiscalYearFirstMonth, 1 };
        const LocalDay next = std::min(nextYear, nextFiscalYear);
        const LocalDay end = std::min(to, next.previous());
        const LocalDay fiscalStart { start.month >= fiscalYearFirstMonth ? start.year : start.year - 1,
            fiscalYearFirstMonth, 1 };
        periods.push_back({ start, end, fiscalStart });
        start = next;
    }
    return periods;
}

} // namespace saldo
