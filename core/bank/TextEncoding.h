#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace saldo {

// The encodings bank exports come in, turned into the UTF-8 the program holds
// (through iconv). UTF-8 loses a leading byte-order mark and must be valid;
// Latin-1 takes every byte; Windows-1252 refuses its five unassigned bytes.
class TextEncoding {
public:
    enum class Kind { Utf8, Latin1, Windows1252 };

    // "UTF-8", "Latin-1" (also "ISO-8859-1"), "Windows-1252" (also "cp1252"),
    // in any case.
    static std::optional<Kind> named(std::string_view name);
    static const char* name(Kind kind);

    // The text in UTF-8, or nothing when the bytes are not text in this encoding.
    static std::optional<std::string> toUtf8(std::string_view bytes, Kind kind);
};

} // namespace saldo
