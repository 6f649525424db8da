#include "bank/BankText.h"

#include "model/Utf16.h"

#include <utf8proc.h>

#include <cstdlib>
#include <memory>

namespace saldo {

std::string BankText::folded(std::string_view text)
{
    bool ascii = true;
    for (const char c : text)
        ascii = ascii && static_cast<unsigned char>(c) < 0x80;
    if (ascii) {
        std::string out(text);
        for (char& c : out)
            if (c >= 'A' && c <= 'Z')
                c = static_cast<char>(c - 'A' + 'a');
        return out;
    }
    if (!Utf16::isValidUtf8(text))
        return std::string(text);
    utf8proc_uint8_t* mapped = nullptr;
    const auto length = utf8proc_map(reinterpret_cast<const utf8proc_uint8_t*>(text.data()),
        static_cast<utf8proc_ssize_t>(text.size()), &mapped,
        static_cast<utf8proc_option_t>(UTF8PROC_STABLE | UTF8PROC_COMPOSE | UTF8PROC_CASEFOLD));
    const std::unique_ptr<utf8proc_uint8_t, decltype(&std::free)> owner(mapped, &std::free);
    if (length < 0)
        return std::string(text);
    return std::string(reinterpret_cast<const char*>(mapped), static_cast<std::size_t>(length));
}

std::string BankText::tidy(std::string_view text)
{
    std::string out;
    out.reserve(text.size());
    bool blank = false;
    for (const char c : text) {
        if (c == ' ' || c == '\t' || c == '\n' || c == '\r') {
            blank = !out.empty();
            continue;
        }
        if (blank)
            out += ' ';
        blank = false;
        out += c;
    }
    return out;
}

std::string BankText::cut(std::string_view text, std::size_t count)
{
    std::size_t at = 0;
    for (std::size_t seen = 0; at < text.size(); ++at) {
        // A code point starts at every byte that is not a continuation byte.
        if ((static_cast<unsigned char>(text[at]) & 0xC0) != 0x80 && seen++ == count)
            break;
    }
    return std::string(text.substr(0, at));
}

std::string_view BankText::trimmed(std::string_view text)
{
    const std::size_t first = text.find_first_not_of(" \t\r");
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(" \t\r") - first + 1);
}

bool BankText::isBlank(std::string_view text)
{
    return text.find_first_not_of(" \t\r\n") == std::string_view::npos;
}

} // namespace saldo
