#include "entrylist/SearchText.h"

#include "platform/Calendar.h"

#include <charconv>
#include <initializer_list>
#include <limits>

namespace saldo {
namespace {

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

int twoDigits(std::string_view s, std::size_t at)
{
    return (s[at] - '0') * 10 + (s[at + 1] - '0');
}

bool isLeapYear(int year)
{
    return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
}

int daysInMonth(int year, int month)
{
    static constexpr int days[12] = { 31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31 };
    return month == 2 && isLeapYear(year) ? 29 : days[month - 1];
}

}  // namespace

std::optional<float> SearchText::number(std::string_view text)
{
    // from_chars takes no '+' of its own; one leading sign of either kind is allowed.
    std::string_view digits = text;
    if (!digits.empty() && digits.front() == '+') {
        digits.remove_prefix(1);
        if (!digits.empty() && digits.front() == '-')
            return std::nullopt;
    }
    if (digits.empty() || digits.front() == '+')
        return std::nullopt;
    // Only the characters of C decimal notation: this keeps out "inf", "nan"
    // and every letter but the exponent's.
    for (char c : digits)
        if (!isDigit(c) && c != '.' && c != 'e' && c != 'E' && c != '+' && c != '-')
            return std::nullopt;
    float value = 0.0f;
    const auto [end, ec]
        = std::from_chars(digits.data(), digits.data() + digits.size(), value, std::chars_format::general);
    if (ec != std::errc() || end != digits.data() + digits.size())
        return std::nullopt;
    return value;
}

std::optional<SearchText::Day> SearchText::day(std::string_view text)
{
    if (text.size() != 10 || text[2] != '-' || text[5] != '-')
        return std::nullopt;
    for (std::size_t i : { 0u, 1u, 3u, 4u, 6u, 7u, 8u, 9u })
        if (!isDigit(text[i]))
            return std::nullopt;
    Day result;
    result.day = twoDigits(text, 0);
    result.month = twoDigits(text, 3);
    result.year = twoDigits(text, 6) * 100 + twoDigits(text, 8);
    if (result.month < 1 || result.month > 12 || result.day < 1 || result.year < 1
        || result.day > daysInMonth(result.year, result.month))
        return std::nullopt;
    return result;
}

std::optional<SearchText::LocalDay> SearchText::localDay(std::string_view text)
{
    const auto d = day(text);
    if (!d)
        return std::nullopt;
    const auto start = Calendar::localMidnight(d->year, d->month, d->day);
    if (!start)
        return std::nullopt;
    Day next = *d;
    if (++next.day > daysInMonth(next.year, next.month)) {
        next.day = 1;
        if (++next.month > 12) {
            next.month = 1;
            ++next.year;
        }
    }
    const auto end = Calendar::localMidnight(next.year, next.month, next.day);
    return LocalDay { *start, end.value_or(std::numeric_limits<double>::infinity()) };
}

}  // namespace saldo
