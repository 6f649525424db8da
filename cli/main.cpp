// saldo-cli: reads, converts, exports and evaluates ledger files from the command line.
// Exit status 0 on success, 1 when a file cannot be read or written, 2 when the
// command line is wrong. Every error is one line on standard error.
#include "CliCommand.h"
#include "EntryDump.h"

#include "evaluation/CalcEngine.h"
#include "exchange/CsvExport.h"
#include "model/LedgerFile.h"
#include "platform/FileWriteError.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <utility>
#include <string>
#include <string_view>
#include <vector>

namespace {

using saldo::EinnahmeList;
using namespace saldo::cli;

const char* const kUsageHead = R"(Usage: saldo-cli COMMAND ARGUMENTS

Commands:
  dump FILE         print every entry on one line, split bookings indented below it
  check FILE        read the file and print how many entries it holds
  convert IN OUT    read a ledger property list (binary or XML) and write it as a ledger file;
                    OUT is replaced atomically, a device or a pipe is written through
  csv FILE          print the entries as a spreadsheet table (CSV: UTF-8, ";", CRLF)
  report FILE       print the evaluation report of the entries
)";

const char* const kUsageTail = R"(  help              print this text
  --version         print the version

Exit status: 0 done, 1 a file could not be read or written, 2 wrong command line.
)";

std::size_t countEntries(const EinnahmeList& entries)
{
    std::size_t count = entries.size();
    for (const auto& e : entries)
        count += countEntries(e->childTransactions());
    return count;
}

int run(const std::vector<std::string>& args)
{
    if (args.empty())
        return usageError("no command given");
    const std::string& command = args[0];
    if (command == "help" || command == "--help" || command == "-h") {
        std::fputs(kUsageHead, stdout);
        for (const CliCommand& further : furtherCommands())
            std::fputs(further.usage, stdout);
        std::fputs(kUsageTail, stdout);
        return finishOutput();
    }
    if (command == "--version" && args.size() == 1) {
        std::fputs("saldo-cli " SALDO_VERSION "\n", stdout);
        return finishOutput();
    }
    for (const CliCommand& further : furtherCommands()) {
        if (command == further.name)
            return further.run(std::vector<std::string>(args.begin() + 1, args.end()));
    }
    const std::size_t wanted = command == "convert" ? 3 : 2;
    if (command != "dump" && command != "check" && command != "convert" && command != "report" && command != "csv")
        return usageError("unknown command \"" + command + "\"");
    if (args.size() != wanted)
        return usageError(command + (wanted == 3 ? " takes two files, IN and OUT" : " takes one FILE"));

    // The report reads only the kind and category of the texts: the others are checked, not kept.
    EinnahmeList entries
        = command == "report" ? saldo::LedgerFile::readForEvaluation(args[1]) : saldo::LedgerFile::read(args[1]);
    if (command == "dump") {
        if (!saldo::cli::EntryDump::write(entries, stdout))
            return finishOutput();
    } else if (command == "check") {
        const std::size_t all = countEntries(entries);
        std::printf("%s: %zu entries, %zu split bookings\n", args[1].c_str(), entries.size(), all - entries.size());
    } else if (command == "convert") {
        saldo::LedgerFile::write(args[2], entries);
    } else if (command == "csv") {
        saldo::CsvExport::encode(
            entries, [](std::string_view piece) { std::fwrite(piece.data(), 1, piece.size(), stdout); });
    } else {
        saldo::CalcEngine& engine = saldo::sharedCalcEngine();
        engine.calculate(std::move(entries));  // the last use: no copy of the list
        const std::string& text = engine.ergebnisString();
        std::fwrite(text.data(), 1, text.size(), stdout);
    }
    return finishOutput();
}

} // namespace

namespace saldo::cli {

int usageError(const std::string& message)
{
    std::fprintf(stderr, "saldo-cli: %s (see saldo-cli --help)\n", message.c_str());
    return kUsage;
}

int fileError(const std::string& message)
{
    std::fprintf(stderr, "saldo-cli: %s\n", message.c_str());
    return kUnreadable;
}

int finishOutput()
{
    if (std::fflush(stdout) != 0 || std::ferror(stdout))
        return fileError(std::string("cannot write to standard output: ") + std::strerror(errno));
    return kOk;
}

} // namespace saldo::cli

int main(int argc, char** argv)
{
    std::vector<std::string> args(argv + 1, argv + argc);
    try {
        return run(args);
    } catch (const saldo::LedgerFileError& e) {
        return fileError(e.what());
    } catch (const saldo::FileWriteError& e) {
        return fileError(e.what());
    } catch (const std::bad_alloc&) {
        return fileError("out of memory");
    }
}
