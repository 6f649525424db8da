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
    if (text.empty() || text.front() == '+' || text.front() == '-')
        return std::nullopt;

    std::string c;
    c.reserve(text.size());
    const auto commas = std::count(text.begin(), text.end(), ',');
    if (commas > 1)
        return std::nullopt;
    if (commas == 1) {
        const auto comma = text.find(',');
        for (std::size_t i = 0; i < text.size(); ++i) {
            const char ch = text[i];
            if (ch == '.') {
                // A thousands separator: only before the comma, between digits.
                if (i > comma || i == 0 || i + 1 >= text.size() || text[i + 1] == ',' || text[i + 1] == '.')
                    return std::nullopt;
                continue;
            }
            c += ch == ',' ? '.' : ch;
        }
    } else {
        c.assign(text);
    }

    float value = 0.0f;
    const char* first = c.data();
    const char* last = c.data() + c.size();
    auto [end, ec] = std::from_chars(first, last, value, std::chars_format::general);
    if (ec != std::errc() || end != last || !std::isfinite(value))
        return std::nullopt;
    return negative ? -value : value;
}

}  // namespace saldo
