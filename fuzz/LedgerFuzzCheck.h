#pragma once

#include "model/LedgerFile.h"

#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace saldo::fuzz {

// What every ledger fuzz target checks for one input: decoding either succeeds
// or throws LedgerFileError (anything else, a crash or a sanitizer report is a
// finding), and whatever was decoded can be written and reads back to the
// very same bytes.
inline void checkLedgerBytes(std::string_view bytes)
{
    EinnahmeList entries;
    try {
        entries = LedgerFile::decode(bytes);
    } catch (const LedgerFileError&) {
        return;
    }
    std::string written;
    try {
        written = LedgerFile::encode(entries);
    } catch (const LedgerFileError& e) {
        std::fprintf(stderr, "decoded entries could not be written: %s\n", e.what());
        std::abort();
    }
    if (LedgerFile::encode(LedgerFile::decode(written)) != written) {
        std::fprintf(stderr, "written file does not read back to itself\n");
        std::abort();
    }
}

} // namespace saldo::fuzz
