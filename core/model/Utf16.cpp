#include "model/Utf16.h"

namespace saldo {

namespace {

void appendUnit(std::uint32_t unit, std::string& out)
{
    out.push_back(static_cast<char>(unit >> 8));
    out.push_back(static_cast<char>(unit & 0xFF));
}

} // namespace

bool Utf16::appendUtf8FromBigEndian(const std::uint8_t* data, std::size_t units, std::string& out)
{
    // At most three bytes per code unit (a pair of four-byte code points takes two units).
    const std::size_t start = out.size();
    out.resize(start + units * 3);
    char* p = out.data() + start;
    for (std::size_t i = 0; i < units; ++i) {
        std::uint32_t cp = (std::uint32_t(data[2 * i]) << 8) | data[2 * i + 1];
        if (cp < 0x80) {
            *p++ = static_cast<char>(cp);
            continue;
        }
        if (cp >= 0xD800 && cp <= 0xDFFF) {
            if (cp >= 0xDC00 || i + 1 == units)
                return false;
            const std::uint32_t low = (std::uint32_t(data[2 * i + 2]) << 8) | data[2 * i + 3];
            if (low < 0xDC00 || low > 0xDFFF)
                return false;
            cp = 0x10000 + ((cp - 0xD800) << 10) + (low - 0xDC00);
            ++i;
        }
        if (cp < 0x800) {
            *p++ = static_cast<char>(0xC0 | (cp >> 6));
            *p++ = static_cast<char>(0x80 | (cp & 0x3F));
        } else if (cp < 0x10000) {
            *p++ = static_cast<char>(0xE0 | (cp >> 12));
            *p++ = static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
            *p++ = static_cast<char>(0x80 | (cp & 0x3F));
        } else {
            *p++ = static_cast<char>(0xF0 | (cp >> 18));
            *p++ = static_cast<char>(0x80 | ((cp >> 12) & 0x3F));
            *p++ = static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
            *p++ = static_cast<char>(0x80 | (cp & 0x3F));
        }
    }
    out.resize(static_cast<std::size_t>(p - out.data()));
    return true;
}

bool Utf16::isWellFormedBigEndian(const std::uint8_t* data, std::size_t units)
{
    for (std::size_t i = 0; i < units; ++i) {
        const std::uint32_t unit = (std::uint32_t(data[2 * i]) << 8) | data[2 * i + 1];
        if (unit < 0xD800 || unit > 0xDFFF)
            continue;
        if (unit >= 0xDC00 || i + 1 == units)
            return false;
        const std::uint32_t low = (std::uint32_t(data[2 * i + 2]) << 8) | data[2 * i + 3];
        if (low < 0xDC00 || low > 0xDFFF)
            return false;
        ++i;
    }
    return true;
}

bool Utf16::appendBigEndianFromUtf8(std::string_view text, std::string& out, std::size_t& units)
{
    const auto* p = reinterpret_cast<const std::uint8_t*>(text.data());
    const std::size_t n = text.size();
    std::size_t i = 0;
    while (i < n) {
        const std::uint8_t b = p[i];
        std::uint32_t cp;
        std::size_t len;
        std::uint32_t min;
        if (b < 0x80) {
            cp = b, len = 1, min = 0;
        } else if ((b & 0xE0) == 0xC0) {
            cp = b & 0x1F, len = 2, min = 0x80;
        } else if ((b & 0xF0) == 0xE0) {
            cp = b & 0x0F, len = 3, min = 0x800;
        } else if ((b & 0xF8) == 0xF0) {
            cp = b & 0x07, len = 4, min = 0x10000;
        } else {
            return false;
        }
        if (len > n - i)
            return false;
        for (std::size_t k = 1; k < len; ++k) {
            if ((p[i + k] & 0xC0) != 0x80)
                return false;
            cp = (cp << 6) | (p[i + k] & 0x3F);
        }
        if (cp < min || cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF))
            return false;
        if (cp >= 0x10000) {
            cp -= 0x10000;
            appendUnit(0xD800 + (cp >> 10), out);
            appendUnit(0xDC00 + (cp & 0x3FF), out);
            units += 2;
        } else {
            appendUnit(cp, out);
            units += 1;
        }
        i += len;
    }
    return true;
}

bool Utf16::isValidUtf8(std::string_view text)
{
    for (const char c : text) {
        if (static_cast<unsigned char>(c) >= 0x80) {
            std::string scratch;
            std::size_t units = 0;
            return appendBigEndianFromUtf8(text, scratch, units);
        }
    }
    return true;
}

} // namespace saldo
