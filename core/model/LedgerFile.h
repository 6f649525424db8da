#pragma once

#include "model/Einnahme.h"
#include "model/SnapshotGate.h"

#include <stdexcept>
#include <string>
#include <string_view>

namespace saldo {

// A ledger file that cannot be read or written. The message says what was wrong
// and where, in plain words (for the command line and standard error).
class LedgerFileError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
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

    // Whole-file helpers. Reading names the file in its error. Writing encodes
    // first (LedgerFileError when the entries cannot be encoded, and nothing is
    // touched) and then replaces the file through AtomicFileWriter
    // (FileWriteError when it cannot be written).
    static EinnahmeList read(const std::string& path);
    static void write(const std::string& path, const EinnahmeList& entries);
};

} // namespace saldo
