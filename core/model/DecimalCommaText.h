#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace saldo {

// Amounts and rates as a German user reads and types them in table cells and
// form fields: shown with a decimal comma and no thousands separator
// ("1234,50"), typed the German way or the C way ("12,50", "1.234,50",
// "12.50"). Independent of the process locale: written with std::to_chars,
// read with std::from_chars.
class DecimalCommaText {
public:
    // Exactly `decimals` digits after the comma, rounded from the exact binary
    // value (so 119 / 1.19 in single precision shows "100,00").
    static std::string fixed(float value, int decimals);

    // At least `minDecimals` digits after the comma, and as many more as the
    // shortest text needs that reads back as the very same float. Used for
    // fields that are read back, so that showing a value and taking the form
    // over again never changes it ("12,50", but "12,345").
    static std::string editable(float value, int minDecimals = 2);

    // The one reader of every amount and rate a person types: the number in
    // the text, or nothing when the text cannot be read whole. Blanks around
    // it are ignored and one leading '+' or '-' is allowed. With a comma, the
    // comma is the decimal separator and points may group thousands before it
    // ("1.234,56", "1234,56", "12,5"). Without a comma, points that group
    // digits in threes after a first group of one to three digits (not "0")
    // are thousands separators as well ("1.234" is 1234, "1.234.567" is
    // 1234567); any other text is read in C notation ("1234.56", "0.125",
    // "1e3"). Infinities, NaN and values beyond single precision are refused.
    static std::optional<float> parse(std::string_view text);
};

}  // namespace saldo
