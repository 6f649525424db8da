#include "CliCommand.h"
#include "UstvaCommand.h"

namespace saldo::cli {

const std::vector<CliCommand>& furtherCommands()
{
    static const std::vector<CliCommand> commands = {
        ustvaCommand(),
    };
    return commands;
}

} // namespace saldo::cli
