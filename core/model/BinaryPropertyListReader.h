#pragma once

#include "model/Einnahme.h"
#include "model/EntryArena.h"
#include "model/HugePageMemory.h"
#include "model/LedgerEntryPath.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace saldo {

// Decodes a binary property list (bplist00) whose root is an array of entry
// dictionaries straight into entries, without building a generic tree first.
// The bytes are treated as hostile: the trailer, every offset, count, length
// and object reference is checked against the data before it is used, all
// arithmetic on them is overflow-checked, reference cycles are refused, split
// bookings nest at most LedgerEntryPath::kMaxNesting levels (bounded recursion
// with small frames), and objects referenced more than once are decoded once
// per reference only within a budget proportional to the file size. Objects
// are examined when an entry refers to them; objects nothing refers to (and
// the values of keys other than the twelve) are skipped unread. Any fault
// throws LedgerFileError naming what was wrong and where; nothing partial is
// returned.
//
// A string object referred to again soon is decoded once: the entries that
// refer to it share one text (kept in the arena's TextPool), found through a
// small cache by object that keeps the objects met again and again (kinds,
// categories, names); other texts are decoded per reference. Each reference is
// charged to the budget as if it were decoded again, so what is refused does
// not depend on what the cache holds.
//
// A long top-level list is decoded by two threads, one half each, every
// thread with its own object states and half the budget. When either half
// fails, the whole list is decoded again by one thread, so the error (and
// whether there is one) is exactly the one a single pass reports.
class BinaryPropertyListReader {
public:
    explicit BinaryPropertyListReader(std::string_view bytes);

    EinnahmeList readEntries();

    // Top-level lists at least this long are decoded by two threads.
    static constexpr std::uint64_t kSplitFrom = 8192;

private:
    // The decoded head of one object: its marker, its element count or length,
    // and where its payload starts.
    struct Head {
        std::uint8_t marker = 0;
        std::uint64_t count = 0;
        std::size_t payload = 0;
    };

    void readTrailer();
    bool readInTwo(const Head& root, std::uint64_t budget, EinnahmeList& list);
    Head head(std::uint64_t object) const;
    Head headAt(std::uint64_t object, std::uint64_t offset) const;
    Head headOfLength(std::uint64_t object, std::uint64_t offset, Head h) const;
    std::uint64_t refAt(std::size_t position) const;

    void startPass();
    EinnahmeList readEntryArray(std::uint64_t object);
    // Decodes the entries [begin, end) of an array into out[begin, end).
    void readEntryRange(const Head& array, std::uint64_t begin, std::uint64_t end, EinnahmePtr* out);
    void prefetchEntry(const Head& array, std::uint64_t index, bool values) const;
    EinnahmePtr readEntry(std::uint64_t object);
    void readValue(int key, std::uint64_t object, Einnahme::Fields& fields);
    int keyIndexOf(std::uint64_t object);
    int newKeyIndexOf(std::uint64_t object);
    void readText(int key, std::uint64_t object, EntryText& out);
    float readAmount(int key, const Head& h) const;
    double readDatum(int key, const Head& h) const;

    void enter(std::uint64_t object)
    {
        if (state_[object] & kActive) [[unlikely]]
            failCycle(object);
        state_[object] |= kActive;
    }
    void leave(std::uint64_t object) { state_[object] &= static_cast<std::uint8_t>(~kActive); }
    void charge(std::uint64_t units)
    {
        if (units > budget_) [[unlikely]]
            failBudget();
        budget_ -= units;
    }

    [[noreturn]] void fail(const std::string& what) const;
    [[noreturn, gnu::cold, gnu::noinline]] void failOffset(std::uint64_t object, std::uint64_t offset) const;
    [[noreturn, gnu::cold, gnu::noinline]] void failLength(
        std::uint64_t object, std::uint64_t offset, std::uint64_t count) const;
    [[noreturn, gnu::cold, gnu::noinline]] void failReference(std::uint64_t ref) const;
    [[noreturn, gnu::cold, gnu::noinline]] void failCycle(std::uint64_t object) const;
    [[noreturn, gnu::cold, gnu::noinline]] void failBudget() const;
    [[noreturn, gnu::cold, gnu::noinline]] void failObject(
        std::uint64_t object, std::uint64_t offset, const std::string& what) const;
    [[noreturn]] void failAtKey(int key, const std::string& what) const;
    [[noreturn]] void failWrongType(int key, const Head& h, const char* expected) const;

    // How many entries ahead of the one being read its values are fetched.
    static constexpr std::uint64_t kFetchOffsetsAhead = 12;
    static constexpr std::uint64_t kFetchValuesAhead = 6;

    static constexpr std::uint8_t kActive = 0x80; // a container on the current path
    static constexpr std::uint8_t kKeyKnown = 0x40; // low bits hold the key index + 1 (0: other key)
    // A string object decoded lately: the object + 1 (0: none), with kSlotHit
    // set once it was found again; its number in the text pool and what each
    // reference to it is charged.
    struct TextSlot {
        std::uint64_t tag;
        std::uint32_t number;
        std::uint32_t charge;
    };
    static constexpr std::uint64_t kSlotHit = std::uint64_t(1) << 63;
    static constexpr unsigned kMostTextSlotBits = 15;
    TextSlot& textSlotOf(std::uint64_t object) const
    {
        return textSlots_[(object * 0x9E3779B97F4A7C15ull) >> textSlotShift_];
    }

    const std::uint8_t* data_;
    std::size_t size_;
    unsigned offsetSize_ = 0;
    unsigned refSize_ = 0;
    std::uint64_t objectCount_ = 0;
    std::uint64_t topObject_ = 0;
    std::size_t offsetTable_ = 0; // also the end of the object area
    HugePageMemory objectStates_; // state_ of one pass, zero at its start
    HugePageMemory textCache_; // textSlots_ of one pass, zero at its start
    std::uint8_t* state_ = nullptr; // one byte per object
    TextSlot* textSlots_ = nullptr;
    unsigned textSlotShift_ = 64;
    TextPool* texts_ = nullptr;
    std::uint64_t budget_ = 0;
    LedgerEntryPath path_;
    EntryArena arena_;
    const std::atomic<bool>* abandoned_ = nullptr; // set when the other half has failed
};

} // namespace saldo
