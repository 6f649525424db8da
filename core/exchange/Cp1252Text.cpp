#include "exchange/Cp1252Text.h"

#include "entrylist/NfcText.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <iconv.h>
#include <stdexcept>
#include <utf8proc.h>

namespace saldo {

namespace {
constexpr utf8proc_int32_t kReplacementCharacter = 0xFFFD;

bool isPlainAscii(std::string_view text)
{
    for (const char c : text) {
        if (c < 0x20 || c > 0x7E)
            return false;
    }
    return true;
}

// True for the characters no field may hold: C0 controls, DEL, NEL, and the
// Unicode line and paragraph separators.
bool isBreakOrControl(utf8proc_int32_t c)
{
    return c < 0x20 || c == 0x7F || c == 0x85 || c == 0x2028 || c == 0x2029;
}

std::size_t sequenceLength(unsigned char lead)
{
    if (lead < 0x80)
        return 1;
    if (lead >= 0xF0)
        return 4;
    if (lead >= 0xE0)
        return 3;
    return 2;
}
} // namespace

Cp1252Text::Cp1252Text()
    : converter_(iconv_open("WINDOWS-1252", "UTF-8"))
{
    if (converter_ == reinterpret_cast<void*>(static_cast<std::intptr_t>(-1)))
        throw std::runtime_error("iconv cannot convert UTF-8 to WINDOWS-1252");
}

Cp1252Text::~Cp1252Text()
{
    iconv_close(static_cast<iconv_t>(converter_));
}

void Cp1252Text::append(std::string& out, std::string_view utf8, std::size_t maxCharacters)
{
    if (isPlainAscii(utf8)) {
        out += utf8.substr(0, maxCharacters);
        return;
    }
    const std::string composed = NfcText::form(utf8);
    // Every character of the cleaned text becomes exactly one byte, so the
    // cut is made here, in characters.
    clean_.clear();
    std::size_t characters = 0;
    const auto* bytes = reinterpret_cast<const utf8proc_uint8_t*>(composed.data());
    utf8proc_ssize_t at = 0;
    const auto size = static_cast<utf8proc_ssize_t>(composed.size());
    while (at < size && characters < maxCharacters) {
        utf8proc_int32_t c = 0;
        utf8proc_ssize_t length = utf8proc_iterate(bytes + at, size - at, &c);
        if (length < 0) { // not UTF-8: one byte, one replaced character
            length = 1;
            c = kReplacementCharacter;
        }
        at += length;
        if (c == '\r' && at < size && bytes[at] == '\n')
            ++at; // CRLF is one line break
        if (isBreakOrControl(c))
            c = ' ';
        utf8proc_uint8_t encoded[4];
        clean_.append(
            reinterpret_cast<const char*>(encoded), static_cast<std::size_t>(utf8proc_encode_char(c, encoded)));
        ++characters;
    }
    convert(out, clean_);
}

void Cp1252Text::appendQuoted(
    std::string& out, std::string_view utf8, std::size_t maxCharacters, std::string_view suffix)
{
    converted_.clear();
    append(converted_, utf8, maxCharacters > suffix.size() ? maxCharacters - suffix.size() : 0);
    converted_ += suffix.substr(0, maxCharacters);
    out += '"';
    for (const char c : converted_) {
        if (c == '"')
            out += '"';
        out += c;
    }
    out += '"';
}

void Cp1252Text::convert(std::string& out, std::string_view cleanUtf8)
{
    const std::size_t start = out.size();
    out.resize(start + cleanUtf8.size()); // one byte per character at most
    char* in = const_cast<char*>(cleanUtf8.data());
    std::size_t inLeft = cleanUtf8.size();
    char* to = out.data() + start;
    std::size_t toLeft = cleanUtf8.size();
    auto* cd = static_cast<iconv_t>(converter_);
    while (inLeft > 0) {
        if (iconv(cd, &in, &inLeft, &to, &toLeft) != static_cast<std::size_t>(-1))
            break;
        if (errno != EILSEQ && errno != EINVAL)
            throw std::runtime_error("iconv failed converting to WINDOWS-1252");
        // A character Windows-1252 lacks: "?" in its place.
        const std::size_t skip = std::min(inLeft, sequenceLength(static_cast<unsigned char>(*in)));
        in += skip;
        inLeft -= skip;
        *to++ = '?';
        --toLeft;
        ++replaced_;
    }
    iconv(cd, nullptr, nullptr, nullptr, nullptr);
    out.resize(static_cast<std::size_t>(to - out.data()));
}

} // namespace saldo
