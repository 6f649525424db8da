#pragma once

#include "bank/BankBooking.h"
#include "model/Einnahme.h"

#include <string>

namespace saldo {

// One booking of a statement offered as a ledger entry: the booking, the
// entry's values made from it, the rule that filled them in, whether the
// booking is new, already in the ledger or not booked yet, and whether the
// person will take it (only new ones start ticked).
struct Proposal {
    enum class Status { Neu, SchonImLedger, Vorgemerkt, Info };

    BankBooking booking;
    Einnahme::Stored fields;
    int rule = -1; // index into the rules, -1: none matched
    std::string ruleName;
    Status status = Status::Neu;
    bool ticked = false;

    // "neu", "schon im Ledger", "vorgemerkt — uebersprungen", "nur Info — uebersprungen".
    static const char* statusText(Status status);
    // A new entry with the proposal's values.
    EinnahmePtr makeEntry() const { return Einnahme::restore(fields); }
};

} // namespace saldo
