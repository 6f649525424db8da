#pragma once

#include "model/Einnahme.h"

#include <atomic>
#include <cstddef>

namespace saldo {

// Where a ledger reader puts the entries it decodes: one after another in large
// chunks of memory instead of one heap block each. A million entries fill
// about 260 MB; in chunks the kernel may back with huge pages that memory is
// touched with a few hundred page faults instead of 65,000, and the entries lie
// in list order for everything that walks them afterwards.
//
// Chunks grow from 256 KiB to 32 MiB, so a small ledger costs little. An entry
// made here is an ordinary shared entry; a chunk is given back once every
// entry in it has been released and its arena is gone (so deleting most
// entries of a large ledger keeps their chunks until the last one in each goes).
// One arena serves one thread; entries may be released on any thread.
class EntryArena {
public:
    EntryArena() = default;
    ~EntryArena();
    EntryArena(const EntryArena&) = delete;
    EntryArena& operator=(const EntryArena&) = delete;

    EinnahmePtr make(Einnahme::Stored&& stored);

    // Bytes of all arenas' chunks not yet given back, in this process.
    static std::size_t mappedBytes();

    struct Chunk;

private:
    void startChunk();

    Chunk* chunk_ = nullptr;
    std::size_t nextSize_ = 256 << 10;
};

} // namespace saldo
