#pragma once

#include "bank/LocalDays.h"
#include "bank/Proposal.h"
#include "model/Einnahme.h"

#include <cstdint>
#include <optional>
#include <unordered_map>
#include <vector>

namespace saldo {

// Finds the bookings a ledger holds already. A booking and an entry are the
// same when their local day, their gross amount in cents and their kind
// (income or expense) are equal, whether the entry was typed or taken from a
// statement. They are counted by occurrence: two equal entries in the ledger
// cover two equal bookings, a third is new. A statement that repeats one
// before it in the same file (several statements in a ZIP or a message) is
// matched against the ledger as it will be once the earlier one is taken.
class DuplicateMatcher {
public:
    struct Key {
        std::int64_t day = 0;
        std::int64_t cents = 0;
        bool income = false;
        bool operator==(const Key&) const = default;
    };

    DuplicateMatcher(const EinnahmeList& ledger, LocalDays& days);

    // The key of a ledger entry; nothing for a kind other than the two.
    static std::optional<Key> keyOf(const Einnahme& entry, LocalDays& days);
    static Key keyOf(const BankBooking& booking);

    // Marks every booked proposal "neu" (ticked) or "schon im Ledger" (not
    // ticked), in file order; pending and information-only ones are left as they are.
    void mark(std::vector<Proposal>& proposals) const;

private:
    struct Hash {
        std::size_t operator()(const Key& key) const;
    };
    std::unordered_map<Key, std::size_t, Hash> ledger_;
};

} // namespace saldo
