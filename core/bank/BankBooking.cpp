#include "bank/BankBooking.h"

#include <chrono>

namespace saldo {

namespace {

std::chrono::year_month_day civil(const BankDate& date)
{
    return std::chrono::year_month_day(std::chrono::year(date.year), std::chrono::month(static_cast<unsigned>(date.month)),
        std::chrono::day(static_cast<unsigned>(date.day)));
}

} // namespace

std::int64_t BankDate::dayNumber() const
{
    return std::chrono::sys_days(civil(*this)).time_since_epoch().count();
}

bool BankDate::isValid() const
{
    return year >= 1900 && year <= 2200 && month >= 1 && month <= 12 && day >= 1 && day <= 31 && civil(*this).ok();
}

} // namespace saldo
