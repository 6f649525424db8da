#include "CliCommand.h"
#include "DatevCommand.h"

namespace saldo::cli {

const std::vector<CliCommand>& furtherCommands()
{
    static const std::vector<CliCommand> commands = {
        kDatevCommand,
    };
    return commands;
}

} // namespace saldo::cli
