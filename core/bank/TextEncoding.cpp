#include "bank/TextEncoding.h"

#include "bank/BankText.h"
#include "model/Utf16.h"

#include <iconv.h>

#include <cerrno>

namespace saldo {

std::optional<TextEncoding::Kind> TextEncoding::named(std::string_view name)
{
    const std::string folded = BankText::folded(name);
    if (folded == "utf-8" || folded == "utf8")
        return Kind::Utf8;
    if (folded == "latin-1" || folded == "latin1" || folded == "iso-8859-1")
        return Kind::Latin1;
    if (folded == "windows-1252" || folded == "cp1252")
        return Kind::Windows1252;
    return std::nullopt;
}

const char* TextEncoding::name(Kind kind)
{
    switch (kind) {
    case Kind::Utf8:
        return "UTF-8";
    case Kind::Latin1:
        return "Latin-1";
    case Kind::Windows1252:
        break;
    }
    return "Windows-1252";
}

std::optional<std::string> TextEncoding::toUtf8(std::string_view bytes, Kind kind)
{
    if (kind == Kind::Utf8) {
        if (bytes.starts_with("\xEF\xBB\xBF"))
            bytes.remove_prefix(3);
        if (!Utf16::isValidUtf8(bytes))
            return std::nullopt;
        return std::string(bytes);
    }
    const iconv_t converter = iconv_open("UTF-8", kind == Kind::Latin1 ? "ISO-8859-1" : "CP1252");
    if (converter == reinterpret_cast<iconv_t>(-1))
        return std::nullopt;
    // Every byte becomes at most three bytes of UTF-8 (the euro sign is three).
    std::string out(bytes.size() * 3, '\0');
    char* in = const_cast<char*>(bytes.data());
    std::size_t inLeft = bytes.size();
    char* to = out.data();
    std::size_t outLeft = out.size();
    const std::size_t result = iconv(converter, &in, &inLeft, &to, &outLeft);
    iconv_close(converter);
    if (result == static_cast<std::size_t>(-1) || inLeft != 0)
        return std::nullopt;
    out.resize(out.size() - outLeft);
    return out;
}

} // namespace saldo
