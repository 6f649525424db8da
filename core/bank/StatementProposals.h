#pragma once

#include "bank/BankRules.h"
#include "bank/LocalDays.h"
#include "bank/Proposal.h"
#include "bank/Statement.h"

#include <vector>

namespace saldo {

// Turns a statement's bookings into proposed entries. Money in is an
// "Einnahme", money out an "Ausgabe"; brutto is the amount's absolute value;
// datum is the booking day at noon local time, so that no time zone moves it
// into another day. The name is the counterparty, ": " and the text, cut to
// kMaxName characters; the first matching rule sets kategorie, steuersatz
// (otherwise 19), a flag and a name of its own from its template.
class StatementProposals {
public:
    static constexpr std::size_t kMaxName = 200;
    static constexpr float kDefaultRate = 19.0f;

    // One proposal per booking, in file order, marked against the ledger.
    static std::vector<Proposal> make(const Statement& statement, const BankRules& rules, const EinnahmeList& ledger);

    // Fills the proposal's values from its booking and the first rule that
    // matches (rule and ruleName say which, if any).
    static void apply(Proposal& proposal, const BankRules& rules);
    static void apply(Proposal& proposal, const BankRules& rules, LocalDays& days);

    // The rule template with %partner, %text and %ref put in.
    static std::string nameFrom(const std::string& nameTemplate, const BankBooking& booking);
};

} // namespace saldo
