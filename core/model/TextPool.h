#pragma once

#include "model/HugePageMemory.h"

#include <atomic>
#include <cstdint>
#include <string>
#include <vector>

namespace saldo {

// The texts a ledger reader decoded, each held once however many entries
// refer to it: entries borrow them (see EntryText). A pool is filled by one
// thread, its reader, and then only read. It counts its holders (the reader's
// arena and every chunk of entries made by it) and frees itself, texts and
// all, when the last one lets go, on whatever thread that happens.
//
// Texts lie in blocks of 65,536 that never move, numbered in the order they
// were added; a large pool's blocks are backed by huge pages.
class TextPool {
public:
    // A new pool with one holder. `large`: expect many texts.
    static TextPool* create(bool large);

    void retain() { holders_.fetch_add(1, std::memory_order_relaxed); }
    void release();

    // A new empty text at an address that stays valid as long as the pool.
    // Its number is size() - 1 afterwards.
    std::string& add();
    std::size_t size() const { return size_; }
    const std::string& at(std::size_t number) const { return blocks_[number >> kBlockShift][number & kBlockMask]; }

    // Bytes of all pools' blocks not yet given back, in this process.
    static std::size_t mappedBytes();

private:
    static constexpr unsigned kBlockShift = 16;
    static constexpr std::size_t kBlockMask = (std::size_t(1) << kBlockShift) - 1;

    explicit TextPool(bool large)
        : large_(large)
    {
    }
    ~TextPool();

    std::atomic<std::size_t> holders_ { 1 };
    bool large_;
    std::size_t size_ = 0;
    std::vector<std::string*> blocks_;
    std::vector<HugePageMemory> memory_;
};

} // namespace saldo
