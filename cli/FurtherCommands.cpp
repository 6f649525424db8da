#include "CliCommand.h"

namespace saldo::cli {

// Defined in the file of each command.
extern const CliCommand kEuerCommand;
extern const CliCommand kUstvaCommand;
extern const CliCommand kBankCommand;
extern const CliCommand kDatevCommand;

const std::vector<CliCommand>& furtherCommands()
{
    static const std::vector<CliCommand> commands = {
        kUstvaCommand,
        kEuerCommand,
        kBankCommand,
        kDatevCommand,
    };
    return commands;
}

} // namespace saldo::cli
