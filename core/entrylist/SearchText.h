#pragma once

#include "platform/Clock.h"

#include <optional>
#include <string_view>

namespace saldo {

// Reading the text typed into the search field as a number or as a day. Both
// readers are strict and locale-independent: a text is accepted whole or not
// at all, nothing is trimmed.
class SearchText {
public:
    // A number in C notation read as single precision: optional sign, digits
    // with an optional decimal point, optional exponent. Refused: a decimal
    // comma, thousands separators, blanks, trailing characters, the empty text,
    // hexadecimal, "inf" and "nan" in any spelling, and values outside the
    // single-precision range (too large, or too small to be told from zero).
    static std::optional<float> number(std::string_view text);

    // A day written "dd-MM-yyyy": exactly two digits, '-', two digits, '-',
    // four digits, naming a day that exists (31-02-2025 is refused).
    struct Day {
        int year = 0;
        int month = 0;
        int day = 0;
    };
    static std::optional<Day> day(std::string_view text);

    // The local day of a "dd-MM-yyyy" text: from its local midnight up to (not
    // including) the next local midnight. A day with a daylight-saving change
    // lasts 23 or 25 hours.
    struct LocalDay {
        ReferenceSeconds start = 0.0;
        ReferenceSeconds end = 0.0;
    };
    static std::optional<LocalDay> localDay(std::string_view text);
};

}  // namespace saldo
