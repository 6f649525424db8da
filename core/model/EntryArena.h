#pragma once

#include "model/Einnahme.h"

#include <cstddef>

namespace saldo {

class TextPool;

// Where a ledger reader puts the entries it decodes, and the texts they share:
// entries one after another in large chunks of memory instead of one heap
// block each, texts in a TextPool. An entry made here takes about a hundred
// bytes; a ledger of a million entries fits in chunks the kernel backs with
// huge pages, touched with a few hundred page faults instead of 30,000, and
// the entries lie in list order for everything that walks them afterwards.
//
// Chunks grow from 256 KiB to 32 MiB, so a small ledger costs little; an arena
// told to expect many entries starts with large chunks. An entry made here is
// an ordinary shared entry; a chunk is given back once every entry in it has
// been released and its arena is gone (so deleting most entries of a large
// ledger keeps their chunks until the last one in each goes), and the texts
// once every chunk is gone. One arena serves one thread; entries may be
// released on any thread.
class EntryArena {
public:
    EntryArena() = default;
    ~EntryArena();
    EntryArena(const EntryArena&) = delete;
    EntryArena& operator=(const EntryArena&) = delete;

    // Makes the chunks (and the text pool) suited to about this many entries.
    // Call before the first entry is made.
    void expect(std::size_t entries);

    // An entry owning all its texts.
    EinnahmePtr make(Einnahme::Stored&& stored);
    // An entry whose texts are its own or borrowed from texts().
    EinnahmePtr make(Einnahme::Fields&& fields);

    // The pool that the texts of this arena's entries may be borrowed from; it
    // lives as long as any chunk of the arena.
    TextPool& texts();

    // Bytes of all arenas' chunks and text pools not yet given back, in this process.
    static std::size_t mappedBytes();

    struct Chunk;

private:
    void startChunk();

    Chunk* chunk_ = nullptr;
    TextPool* texts_ = nullptr;
    std::size_t nextSize_ = 256 << 10;
    bool large_ = false;
};

} // namespace saldo
