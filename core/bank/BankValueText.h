#pragma once

#include "bank/BankBooking.h"

#include <cstdint>
#include <optional>
#include <string_view>

namespace saldo {

// Reads the amounts and dates of statement files, exactly and strictly:
// amounts become integer cents without passing through a binary fraction,
// and a text that is not quite an amount or a date is nothing, never a guess.
class BankValueText {
public:
    // An amount with the given decimal mark and thousands mark (0: none):
    // "-1.234,56", "+12,5", "1234,56-", "−3,00 €", "12.50 EUR". A thousands mark
    // must stand between groups of three digits; decimals beyond the cents
    // must be zeros. Answers the signed amount in cents.
    static std::optional<std::int64_t> cents(std::string_view text, char decimalMark, char thousandsMark);

    // A day in the given format: "dd" and "MM" take exactly two digits, "d"
    // and "M" one or two, "yyyy" four, "yy" two (the years 2000 to 2099);
    // every other character must stand as it is.
    static std::optional<BankDate> date(std::string_view text, std::string_view format);

    // True when the format is made of the tokens above and names a day,
    // a month and a year once each.
    static bool isDateFormat(std::string_view format);

    // Cents as an amount in C notation with two decimals ("-1234.56").
    static std::string centsText(std::int64_t cents);
};

} // namespace saldo
