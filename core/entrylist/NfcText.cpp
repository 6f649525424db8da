#include "entrylist/NfcText.h"

#include "model/UnicodeText.h"

#include <cstdint>
#include <cstring>

namespace saldo {

bool NfcText::isCertainlyNfc(std::string_view text)
{
    const auto* p = reinterpret_cast<const unsigned char*>(text.data());
    const auto* end = p + text.size();
    while (p != end) {
        // Eight ASCII bytes at a time: a search reads every text of the list
        // on each keystroke, and most of each text is ASCII.
        while (end - p >= 8) {
            std::uint64_t word;
            std::memcpy(&word, p, 8);
            if (word & 0x8080808080808080u)
                break;
            p += 8;
        }
        if (p == end)
            break;
        const unsigned char c = *p++;
        if (c < 0x80)
            continue;
        // U+0080..U+00FF: lead byte C2 or C3, then one continuation byte.
        if ((c != 0xC2 && c != 0xC3) || p == end || (*p & 0xC0) != 0x80)
            return false;
        ++p;
    }
    return true;
}

std::string NfcText::form(std::string_view text)
{
    if (isCertainlyNfc(text))
        return std::string(text);
    return UnicodeText::nfc(text);
}

}  // namespace saldo
