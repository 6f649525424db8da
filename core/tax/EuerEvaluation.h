#pragma once

#include "model/Einnahme.h"
#include "model/SnapshotGate.h"
#include "tax/EuerForm.h"
#include "tax/ListedItem.h"
#include "tax/TaxItems.h"

#include <cstdint>
#include <string>
#include <vector>

namespace saldo::tax {

// An item in one of the lists below the form. `item` points into the
// evaluated entries and stays valid as long as they live (read through a
// gate, it may point to a value the gate keeps: see listedItems()).
struct EuerListed {
    // "12", "12.2" or "12.2.1": the item's row in the ledger's own order.
    std::string row;
    const Einnahme* item = nullptr;
    // The amount the list shows; none when the amount cannot be read.
    std::int64_t cents = 0;
    const char* reason = nullptr;
    // Index of the item's top-level entry in the evaluated list.
    std::uint32_t entryIndex = 0;
    bool amountKnown = true;
};

// The Anlage EÜR of one year: the amount of every line of the form, in
// cents, and the lists of the items that are on no line or only partly.
struct EuerResult {
    const EuerForm* form = nullptr;
    bool kleinunternehmer = false;
    // One amount per line of form->lines(), in the same order; the sums too.
    std::vector<std::int64_t> cents;
    // The items of the year (leaves of split bookings counted one by one).
    std::size_t itemCount = 0;
    // Expenses with a reverse-charge flag and a rate on their lines.
    std::size_t reverseChargeCount = 0;
    std::vector<EuerListed> nichtZugeordnet;
    std::vector<EuerListed> nichtAbziehbar;
    std::vector<EuerListed> anlagegut;
    std::vector<EuerListed> nichtTeil;
    // Placed items with a remark: an expense without an account number, an
    // amount not exact to the cent.
    std::vector<EuerListed> hinweise;

    std::int64_t value(EuerField field) const
    {
        const auto index = form->indexOf(field);
        return index ? cents[*index] : 0;
    }
};

// An item behind a line of the form, with what it adds to that line.
struct EuerLineItem {
    std::string row;
    const Einnahme* item = nullptr;
    std::int64_t cents = 0;
    std::uint32_t entryIndex = 0;
};

// Computes the Anlage EÜR of the form's year from a ledger: every item whose
// top-level entry falls in the local year is placed by EuerRules, and the
// sums follow the form: Betriebseinnahmen, Betriebsausgaben (without the
// "nicht abziehbar" column) and their difference. No sum leaves 64 bits: an
// item that would make one overflow is listed "Betrag zu gross" and counted
// nowhere. The corrections between the sum of the Betriebsausgaben and the
// profit are not known to Saldo, so the profit is the plain difference.
//
// A worker reads a snapshot through its gate (or nullptr when nothing
// changes the entries meanwhile).
class EuerEvaluation {
public:
    static EuerResult evaluate(
        const EinnahmeList& entries, const EuerForm& form, bool kleinunternehmer, const SnapshotGate* gate = nullptr);

    // The items that make up one line of evaluate()'s result (`line` indexes
    // form.lines()), in the ledger's order, each with its share of the line;
    // for a sum, the items of every line it adds. One pass over the ledger.
    static std::vector<EuerLineItem> itemsBehind(const EinnahmeList& entries, const EuerForm& form,
        bool kleinunternehmer, std::size_t line, const SnapshotGate* gate = nullptr);

    // The items of a list, or the items behind a line, with their names and
    // dates copied out of the entries they point into: a list another thread
    // may keep while the entries change. `entries` and `gate` are those of
    // the evaluation, the gate still open: the items are read under its lock.
    // The amount shown is the one the evaluation lists (none when it could
    // not be read: the gross amount as stored), or the item's share of the line.
    static std::vector<ListedItem> listedItems(
        const std::vector<EuerListed>& listed, const EinnahmeList& entries, const SnapshotGate* gate = nullptr);
    static std::vector<ListedItem> listedItems(
        const std::vector<EuerLineItem>& items, const EinnahmeList& entries, const SnapshotGate* gate = nullptr);
};

} // namespace saldo::tax
