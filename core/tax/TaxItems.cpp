#include "tax/TaxItems.h"

#include <cmath>
#include <cstdlib>

namespace saldo::tax {

std::string rowText(ItemRow row)
{
    std::string text;
    for (std::uint32_t position : row) {
        if (!text.empty())
            text += '.';
        text += std::to_string(position);
    }
    return text;
}

GrossCents grossCents(float brutto)
{
    const double euros = brutto;
    if (!std::isfinite(euros))
        return { 0, kBetragUngueltig, false };
    if (std::fabs(euros) >= kLargestGross)
        return { 0, kBetragZuGross, false };
    return { static_cast<std::int64_t>(std::round(euros * 100.0)), nullptr, std::fabs(euros) < kCentExactBelow };
}

std::optional<std::int64_t> rateHundredths(float steuersatz)
{
    const double hundredths = static_cast<double>(steuersatz) * 100.0;
    if (!std::isfinite(hundredths) || hundredths < 0.0 || hundredths > static_cast<double>(kLargestRate) + 0.5)
        return std::nullopt;
    const double whole = std::round(hundredths);
    if (std::fabs(hundredths - whole) > 0.001)
        return std::nullopt;
    const auto rate = static_cast<std::int64_t>(whole);
    if (rate > kLargestRate)
        return std::nullopt;
    return rate;
}

std::int64_t divideRounded(std::int64_t numerator, std::int64_t denominator)
{
    // |numerator| stays below 2^62 for every amount and rate that is taken.
    const std::int64_t magnitude = numerator < 0 ? -numerator : numerator;
    const std::int64_t quotient = (2 * magnitude + denominator) / (2 * denominator);
    return numerator < 0 ? -quotient : quotient;
}

std::int64_t netCents(std::int64_t grossCents, std::int64_t rate)
{
    return divideRounded(grossCents * 10000, 10000 + rate);
}

std::int64_t taxOnBase(std::int64_t baseCents, std::int64_t rate)
{
    return divideRounded(baseCents * rate, 10000);
}

std::optional<CategoryNumber> categoryNumber(std::string_view kategorie)
{
    std::size_t digits = 0;
    while (digits < kategorie.size() && kategorie[digits] >= '0' && kategorie[digits] <= '9')
        ++digits;
    if (digits == 0 || digits > 9 || (digits < kategorie.size() && kategorie[digits] != ' '))
        return std::nullopt;
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < digits; ++i)
        value = value * 10 + static_cast<std::uint32_t>(kategorie[i] - '0');
    return CategoryNumber { value, static_cast<int>(digits) };
}

} // namespace saldo::tax
