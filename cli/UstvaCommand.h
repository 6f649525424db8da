#pragma once

#include "CliCommand.h"

namespace saldo::cli {

// `ustva LEDGER PERIOD [--tsv]`: the VAT return of a month, a quarter or a year.
const CliCommand& ustvaCommand();

} // namespace saldo::cli
