#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace saldo {

// Small text rules of the statement import: the case-folded form that rules
// compare, whitespace as banks scatter it, and a cut at a number of characters
// that never splits one.
class BankText {
public:
    // The NFC, case-folded form ("Müller" and "MÜLLER" give the same text).
    // Text that is not UTF-8 is returned as it is.
    static std::string folded(std::string_view text);

    // Blanks, tabs and line breaks collapsed to single blanks; none at either end.
    static std::string tidy(std::string_view text);

    // The first `count` characters (code points) of UTF-8 text.
    static std::string cut(std::string_view text, std::size_t count);

    // The text without blanks, tabs and carriage returns at either end.
    static std::string_view trimmed(std::string_view text);

    // True when `text` is only blanks (and empty).
    static bool isBlank(std::string_view text);
};

} // namespace saldo
