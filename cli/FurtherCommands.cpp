#include "BankCommand.h"
#include "CliCommand.h"

namespace saldo::cli {

const std::vector<CliCommand>& furtherCommands()
{
    static const std::vector<CliCommand> commands = {
        kBankCommand,
    };
    return commands;
}

} // namespace saldo::cli
