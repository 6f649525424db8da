#pragma once

#include "model/Einnahme.h"

#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace saldo {

// Sorts the entries of a list into category groups in linear time: entries
// whose `kategorie` texts are equal as user texts (canonically equivalent
// Unicode) share a group. Groups are numbered in the order of their first
// appearance in the list. Each distinct byte string is normalised once; every
// further entry with the same bytes is found by hashing the raw bytes.
class CategoryGroups {
public:
    static constexpr std::uint32_t kNone = UINT32_MAX;

    struct Group {
        std::uint32_t first = kNone; // index of the group's first entry
        std::uint32_t firstIncome = kNone; // its first income entry, if any
        std::uint32_t firstExpense = kNone; // its first expense entry, if any
    };

    // Adds the next entry of the list (index = number of entries added so far)
    // and returns its group number.
    std::uint32_t add(std::string_view kategorie, bool income);

    const std::vector<Group>& groups() const { return groups_; }

    // Forgets every entry added so far.
    void reset();

private:
    struct Slot {
        std::uint64_t hash = 0;
        std::string_view bytes;
        std::uint32_t group = kNone;
    };
    std::uint32_t groupOfNewBytes(std::string_view kategorie);
    void insert(std::uint64_t hash, std::string_view bytes, std::uint32_t group);
    void grow();

    std::vector<Slot> slots_; // open addressing over the raw bytes; size a power of two
    std::deque<std::string> owned_; // the distinct byte strings the slots refer to
    std::size_t used_ = 0;
    std::unordered_map<std::string, std::uint32_t> byNfc_; // NFC form -> group
    std::vector<Group> groups_;
    std::uint32_t count_ = 0;
};

} // namespace saldo
