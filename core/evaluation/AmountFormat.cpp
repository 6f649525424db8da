#include "evaluation/AmountFormat.h"

#include <charconv>
#include <cmath>

namespace saldo {

void AmountFormat::append(std::string& out, float amount)
{
    out += "\xE2\x82\xAC "; // the Euro sign in UTF-8, then a blank
    appendNumber(out, amount);
}

void AmountFormat::appendNumber(std::string& out, float amount)
{
    const double value = static_cast<double>(amount);
    if (std::isnan(value)) {
        out += "nan";
        return;
    }
    // Fixed notation of a float widened to double needs at most 39 integer digits.
    char buffer[64];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed, 2);
    out.append(buffer, result.ptr);
}

std::string AmountFormat::format(float amount)
{
    std::string text;
    append(text, amount);
    return text;
}

} // namespace saldo
