#pragma once

#include "model/Einnahme.h"
#include "model/SnapshotGate.h"
#include "tax/ListedItem.h"
#include "tax/TaxPeriod.h"
#include "tax/UstvaForm.h"

#include <array>
#include <cstdint>
#include <vector>

namespace saldo::tax {

// Why an item is listed although its place could be decided: its sums would
// leave what the form's arithmetic holds.
inline constexpr char kSummeZuGross[] = "Summe zu gross";

// The VAT return of one period: the sums of the boxes in cents, every item
// that is not placed with its reason, and the form's values taken from the
// sums the way the form takes them.
struct UstvaResult {
    const UstvaForm* form = nullptr;
    TaxPeriod period;
    std::array<std::int64_t, kUstvaBoxCount> cents {};
    // The VAT of the placed items as booked: output tax minus input tax.
    std::int64_t bookedTax = 0;
    // Items that could not be placed, in the ledger's order.
    std::vector<ListedItem> nichtZugeordnet;
    // Items that take no part in the return (money accounts, private, the Finanzamt).
    std::vector<ListedItem> nichtTeil;
    // Placed items whose amount a float holds only to about a cent.
    std::vector<ListedItem> nichtCentgenau;
    // Placed items, and among them the expenses at 0 % (no input tax).
    std::size_t placed = 0;
    std::size_t ohneVorsteuer = 0;

    std::int64_t sum(UstvaBox box) const { return cents[static_cast<std::size_t>(box)]; }
    // A line's base in whole euros: its sum in cents cut toward zero.
    std::int64_t baseEuros(const UstvaLine& line) const;
    // A line's tax in cents: its own box's sum, or for the lines whose tax the
    // form computes, the line's rate of the whole-euro base.
    std::int64_t taxCents(const UstvaLine& line) const;
    // True when the line's base and tax are both zero.
    bool isEmpty(const UstvaLine& line) const { return baseEuros(line) == 0 && taxCents(line) == 0; }
    // Kz 83: the owed taxes minus the deducted ones, from the form's values;
    // negative for a refund.
    std::int64_t remainingCents() const;
    // Kz 83 minus the VAT as booked: what the whole-euro bases make of it.
    std::int64_t differenceCents() const { return remainingCents() - bookedTax; }
};

// Works out the VAT return of a period over a ledger, in the ledger's order.
// The items of top-level entries dated in the period are placed (see
// UstvaPlacement); an item whose top-level date is not a number belongs to no
// period and is listed in every one. An item whose amounts would carry a sum
// beyond 64 bits is listed, not added.
class UstvaCalculation {
public:
    // `gate`: the gate of a worker reading a snapshot, or nullptr.
    static UstvaResult calculate(const EinnahmeList& entries, const TaxPeriod& period, const UstvaForm& form,
        const SnapshotGate* gate = nullptr);
};

} // namespace saldo::tax
