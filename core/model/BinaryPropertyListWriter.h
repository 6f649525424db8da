#pragma once

#include "model/Einnahme.h"
#include "model/LedgerEntryPath.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace saldo {

// Encodes an entry list as a binary property list (bplist00): a root array of
// entry dictionaries with all twelve keys, split bookings as nested arrays.
// The twelve key strings and the two booleans are written once and referenced
// from every dictionary; every entry's own values and containers are written
// where the entry stands. Strings are ASCII when they are pure ASCII, else
// big-endian UTF-16; amounts and rates are 4-byte reals, dates 8-byte. Object
// references and offsets take the fewest bytes that can hold them. Fails as a
// whole with LedgerFileError (text that is not UTF-8, split bookings nested
// deeper than the readers accept); never drops an entry.
class BinaryPropertyListWriter {
public:
    static std::string write(const EinnahmeList& entries);

private:
    explicit BinaryPropertyListWriter(std::uint64_t objectCount);

    std::uint64_t countObjects(const EinnahmeList& entries, std::size_t depth);
    std::uint64_t writeEntry(const Einnahme& entry);
    std::uint64_t writeArray(const std::vector<std::uint64_t>& refs);
    void writeString(std::string_view text, const char* key);
    void writeAsciiString(std::string_view text);
    void writeLengthMarker(std::uint8_t type, std::uint64_t length);
    void writeRef(std::uint64_t ref);
    void writeBigEndian(std::uint64_t value, unsigned bytes);
    std::uint64_t beginObject();
    void finish(std::uint64_t topObject);

    std::string out_;
    std::vector<std::uint64_t> offsets_;
    std::uint64_t objectCount_;
    unsigned refSize_;
    std::string utf16_;  // scratch for non-ASCII strings
    std::vector<std::vector<std::uint64_t>> childRefs_;  // per nesting level
    LedgerEntryPath path_;
};

}  // namespace saldo
