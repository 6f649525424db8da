#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace saldo {

// Where a ledger reader or writer currently stands: the position of the entry
// in the top-level list and, for split bookings, the position in each child
// list below it (all counted from 1). Turns that position into the prefix of an
// error message, "entry 3 (child 1, child 2)", and holds the limits every
// ledger codec shares: how deep split bookings may nest, and how to find a key
// among the twelve stored keys.
class LedgerEntryPath {
public:
    // Split bookings nest at most this many levels below a top-level entry, so
    // a file holds at most this many entry levels plus one. Both readers and
    // the writer enforce it, so everything written can be read back.
    static constexpr std::size_t kMaxNesting = 512;

    void push(std::uint64_t position) { positions_.push_back(position); }
    void pop() { positions_.pop_back(); }
    void setLast(std::uint64_t position) { positions_.back() = position; }
    std::size_t depth() const { return positions_.size(); }

    // "entry 3" or "entry 3 (child 1, child 2)"; "file" outside any entry.
    std::string describe() const;

    // Index of the key in kEinnahmeKeys, or -1 when it is not one of the twelve.
    static int keyIndex(std::string_view key);

    // The name of the first key, in coding order, whose bit is not set in the
    // mask of keys seen (bit i for kEinnahmeKeys[i]); empty when all are there.
    static std::string_view firstMissingKey(unsigned seenMask);

    static constexpr unsigned kAllKeysMask = (1u << 12) - 1;

private:
    std::vector<std::uint64_t> positions_;
};

} // namespace saldo
