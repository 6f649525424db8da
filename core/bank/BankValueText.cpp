#include "bank/BankValueText.h"

#include "bank/BankText.h"

#include <charconv>
#include <string>

namespace saldo {

namespace {

constexpr std::int64_t kMaxCents = 1'000'000'000'000'000; // ten trillion euros

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

bool takeSuffix(std::string_view& text, std::string_view suffix)
{
    if (text.size() < suffix.size() || text.substr(text.size() - suffix.size()) != suffix)
        return false;
    text.remove_suffix(suffix.size());
    text = BankText::trimmed(text);
    return true;
}

// A sign at the front or the back: "-", "+" or the minus sign U+2212.
int takeSign(std::string_view& text)
{
    static constexpr std::string_view kMinus = "\xE2\x88\x92";
    int sign = 0;
    if (text.starts_with(kMinus)) {
        sign = -1;
        text.remove_prefix(kMinus.size());
    } else if (!text.empty() && (text.front() == '-' || text.front() == '+')) {
        sign = text.front() == '-' ? -1 : 1;
        text.remove_prefix(1);
    }
    if (sign == 0 && !text.empty() && (text.back() == '-' || text.back() == '+')) {
        sign = text.back() == '-' ? -1 : 1;
        text.remove_suffix(1);
    }
    text = BankText::trimmed(text);
    return sign == 0 ? 1 : sign;
}

} // namespace

std::optional<std::int64_t> BankValueText::cents(std::string_view text, char decimalMark, char thousandsMark)
{
    text = BankText::trimmed(text);
    if (!takeSuffix(text, "\xE2\x82\xAC"))
        takeSuffix(text, "EUR");
    const int sign = takeSign(text);
    if (text.empty())
        return std::nullopt;

    std::int64_t euros = 0;
    std::size_t i = 0;
    std::size_t groupDigits = 0; // digits since the last thousands mark
    bool grouped = false;
    std::size_t integerDigits = 0;
    for (; i < text.size() && text[i] != decimalMark; ++i) {
        const char c = text[i];
        if (thousandsMark != 0 && c == thousandsMark) {
            if (integerDigits == 0 || (grouped && groupDigits != 3) || (!grouped && groupDigits > 3))
                return std::nullopt;
            grouped = true;
            groupDigits = 0;
            continue;
        }
        if (!isDigit(c))
            return std::nullopt;
        euros = euros * 10 + (c - '0');
        if (euros > kMaxCents / 100)
            return std::nullopt;
        ++integerDigits;
        ++groupDigits;
    }
    if (grouped && groupDigits != 3)
        return std::nullopt;
    std::int64_t cents = 0;
    if (i < text.size()) {
        const std::string_view decimals = text.substr(i + 1);
        if (decimals.empty() && integerDigits == 0)
            return std::nullopt;
        for (std::size_t k = 0; k < decimals.size(); ++k) {
            if (!isDigit(decimals[k]))
                return std::nullopt;
            if (k < 2)
                cents += (decimals[k] - '0') * (k == 0 ? 10 : 1);
            else if (decimals[k] != '0')
                return std::nullopt;
        }
    } else if (integerDigits == 0) {
        return std::nullopt;
    }
    return sign * (euros * 100 + cents);
}

std::optional<BankDate> BankValueText::date(std::string_view text, std::string_view format)
{
    text = BankText::trimmed(text);
    BankDate date;
    std::size_t at = 0;
    auto number = [&](std::size_t least, std::size_t most, int& value) {
        std::size_t length = 0;
        while (length < most && at + length < text.size() && isDigit(text[at + length]))
            ++length;
        if (length < least)
            return false;
        std::from_chars(text.data() + at, text.data() + at + length, value);
        at += length;
        return true;
    };
    for (std::size_t f = 0; f < format.size();) {
        const std::string_view rest = format.substr(f);
        bool ok = true;
        if (rest.starts_with("yyyy")) {
            ok = number(4, 4, date.year);
            f += 4;
        } else if (rest.starts_with("yy")) {
            ok = number(2, 2, date.year);
            date.year += 2000;
            f += 2;
        } else if (rest.starts_with("dd") || rest.starts_with("MM")) {
            ok = number(2, 2, rest[0] == 'd' ? date.day : date.month);
            f += 2;
        } else if (rest[0] == 'd' || rest[0] == 'M') {
            ok = number(1, 2, rest[0] == 'd' ? date.day : date.month);
            f += 1;
        } else {
            ok = at < text.size() && text[at] == rest[0];
            ++at;
            ++f;
        }
        if (!ok)
            return std::nullopt;
    }
    if (at != text.size() || !date.isValid())
        return std::nullopt;
    return date;
}

bool BankValueText::isDateFormat(std::string_view format)
{
    int day = 0, month = 0, year = 0;
    for (std::size_t f = 0; f < format.size();) {
        const std::string_view rest = format.substr(f);
        if (rest.starts_with("yyyy") || rest.starts_with("yy")) {
            ++year;
            f += rest.starts_with("yyyy") ? 4 : 2;
        } else if (rest[0] == 'y') {
            return false;
        } else if (rest[0] == 'd' || rest[0] == 'M') {
            ++(rest[0] == 'd' ? day : month);
            f += rest.size() > 1 && rest[1] == rest[0] ? 2 : 1;
        } else {
            ++f;
        }
    }
    return day == 1 && month == 1 && year == 1;
}

std::string BankValueText::centsText(std::int64_t cents)
{
    std::string out = cents < 0 ? "-" : "";
    const std::uint64_t magnitude = cents < 0 ? 0 - static_cast<std::uint64_t>(cents) : static_cast<std::uint64_t>(cents);
    out += std::to_string(magnitude / 100);
    out += '.';
    out += static_cast<char>('0' + magnitude % 100 / 10);
    out += static_cast<char>('0' + magnitude % 10);
    return out;
}

} // namespace saldo
