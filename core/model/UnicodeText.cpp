#include "model/UnicodeText.h"

#include <utf8proc.h>

#include <cstdlib>
#include <memory>

namespace saldo {
namespace {

struct FreeDeleter {
    void operator()(utf8proc_uint8_t* p) const { std::free(p); }
};

// NFC of a non-ASCII text, or nothing when the bytes are not valid UTF-8.
bool normalise(std::string_view text, std::string& out)
{
    utf8proc_uint8_t* result = nullptr;
    const utf8proc_ssize_t length = utf8proc_map(
        reinterpret_cast<const utf8proc_uint8_t*>(text.data()), static_cast<utf8proc_ssize_t>(text.size()), &result,
        static_cast<utf8proc_option_t>(UTF8PROC_STABLE | UTF8PROC_COMPOSE));
    std::unique_ptr<utf8proc_uint8_t, FreeDeleter> owned(result);
    if (length < 0)
        return false;
    out.assign(reinterpret_cast<const char*>(result), static_cast<std::size_t>(length));
    return true;
}

int compareBytes(std::string_view a, std::string_view b)
{
    const int c = a.compare(b);
    return c < 0 ? -1 : (c > 0 ? 1 : 0);
}

}  // namespace

bool UnicodeText::isAscii(std::string_view text)
{
    for (unsigned char c : text)
        if (c >= 0x80)
            return false;
    return true;
}

std::string UnicodeText::nfc(std::string_view text)
{
    std::string out;
    if (isAscii(text) || !normalise(text, out))
        return std::string(text);
    return out;
}

int UnicodeText::compare(std::string_view a, std::string_view b)
{
    if (isAscii(a) && isAscii(b))
        return compareBytes(a, b);
    if (a == b)
        return 0;
    std::string na, nb;
    if (!normalise(a, na))
        na.assign(a);
    if (!normalise(b, nb))
        nb.assign(b);
    return compareBytes(na, nb);
}

bool UnicodeText::equal(std::string_view a, std::string_view b)
{
    if (a == b)
        return true;
    if (isAscii(a) && isAscii(b))
        return false;
    return compare(a, b) == 0;
}

std::size_t UnicodeText::graphemeCount(std::string_view text)
{
    std::size_t count = 0;
    utf8proc_int32_t state = 0;
    utf8proc_int32_t previous = -1;
    const auto* p = reinterpret_cast<const utf8proc_uint8_t*>(text.data());
    utf8proc_ssize_t remaining = static_cast<utf8proc_ssize_t>(text.size());
    while (remaining > 0) {
        utf8proc_int32_t codepoint = 0;
        utf8proc_ssize_t used = utf8proc_iterate(p, remaining, &codepoint);
        if (used <= 0) {  // a byte that is not UTF-8 counts as one character
            used = 1;
            codepoint = -1;
        }
        if (previous < 0 || codepoint < 0 || utf8proc_grapheme_break_stateful(previous, codepoint, &state))
            ++count;
        previous = codepoint;
        p += used;
        remaining -= used;
    }
    return count;
}

}  // namespace saldo
