#pragma once

#include "CliCommand.h"

namespace saldo::cli {

// `saldo-cli datev`: the ledger's bookings of chosen days as booking batches
// for the tax adviser.
extern const CliCommand kDatevCommand;

} // namespace saldo::cli
