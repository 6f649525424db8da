#pragma once

#include "bank/CsvProfiles.h"
#include "bank/StatementError.h"
#include "bank/StatementProposals.h"
#include "bank/StatementReader.h"

#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace saldo::fuzz {

// What every statement fuzz target checks for one input: reading gives a
// statement or throws StatementError (anything else, a crash or a sanitizer
// report is a finding), and every booking it gives has a real day and an
// amount that fits the ledger's single precision.
inline void checkStatementBytes(std::string_view bytes)
{
    static const CsvProfiles profiles = CsvProfiles::load();
    std::optional<Statement> statement;
    try {
        statement = StatementReader::read(bytes, profiles,
            [](const std::vector<const CsvProfile*>& candidates, bool) { return candidates.front(); });
    } catch (const StatementError&) {
        return;
    }
    if (!statement)
        return;
    for (const BankBooking& booking : statement->bookings) {
        if (booking.status == BankBooking::Status::Booked && !booking.bookingDate.isValid()) {
            std::fprintf(stderr, "a booked booking without a valid day\n");
            std::abort();
        }
    }
    StatementProposals::make(*statement, BankRules(), {});
}

} // namespace saldo::fuzz
