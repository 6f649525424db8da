#pragma once

#include <string>
#include <vector>

namespace saldo::cli {

// Exit statuses of saldo-cli: done, a file could not be read or written, a
// wrong command line.
inline constexpr int kOk = 0;
inline constexpr int kUnreadable = 1;
inline constexpr int kUsage = 2;

// One line on standard error for a wrong command line; returns kUsage.
int usageError(const std::string& message);
// One line on standard error for a file that cannot be read or written; returns kUnreadable.
int fileError(const std::string& message);
// Flushes standard output; a failed write is a file error.
int finishOutput();

// A command of saldo-cli beyond the basic file commands: its name, its lines
// of the usage text, and what runs it with the arguments after the name. A
// ledger that cannot be read or a file that cannot be written may be thrown
// as LedgerFileError or FileWriteError; main turns them into exit status 1.
struct CliCommand {
    const char* name;
    const char* usage;
    int (*run)(const std::vector<std::string>& args);
};

// The further commands, in the order the usage text lists them.
const std::vector<CliCommand>& furtherCommands();

} // namespace saldo::cli
