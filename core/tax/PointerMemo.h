#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace saldo::tax {

// Remembers a value per address, for one pass over data that does not move
// or change meanwhile (the texts of a ledger's entries: a ledger read from a
// file holds each repeated text once). Open addressing in a fixed table; when
// half of it is taken it starts afresh, so a ledger whose texts are all
// different costs a little more than no memo, never unbounded memory.
template <class Value, std::size_t Capacity> class PointerMemo {
    static_assert(Capacity >= 2 && (Capacity & (Capacity - 1)) == 0, "a power of two");

public:
    // The value remembered for `key`, or the one make() gives, remembered from now on.
    template <class Make> const Value& get(const void* key, Make&& make)
    {
        std::size_t slot = indexOf(key);
        while (slots_[slot].key) {
            if (slots_[slot].key == key)
                return slots_[slot].value;
            slot = (slot + 1) & (Capacity - 1);
        }
        if (used_ == Capacity / 2) {
            slots_.assign(Capacity, Slot {});
            used_ = 0;
            slot = indexOf(key);
        }
        ++used_;
        slots_[slot] = { key, make() };
        return slots_[slot].value;
    }

private:
    struct Slot {
        const void* key = nullptr;
        Value value {};
    };

    static std::size_t indexOf(const void* key)
    {
        const auto bits = reinterpret_cast<std::uintptr_t>(key) * std::uint64_t(0x9E3779B97F4A7C15u);
        return static_cast<std::size_t>(bits >> 32) & (Capacity - 1);
    }

    std::vector<Slot> slots_ = std::vector<Slot>(Capacity);
    std::size_t used_ = 0;
};

} // namespace saldo::tax
