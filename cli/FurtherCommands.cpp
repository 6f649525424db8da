#include "CliCommand.h"

namespace saldo::cli {

// Defined in the file of each command.
extern const CliCommand kEuerCommand;
extern const CliCommand kUstvaCommand;
extern const CliCommand kBankCommand;

const std::vector<CliCommand>& furtherCommands()
{
    static const std::vector<CliCommand> commands = {
        kUstvaCommand,
        kEuerCommand,
        kBankCommand,
    };
    return commands;
}

} // namespace saldo::cli
