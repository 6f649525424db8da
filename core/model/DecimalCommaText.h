#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace saldo {

// Amounts and rates as a German user reads and types them in the form fields:
// shown with a decimal comma and no thousands separator ("1234,50"), typed with
// a comma or a point ("12,50", "12.50", also "1.234,50"). Independent of the
// process locale: written with std::to_chars, read with std::from_chars.
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

    // The number in the text, or nothing when the text is not a number.
    // Blanks around it are ignored and one leading '+' or '-' is allowed. With a
    // comma in the text, the comma is the decimal separator and points are
    // thousands separators ("1.234,5" is 1234.5); without one, a point is the
    // decimal separator ("1.234" is 1.234). The whole text must be the number;
    // infinities and NaN are refused.
    static std::optional<float> parse(std::string_view text);
};

}  // namespace saldo
