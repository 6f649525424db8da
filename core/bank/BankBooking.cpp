#include "bank/BankBooking.h"

namespace saldo {

std::int64_t BankDate::dayNumber() const
{
    std::int64_t y = year;
    const unsigned m = static_cast<unsigned>(month);
    const unsigned d = static_cast<unsigned>(day);
    y -= m <= 2;
    const std::int64_t era = (y >= 0 ? y : y - 399) / 400;
    const auto yoe = static_cast<unsigned>(y - era * 400);
    const unsigned doy = (153 * (m > 2 ? m - 3 : m + 9) + 2) / 5 + d - 1;
    const unsigned doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
    return era * 146097 + static_cast<std::int64_t>(doe) - 719468;
}

bool BankDate::isValid() const
{
    static constexpr int kDays[12] = { 31, 29, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31 };
    if (year < 1900 || year > 2200 || month < 1 || month > 12 || day < 1 || day > kDays[month - 1])
        return false;
    const bool leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
    return !(month == 2 && day == 29 && !leap);
}

} // namespace saldo
