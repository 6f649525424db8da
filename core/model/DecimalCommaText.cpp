#include "model/DecimalCommaText.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace saldo {

namespace {

std::string withComma(std::string text)
{
    std::replace(text.begin(), text.end(), '.', ',');
    return text;
}

}  // namespace

std::string DecimalCommaText::fixed(float value, int decimals)
{
    char buffer[128];
    auto [end, ec] = std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed, decimals);
    if (ec != std::errc())
        return {};
    return withComma(std::string(buffer, end));
}

std::string DecimalCommaText::editable(float value, int minDecimals)
{
    if (!std::isfinite(value))
        return fixed(value, minDecimals);
    char buffer[128];
    auto [end, ec] = std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed);
    if (ec != std::errc())
        return fixed(value, minDecimals);
    std::string text(buffer, end);
    const auto point = text.find('.');
    const int decimals = point == std::string::npos ? 0 : static_cast<int>(text.size() - point - 1);
    if (decimals < minDecimals) {
        if (point == std::string::npos)
            text += '.';
        text.append(static_cast<std::size_t>(minDecimals - decimals), '0');
    }
    return withComma(std::move(text));
}

namespace {

bool allDigits(std::string_view text)
{
    return std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

// "1.234", "12.345.678": a first group of one to three digits, then groups of
// exactly three, each after a point.
bool groupedThousands(std::string_view text)
{
    const auto point = text.find('.');
    if (point == std::string_view::npos || point == 0 || point > 3 || !allDigits(text.substr(0, point)))
        return false;
    for (std::size_t i = point; i < text.size(); i += 4) {
        if (text[i] != '.' || i + 4 > text.size() || !allDigits(text.substr(i + 1, 3)))
            return false;
    }
    return true;
}

std::optional<float> finiteFloat(std::string_view c)
{
    float value = 0.0f;
    const char* first = c.data();
    const char* last = c.data() + c.size();
    auto [end, ec] = std::from_chars(first, last, value, std::chars_format::general);
    if (ec != std::errc() || end != last || !std::isfinite(value))
        return std::nullopt;
    return value;
}

}  // namespace

std::optional<float> DecimalCommaText::parse(std::string_view text)
{
    auto isBlank = [](char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; };
    while (!text.empty() && isBlank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && isBlank(text.back()))
        text.remove_suffix(1);

    bool negative = false;
    if (!text.empty() && (text.front() == '+' || text.front() == '-')) {
        negative = text.front() == '-';
        text.remove_prefix(1);
    }
    if (text.empty())
        return std::nullopt;

    std::string c;
    const auto comma = text.find(',');
    if (comma != std::string_view::npos) {
        // German: a decimal comma, points only as thousands separators before it.
        std::string_view whole = text.substr(0, comma);
        const std::string_view fraction = text.substr(comma + 1);
        if (whole.find('.') != std::string_view::npos) {
            if (!groupedThousands(whole))
                return std::nullopt;
            c.assign(whole);
            c.erase(std::remove(c.begin(), c.end(), '.'), c.end());
        } else if (allDigits(whole)) {
            c.assign(whole);
        } else {
            return std::nullopt;
        }
        if (!allDigits(fraction) || (c.empty() && fraction.empty()))
            return std::nullopt;
        c += '.';
        c += fraction;
    } else if (text.front() != '0' && groupedThousands(text)) {
        // "1.234" as a German reads it: one thousand two hundred thirty-four.
        c.assign(text);
        c.erase(std::remove(c.begin(), c.end(), '.'), c.end());
    } else {
        // C notation: a decimal point, an optional exponent.
        if (text.front() == '+' || text.front() == '-')
            return std::nullopt;
        c.assign(text);
    }
    const auto value = finiteFloat(c);
    if (!value)
        return std::nullopt;
    return negative ? -*value : *value;
}

}  // namespace saldo
