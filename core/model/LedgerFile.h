#pragma once

#include "model/Einnahme.h"
#include "model/SnapshotGate.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace saldo {

// A ledger file that cannot be read or written. The message says what was wrong
// and where, in plain words (for the command line and standard error); the kind
// and, for a damaged file, the byte where the damage was found let the desktop
// program say it in its own words.
class LedgerFileError : public std::runtime_error {
public:
    enum class Kind {
        Damaged, // a property list, but not a readable ledger (byte() says where, when known)
        NotALedger, // not a property list at all, or one whose root is no list of entries
        TooLarge, // larger than the readers take
        NotRegularFile, // a directory, a socket, a block device
        CannotRead, // the system refused (no such file, no permission, nothing arrived from a pipe)
    };

    explicit LedgerFileError(const std::string& what, Kind kind = Kind::Damaged, std::optional<std::uint64_t> byte = {})
        : std::runtime_error(what)
        , kind_(kind)
        , byte_(byte)
        , reason_(what)
    {
    }
    Kind kind() const { return kind_; }
    std::optional<std::uint64_t> byte() const { return byte_; }
    // The message without the file's name.
    const std::string& reason() const { return reason_; }
    // The same error, its message led by the file's name.
    LedgerFileError inFile(const std::string& path) const;

private:
    Kind kind_;
    std::optional<std::uint64_t> byte_;
    std::string reason_;
};

// What a file may be before it is read as a ledger. A regular file larger
// than `largestFile` is refused before a byte of it is read; a pipe or a
// device is read up to that many bytes, and refused when nothing arrives for
// `quietMilliseconds`.
struct LedgerReadLimits {
    std::uint64_t largestFile = std::uint64_t(4) << 30;
    int quietMilliseconds = 10'000;
};

// The ledger file: a property list whose root is an array of entry
// dictionaries with all twelve keys, split bookings nested. Written as a binary
// property list (bplist00); read from binary or XML property lists. Reading is
// all or nothing.
class LedgerFile {
public:
    // Decodes the bytes of a ledger file. Throws LedgerFileError when the bytes
    // are not a property list, the root is not an array, or an entry lacks a key
    // or holds a value of the wrong type; no partial list is ever returned.
    static EinnahmeList decode(std::string_view bytes);

    // Encodes the entries as a binary property list.
    static std::string encode(const EinnahmeList& entries);
    // The same for a worker thread that encodes a snapshot (see SnapshotGate).
    static std::string encode(const EinnahmeList& snapshot, const SnapshotGate& gate);

    using ReadLimits = LedgerReadLimits;
    // Handed the file's bytes once they are read, before they are decoded.
    using BytesRead = std::function<void(std::string_view bytes)>;

    // Whole-file helpers. Reading names the file in its error; it looks at
    // what the file is, its size and, for a binary property list, its header
    // and trailer before it reads the rest. Writing encodes first
    // (LedgerFileError when the entries cannot be encoded, and nothing is
    // touched) and then replaces the file through AtomicFileWriter
    // (FileWriteError when it cannot be written).
    static EinnahmeList read(const std::string& path, const ReadLimits& limits = {}, const BytesRead& bytesRead = {});
    // The same, but of the texts only those an evaluation reads are kept (the
    // kind and the category; see BinaryPropertyListReader::Texts): for a
    // report of a large ledger. A file is refused exactly when read() refuses it.
    static EinnahmeList readForEvaluation(const std::string& path);
    static void write(const std::string& path, const EinnahmeList& entries);

    // True when `path` is a regular file that reads as a ledger.
    static bool holdsLedger(const std::string& path);
    // Writes a file that is no ledger's own save (a printout, a table, an
    // exported list) through AtomicFileWriter, but never over a file that
    // holds a readable ledger (FileWriteError::Kind::HoldsLedger).
    static void writeBesideLedgers(const std::string& path, std::string_view bytes);
};

} // namespace saldo
