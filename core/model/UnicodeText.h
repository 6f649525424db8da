#pragma once

#include <string>
#include <string_view>

namespace saldo {

// Equality and order of user texts (kinds, categories, names). Canonically
// equivalent Unicode texts are equal: both sides are compared in their NFC form,
// code point by code point (byte order of UTF-8 is code point order), with no
// case folding and no locale collation, so "Z" orders before "a". Pure ASCII
// texts are compared byte by byte without normalising. Text that is not valid
// UTF-8 is compared by its bytes.
class UnicodeText {
public:
    static bool isAscii(std::string_view text);

    // The NFC form of the text (the text itself when it is ASCII or not UTF-8).
    static std::string nfc(std::string_view text);

    // <0, 0, >0 like strcmp.
    static int compare(std::string_view a, std::string_view b);
    static bool equal(std::string_view a, std::string_view b);
    static bool less(std::string_view a, std::string_view b) { return compare(a, b) < 0; }

    // Number of user-perceived characters (extended grapheme clusters).
    static std::size_t graphemeCount(std::string_view text);
};

}  // namespace saldo
