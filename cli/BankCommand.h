#pragma once

#include "CliCommand.h"

namespace saldo::cli {

// "bank STATEMENT": a statement's bookings as proposed entries, optionally
// appended to a ledger.
extern const CliCommand kBankCommand;

} // namespace saldo::cli
