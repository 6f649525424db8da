#include "evaluation/CategoryGroups.h"

#include "model/UnicodeText.h"

#include <cstring>

namespace saldo {
namespace {

// A cheap hash of a category text: its length and its first and last eight
// bytes. Category texts differ early (the account number) or in length, and a
// collision only costs a full comparison.
std::uint64_t quickHash(std::string_view text)
{
    std::uint64_t head = 0, tail = 0;
    const std::size_t n = text.size();
    if (n >= 8) {
        std::memcpy(&head, text.data(), 8);
        std::memcpy(&tail, text.data() + n - 8, 8);
    } else {
        std::memcpy(&head, text.data(), n);
    }
    std::uint64_t h = (head ^ (tail * 0x9E3779B97F4A7C15ull) ^ n) * 0xFF51AFD7ED558CCDull;
    return h ^ (h >> 29);
}

// Byte equality of two texts of the same length, eight bytes at a time
// (category texts are short: a call to memcmp would cost more than the work).
bool sameBytes(const char* a, const char* b, std::size_t n)
{
    if (n < 8) {
        for (std::size_t i = 0; i < n; ++i)
            if (a[i] != b[i])
                return false;
        return true;
    }
    std::uint64_t x, y;
    for (std::size_t i = 0; i + 8 <= n; i += 8) {
        std::memcpy(&x, a + i, 8);
        std::memcpy(&y, b + i, 8);
        if (x != y)
            return false;
    }
    // The last eight bytes, overlapping what was compared already.
    std::memcpy(&x, a + n - 8, 8);
    std::memcpy(&y, b + n - 8, 8);
    return x == y;
}

} // namespace

void CategoryGroups::reset()
{
    slots_.assign(256, Slot {});
    used_ = 0;
    owned_.clear();
    byNfc_.clear();
    groups_.clear();
    count_ = 0;
}

std::uint32_t CategoryGroups::add(std::string_view kategorie, bool income)
{
    if (slots_.empty())
        reset();
    const std::uint64_t hash = quickHash(kategorie);
    const std::size_t mask = slots_.size() - 1;
    std::uint32_t group = kNone;
    for (std::size_t i = hash & mask;; i = (i + 1) & mask) {
        const Slot& slot = slots_[i];
        if (slot.group == kNone) {
            group = groupOfNewBytes(kategorie);
            // The table keeps its own copy of each distinct byte string, so
            // that it never refers to an entry's text after the entry was read.
            insert(hash, owned_.emplace_back(kategorie), group);
            break;
        }
        if (slot.hash == hash && slot.bytes.size() == kategorie.size()
            && sameBytes(slot.bytes.data(), kategorie.data(), kategorie.size())) {
            group = slot.group;
            break;
        }
    }
    Group& g = groups_[group];
    const std::uint32_t index = count_++;
    if (g.first == kNone)
        g.first = index;
    std::uint32_t& firstOfKind = income ? g.firstIncome : g.firstExpense;
    if (firstOfKind == kNone)
        firstOfKind = index;
    return group;
}

std::uint32_t CategoryGroups::groupOfNewBytes(std::string_view kategorie)
{
    // Bytes not seen before: canonically equivalent spellings share one NFC form.
    const auto [it, inserted]
        = byNfc_.try_emplace(UnicodeText::nfc(kategorie), static_cast<std::uint32_t>(groups_.size()));
    if (inserted)
        groups_.push_back(Group {});
    return it->second;
}

void CategoryGroups::insert(std::uint64_t hash, std::string_view bytes, std::uint32_t group)
{
    if (2 * (used_ + 1) > slots_.size())
        grow();
    const std::size_t mask = slots_.size() - 1;
    std::size_t i = hash & mask;
    while (slots_[i].group != kNone)
        i = (i + 1) & mask;
    slots_[i] = Slot { hash, bytes, group };
    ++used_;
}

void CategoryGroups::grow()
{
    std::vector<Slot> old = std::move(slots_);
    slots_.assign(old.size() * 2, Slot {});
    const std::size_t mask = slots_.size() - 1;
    for (const Slot& slot : old) {
        if (slot.group == kNone)
            continue;
        std::size_t i = slot.hash & mask;
        while (slots_[i].group != kNone)
            i = (i + 1) & mask;
        slots_[i] = slot;
    }
}

} // namespace saldo
