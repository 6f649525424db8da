#include "tax/TaxPeriod.h"

#include "platform/Calendar.h"


namespace saldo::tax {

namespace {
std::optional<int> digitsValue(std::string_view text)
{
    int value = 0;
    for (char c : text) {
        if (c < '0' || c > '9')
            return std::nullopt;
        value = value * 10 + (c - '0');
    }
    return text.empty() ? std::nullopt : std::optional<int>(value);
}

std::string twoDigits(int value)
{
    return std::string(1, static_cast<char>('0' + value / 10)) + static_cast<char>('0' + value % 10);
}
} // namespace

std::optional<TaxPeriod> TaxPeriod::parse(std::string_view text)
{
    if (text.size() < 4)
        return std::nullopt;
    const std::optional<int> year = digitsValue(text.substr(0, 4));
    if (!year)
        return std::nullopt;
    const std::string_view rest = text.substr(4);
    if (rest.empty())
        return months(*year, 1, 12);
    if (rest.size() == 3 && rest[0] == '-' && rest[1] == 'Q' && rest[2] >= '1' && rest[2] <= '4') {
        const int quarter = rest[2] - '0';
        return months(*year, quarter * 3 - 2, quarter * 3);
    }
    if (rest.size() == 3 && rest[0] == '-') {
        const std::optional<int> month = digitsValue(rest.substr(1));
        if (month)
            return months(*year, *month, *month);
    }
    return std::nullopt;
}

std::optional<TaxPeriod> TaxPeriod::months(int year, int firstMonth, int lastMonth)
{
    if (year < 1000 || year > 9998 || firstMonth < 1 || lastMonth > 12 || firstMonth > lastMonth)
        return std::nullopt;
    const auto start = Calendar::localMidnight(year, firstMonth, 1);
    const auto end = lastMonth == 12 ? Calendar::localMidnight(year + 1, 1, 1)
                                     : Calendar::localMidnight(year, lastMonth + 1, 1);
    if (!start || !end)
        return std::nullopt;
    TaxPeriod period;
    period.year_ = year;
    period.firstMonth_ = firstMonth;
    period.lastMonth_ = lastMonth;
    period.start_ = *start;
    period.end_ = *end;
    return period;
}

std::string TaxPeriod::text() const
{
    const std::string year = std::to_string(year_);
    if (firstMonth_ == 1 && lastMonth_ == 12)
        return year;
    if (firstMonth_ == lastMonth_)
        return year + '-' + twoDigits(firstMonth_);
    if (lastMonth_ == firstMonth_ + 2 && firstMonth_ % 3 == 1)
        return year + "-Q" + static_cast<char>('0' + lastMonth_ / 3);
    return year + '-' + twoDigits(firstMonth_) + ".." + year + '-' + twoDigits(lastMonth_);
}

const char* TaxPeriod::monthName(int month)
{
    static const char* const names[] = { "Januar", "Februar", "Maerz", "April", "Mai", "Juni", "Juli", "August",
        "September", "Oktober", "November", "Dezember" };
    return month >= 1 && month <= 12 ? names[month - 1] : "";
}

std::string TaxPeriod::germanName() const
{
    const std::string year = std::to_string(year_);
    if (firstMonth_ == 1 && lastMonth_ == 12)
        return "Jahr " + year;
    if (firstMonth_ == lastMonth_)
        return std::string(monthName(firstMonth_)) + ' ' + year;
    if (lastMonth_ == firstMonth_ + 2 && firstMonth_ % 3 == 1)
        return std::string(1, static_cast<char>('0' + lastMonth_ / 3)) + ". Quartal " + year;
    return std::string(monthName(firstMonth_)) + " bis " + monthName(lastMonth_) + ' ' + year;
}

} // namespace saldo::tax
