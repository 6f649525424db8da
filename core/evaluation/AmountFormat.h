#pragma once

#include <string>

namespace saldo {

// Writes amounts the way the report shows them: the Euro sign, one blank and
// the single-precision value widened to double in fixed notation with two
// fraction digits, decimal point ".", no grouping, whatever the C locale of the
// process says. Infinities read "inf" and "-inf"; a value that is not a number
// reads "nan" without a sign.
class AmountFormat {
public:
    // Appends "€ " and the value to `out`.
    static void append(std::string& out, float amount);

    // Appends the value alone, without the Euro sign and its blank.
    static void appendNumber(std::string& out, float amount);

    // The same text as a new string.
    static std::string format(float amount);
};

} // namespace saldo
