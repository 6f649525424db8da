#include "tax/CentText.h"

namespace saldo::tax {

namespace {
// The digits of a magnitude, grouped in threes by `separator` when it is not 0.
std::string digits(std::uint64_t magnitude, char separator)
{
    std::string text;
    int written = 0;
    do {
        if (separator && written > 0 && written % 3 == 0)
            text.insert(text.begin(), separator);
        text.insert(text.begin(), static_cast<char>('0' + magnitude % 10));
        magnitude /= 10;
        ++written;
    } while (magnitude != 0);
    return text;
}

std::uint64_t magnitudeOf(std::int64_t value)
{
    // Also for the smallest value, whose negation does not fit.
    return value < 0 ? ~static_cast<std::uint64_t>(value) + 1 : static_cast<std::uint64_t>(value);
}

std::string withCents(std::int64_t cents, char separator, char decimal)
{
    const std::uint64_t magnitude = magnitudeOf(cents);
    const auto fraction = static_cast<unsigned>(magnitude % 100);
    std::string text = cents < 0 ? "-" : "";
    text += digits(magnitude / 100, separator);
    text += decimal;
    text += static_cast<char>('0' + fraction / 10);
    text += static_cast<char>('0' + fraction % 10);
    return text;
}
} // namespace

std::string CentText::euros(std::int64_t cents)
{
    return withCents(cents, '.', ',');
}

std::string CentText::wholeEuros(std::int64_t euros)
{
    std::string text = euros < 0 ? "-" : "";
    text += digits(magnitudeOf(euros), '.');
    return text;
}

std::string CentText::cNotation(std::int64_t cents)
{
    return withCents(cents, 0, '.');
}

} // namespace saldo::tax
