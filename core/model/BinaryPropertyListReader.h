#pragma once

#include "model/Einnahme.h"
#include "model/EntryArena.h"
#include "model/HugePageMemory.h"
#include "model/LedgerEntryPath.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <optional>
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
// with small frames), and what decoding builds is bounded by a budget that
// grows with the file (see kBudgetPerFileByte). Objects
// are examined when an entry refers to them; objects nothing refers to (and
// the values of keys other than the twelve) are skipped unread. Any fault
// throws LedgerFileError naming what was wrong and where; nothing partial is
// returned.
//
// A string object is decoded once, however many entries refer to it: they
// share one text, kept in the arena's TextPool and found through a table of
// four bytes per object. A dictionary or array referred to more than once is
// decoded once per reference, into entries of their own. The budget is
// charged with what is really built: every entry and list, and every text
// once; a reference to a text decoded before costs nothing more. So every
// ledger the writer makes, which shares texts as much as it can but gives
// each entry its own dictionary, date and child list, reads back, while a
// file whose few objects nest into millions of entries is refused.
//
// A long top-level list is decoded by two threads, one half each, every
// thread with its own object states and half the budget. When either half
// fails, the whole list is decoded again by one thread, so the error (and
// whether there is one) is exactly the one a single pass reports.
class BinaryPropertyListReader {
public:
    // Which texts are kept. `Evaluated`: only the kind (`art`) and the
    // category, the texts an evaluation reads; the name, the invoice and tax
    // numbers and the kind of service are checked and charged to the budget
    // exactly as when they are kept (a file is refused for the same faults),
    // but left empty. A million distinct names need not be built to add up
    // the year.
    enum class Texts { All, Evaluated };

    explicit BinaryPropertyListReader(std::string_view bytes, Texts texts = Texts::All);

    EinnahmeList readEntries();

    // Checks the 32-byte trailer of a binary property list of `fileSize`
    // bytes against that size, before the rest of the file is read: throws
    // LedgerFileError as readEntries() would.
    static void checkTrailer(std::string_view trailer, std::uint64_t fileSize);

    // Top-level lists at least this long are decoded by two threads.
    static constexpr std::uint64_t kSplitFrom = 8192;

    // The budget: bytes of entries, lists and texts that a file may build, per
    // byte of the file and in all. An entry is charged kEntryCost (its memory
    // with room to spare), a list 8 bytes per element and 16 more, a text its
    // UTF-8 bytes (at most three per UTF-16 unit) and kTextCost more. A
    // ledger the writer makes holds at least 40 bytes per entry, so it needs
    // at most about seven bytes per byte of its file.
    static constexpr std::uint64_t kBudgetPerFileByte = 16;
    static constexpr std::uint64_t kBudgetBase = std::uint64_t(1) << 20;
    static constexpr std::uint64_t kEntryCost = 256;
    static constexpr std::uint64_t kTextCost = 32;

private:
    // The decoded head of one object: its marker, its element count or length,
    // and where its payload starts.
    struct Head {
        std::uint8_t marker = 0;
        std::uint64_t count = 0;
        std::size_t payload = 0;
    };

    void readTrailer();
    void parseTrailer(const std::uint8_t* trailer);
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

    // Fails at the entry being read, or at `byte` when given.
    [[noreturn]] void fail(const std::string& what, std::optional<std::uint64_t> byte = {}) const;
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

    static constexpr std::uint32_t kCheckedOnly = UINT32_MAX; // in textOf_: checked and charged, not kept
    static constexpr std::uint8_t kActive = 0x80; // a container on the current path
    static constexpr std::uint8_t kKeyKnown = 0x40; // low bits hold the key index + 1 (0: other key)

    const std::uint8_t* data_;
    std::size_t size_;
    unsigned offsetSize_ = 0;
    unsigned refSize_ = 0;
    std::uint64_t objectCount_ = 0;
    std::uint64_t topObject_ = 0;
    std::size_t offsetTable_ = 0; // also the end of the object area
    std::uint64_t entryAt_ = 0; // where the entry being read starts, for errors
    HugePageMemory objectStates_; // state_ of one pass, zero at its start
    HugePageMemory textNumbers_; // textOf_ of one pass, zero at its start
    std::uint8_t* state_ = nullptr; // one byte per object
    // Per object: the number + 1 of its text in the pool once decoded, else 0.
    std::uint32_t* textOf_ = nullptr;
    TextPool* texts_ = nullptr;
    std::uint64_t budget_ = 0;
    LedgerEntryPath path_;
    EntryArena arena_;
    Texts keptTexts_ = Texts::All;
    const std::atomic<bool>* abandoned_ = nullptr; // set when the other half has failed
};

} // namespace saldo
