#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace saldo {

// Conversion between the UTF-8 text the program holds and the big-endian
// UTF-16 of binary property lists. Both directions refuse what is not text:
// an unpaired surrogate in UTF-16, and malformed, overlong or surrogate
// sequences in UTF-8.
class Utf16 {
public:
    // Appends the UTF-8 form of `units` big-endian UTF-16 code units at `data`.
    // Returns false, leaving `out` in an unspecified state, on an unpaired surrogate.
    static bool appendUtf8FromBigEndian(const std::uint8_t* data, std::size_t units, std::string& out);
    // True when appendUtf8FromBigEndian would take the same units: no unpaired surrogate.
    static bool isWellFormedBigEndian(const std::uint8_t* data, std::size_t units);

    // Appends the big-endian UTF-16 form of `text` to `out`, two bytes per code
    // unit, and adds the number of code units to `units`. Returns false when
    // `text` is not valid UTF-8.
    static bool appendBigEndianFromUtf8(std::string_view text, std::string& out, std::size_t& units);

    // True when `text` is valid UTF-8 (no overlong forms, no surrogates).
    static bool isValidUtf8(std::string_view text);
};

} // namespace saldo
