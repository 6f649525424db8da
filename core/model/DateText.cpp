#include "model/DateText.h"

#include <charconv>
#include <vector>

namespace saldo {
namespace {

bool isBlank(char c)
{
    return c == ' ' || c == '\t';
}

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

// The number of a run of one to `maxDigits` digits; nothing for anything else.
std::optional<int> number(std::string_view digits, std::size_t maxDigits)
{
    if (digits.empty() || digits.size() > maxDigits)
        return std::nullopt;
    int value = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    if (error != std::errc() || end != digits.data() + digits.size() || !isDigit(digits.front()))
        return std::nullopt;
    return value;
}

std::vector<std::string_view> split(std::string_view text, bool (*isSeparator)(char))
{
    std::vector<std::string_view> parts;
    std::size_t start = 0;
    for (std::size_t i = 0; i <= text.size(); ++i) {
        if (i == text.size() || isSeparator(text[i])) {
            parts.push_back(text.substr(start, i - start));
            start = i + 1;
        }
    }
    return parts;
}

bool isDateSeparator(char c)
{
    return c == '.' || c == ',';
}

bool isTimeSeparator(char c)
{
    return c == ':';
}

// A two-digit year as the year ending in those digits nearest the shown one.
int widenYear(int twoDigits, int shownYear)
{
    int year = shownYear - shownYear % 100 + twoDigits;
    if (year >= shownYear + 50)
        year -= 100;
    else if (year < shownYear - 50)
        year += 100;
    return year;
}

std::optional<int> year(std::string_view digits, int shownYear)
{
    if (digits.size() == 2) {
        const auto twoDigits = number(digits, 2);
        return twoDigits ? std::optional(widenYear(*twoDigits, shownYear)) : std::nullopt;
    }
    if (digits.size() == 4)
        return number(digits, 4);
    return std::nullopt;
}

// Day, month and year of the date part; the shown ones where a part is left out.
std::optional<Calendar::Fields> readDate(std::string_view text, const Calendar::Fields& shown)
{
    Calendar::Fields date = shown;
    std::optional<int> day, month, yearValue = shown.year;
    bool separated = false;
    for (char c : text)
        separated = separated || isDateSeparator(c);
    if (separated) {
        auto parts = split(text, isDateSeparator);
        // One closing point may end the text ("15.3.").
        if (parts.size() > 1 && parts.back().empty())
            parts.pop_back();
        if (parts.size() > 3)
            return std::nullopt;
        day = number(parts[0], 2);
        month = parts.size() > 1 ? number(parts[1], 2) : shown.month;
        if (parts.size() > 2)
            yearValue = year(parts[2], shown.year);
    } else {
        for (char c : text)
            if (!isDigit(c))
                return std::nullopt;
        switch (text.size()) {
        case 1:
        case 2:
            day = number(text, 2);
            month = shown.month;
            break;
        case 4:
        case 6:
        case 8:
            day = number(text.substr(0, 2), 2);
            month = number(text.substr(2, 2), 2);
            if (text.size() > 4)
                yearValue = year(text.substr(4), shown.year);
            break;
        default:
            return std::nullopt;
        }
    }
    // The calendar knows which days exist (no 31 February, 29 February only in leap years).
    if (!day || !month || !yearValue || !Calendar::localMidnight(*yearValue, *month, *day))
        return std::nullopt;
    date.year = *yearValue;
    date.month = *month;
    date.day = *day;
    return date;
}

// "14:30" or "14:30:05": the hour of one or two digits, the rest of two. The
// parts typed replace the shown ones; the seconds stay unless typed.
enum class TimeRead { Refused, Minutes, Seconds };

TimeRead readTime(std::string_view text, Calendar::Fields& into)
{
    const auto parts = split(text, isTimeSeparator);
    if (parts.size() < 2 || parts.size() > 3)
        return TimeRead::Refused;
    int values[3] = { 0, 0, 0 };
    for (std::size_t i = 0; i < parts.size(); ++i) {
        if (i > 0 && parts[i].size() != 2)
            return TimeRead::Refused;
        const auto value = number(parts[i], 2);
        if (!value)
            return TimeRead::Refused;
        values[i] = *value;
    }
    if (values[0] > 23 || values[1] > 59 || values[2] > 59)
        return TimeRead::Refused;
    into.hour = values[0];
    into.minute = values[1];
    if (parts.size() == 2)
        return TimeRead::Minutes;
    into.second = values[2];
    return TimeRead::Seconds;
}

void appendPadded(std::string& out, int value, int width)
{
    char buffer[16];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
    for (auto length = result.ptr - buffer; length < width; ++length)
        out += '0';
    out.append(buffer, result.ptr);
}

} // namespace

std::string DateText::format(const Calendar::LocalDateTime& local)
{
    const Calendar::Fields& f = local.fields;
    // Each part with its width and the character before it: "15.03.2026 14:30".
    const struct {
        int value;
        int width;
        char before;
    } parts[]
        = { { f.day, 2, '\0' }, { f.month, 2, '.' }, { f.year, 4, '.' }, { f.hour, 2, ' ' }, { f.minute, 2, ':' } };
    std::string text;
    for (const auto& part : parts) {
        if (part.before != '\0')
            text += part.before;
        appendPadded(text, part.value, part.width);
    }
    return text;
}

std::optional<Calendar::LocalDateTime> DateText::parse(std::string_view text, const Calendar::LocalDateTime& shown)
{
    while (!text.empty() && isBlank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && isBlank(text.back()))
        text.remove_suffix(1);
    std::size_t blank = 0;
    while (blank < text.size() && !isBlank(text[blank]))
        ++blank;
    const std::string_view datePart = text.substr(0, blank);
    std::string_view timePart = text.substr(blank);
    while (!timePart.empty() && isBlank(timePart.front()))
        timePart.remove_prefix(1);
    if (datePart.empty())
        return std::nullopt;

    auto fields = readDate(datePart, shown.fields);
    if (!fields)
        return std::nullopt;
    Calendar::LocalDateTime result { *fields, shown.millisecond };
    if (!timePart.empty()) {
        const TimeRead time = readTime(timePart, result.fields);
        if (time == TimeRead::Refused)
            return std::nullopt;
        if (time == TimeRead::Seconds)
            result.millisecond = 0;
    }
    return result;
}

} // namespace saldo
