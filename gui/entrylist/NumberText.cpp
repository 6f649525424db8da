#include "entrylist/NumberText.h"

#include "model/DecimalCommaText.h"

#include <cctype>
#include <charconv>
#include <cmath>
#include <limits>
#include <string>

namespace saldo::gui {

QString NumberText::format(float value)
{
    return QString::fromStdString(DecimalCommaText::fixed(value, 2));
}

QString NumberText::editable(float value)
{
    return QString::fromStdString(DecimalCommaText::editable(value));
}

float NumberText::parseLeading(const QString& text)
{
    const std::string bytes = text.toStdString();
    std::size_t i = 0;
    while (i < bytes.size() && (bytes[i] == ' ' || bytes[i] == '\t'))
        ++i;

    // Copy the leading number into C notation: sign, digits, one decimal
    // separator (comma or point), digits, exponent.
    std::string number;
    if (i < bytes.size() && (bytes[i] == '+' || bytes[i] == '-')) {
        if (bytes[i] == '-')
            number += '-';
        ++i;
    }
    const auto isDigit
        = [&](std::size_t k) { return k < bytes.size() && std::isdigit(static_cast<unsigned char>(bytes[k])); };
    bool digits = false;
    while (isDigit(i)) {
        number += bytes[i++];
        digits = true;
    }
    if (i < bytes.size() && (bytes[i] == ',' || bytes[i] == '.') && (digits || isDigit(i + 1))) {
        number += '.';
        ++i;
        while (isDigit(i)) {
            number += bytes[i++];
            digits = true;
        }
    }
    if (!digits)
        return 0.0f;
    if (i < bytes.size() && (bytes[i] == 'e' || bytes[i] == 'E')) {
        std::size_t k = i + 1;
        std::string exponent = "e";
        if (k < bytes.size() && (bytes[k] == '+' || bytes[k] == '-'))
            exponent += bytes[k++];
        if (isDigit(k)) {
            while (isDigit(k))
                exponent += bytes[k++];
            number += exponent;
        }
    }

    float value = 0.0f;
    const auto result = std::from_chars(number.data(), number.data() + number.size(), value);
    if (result.ec == std::errc())
        return value;
    if (result.ec != std::errc::result_out_of_range)
        return 0.0f;
    // Too large for a float reads as infinity, too small as (signed) zero.
    const bool negative = number.front() == '-';
    double wide = 0.0;
    const auto wideResult = std::from_chars(number.data(), number.data() + number.size(), wide);
    const bool tiny = wideResult.ec == std::errc() ? std::fabs(wide) < 1.0 : number.find("e-") != std::string::npos;
    if (tiny)
        return negative ? -0.0f : 0.0f;
    return negative ? -std::numeric_limits<float>::infinity() : std::numeric_limits<float>::infinity();
}

} // namespace saldo::gui
