#pragma once

#include <string>
#include <string_view>

namespace saldo {

// The NFC form of user texts for the hot loops of search and sort, without
// calling the normaliser for the texts that need none. Besides ASCII, German
// texts hold only Latin-1 letters (ä, ö, ü, ß, é, ...): precomposed characters
// that never combine with a neighbour, so a text of those is its own NFC form.
// Every other text goes through UnicodeText::nfc, with the same result.
class NfcText {
public:
    // True when the text is ASCII and Latin-1 characters (U+0080 to U+00FF)
    // in valid UTF-8 only, and therefore already in NFC.
    static bool isCertainlyNfc(std::string_view text);

    // The same as UnicodeText::nfc(text).
    static std::string form(std::string_view text);
};

}  // namespace saldo
