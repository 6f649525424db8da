#include "platform/PathText.h"

namespace saldo {

std::string PathText::oneLine(std::string_view path)
{
    static constexpr char kHex[] = "0123456789ABCDEF";
    std::string out;
    out.reserve(path.size());
    for (const char c : path) {
        const auto byte = static_cast<unsigned char>(c);
        switch (c) {
        case '\n':
            out += "\\n";
            continue;
        case '\t':
            out += "\\t";
            continue;
        case '\r':
            out += "\\r";
            continue;
        case '\\':
            out += "\\\\";
            continue;
        default:
            break;
        }
        if (byte < 0x20 || byte == 0x7F) {
            out += "\\x";
            out += kHex[byte >> 4];
            out += kHex[byte & 15];
        } else {
            out += c;
        }
    }
    return out;
}

} // namespace saldo
