// saldo-cli bank: a bank statement's bookings as proposed ledger entries.
#include "CliCommand.h"

#include "bank/BankRuleCodec.h"
#include "bank/BankRuleError.h"
#include "bank/BankRules.h"
#include "bank/CsvProfiles.h"
#include "bank/StatementError.h"
#include "bank/StatementProposals.h"
#include "bank/StatementReader.h"
#include "exchange/CsvExport.h"
#include "model/LedgerFile.h"
#include "platform/PathText.h"
#include "platform/SmallFile.h"

#include <cstdio>
#include <cstring>
#include <optional>

namespace saldo::cli {

namespace {

struct Options {
    std::string statement;
    std::optional<std::string> ledger;
    std::optional<std::string> rules;
    std::optional<std::string> into;
    std::optional<std::string> profile;
};

// Parses the arguments after "bank"; an error text when they are wrong.
std::optional<std::string> parse(const std::vector<std::string>& args, Options& options)
{
    for (std::size_t i = 0; i < args.size(); ++i) {
        const std::string& arg = args[i];
        std::optional<std::string>* value = arg == "--ledger" ? &options.ledger
            : arg == "--rules"                                ? &options.rules
            : arg == "--into"                                 ? &options.into
            : arg == "--profile"                              ? &options.profile
                                                              : nullptr;
        if (value) {
            if (i + 1 == args.size())
                return arg + " needs a value";
            if (*value)
                return arg + " is given twice";
            *value = args[++i];
        } else if (arg.starts_with("--") || !options.statement.empty()) {
            return "unexpected argument \"" + arg + "\"";
        } else {
            options.statement = arg;
        }
    }
    if (options.statement.empty())
        return "bank takes a STATEMENT file";
    if (options.ledger && options.into && *options.ledger != *options.into)
        return "--ledger and --into name different ledgers";
    return std::nullopt;
}

// A rules file is a few kilobytes; this is far more than any holds.
constexpr std::uint64_t kMaxRulesFile = 16u << 20;

std::vector<BankRule> readRules(const std::string& path)
{
    const SmallFile::Outcome file = SmallFile::read(path, kMaxRulesFile);
    if (file.fault == SmallFile::Fault::NotRegular)
        throw BankRuleError("not a regular file");
    if (file.fault == SmallFile::Fault::TooLarge)
        throw BankRuleError("a rules file of more than 16 MiB");
    if (file.fault)
        throw BankRuleError(std::strerror(file.error));
    return BankRuleCodec::fromIni(file.bytes);
}

int run(const std::vector<std::string>& args)
{
    Options options;
    if (const std::optional<std::string> error = parse(args, options))
        return usageError(*error);

    CsvProfiles profiles = CsvProfiles::load();
    for (const std::string& problem : profiles.problems())
        std::fprintf(stderr, "saldo-cli: warning: %s\n", problem.c_str());
    if (options.profile) {
        const CsvProfile* chosen = profiles.named(*options.profile);
        if (!chosen)
            return usageError("no bank profile is named \"" + *options.profile + "\"");
        CsvProfiles only;
        only.add(*chosen);
        profiles = std::move(only);
    }
    std::string ambiguous;
    const auto choose = [&](const std::vector<const CsvProfile*>& candidates, bool noneFits) -> const CsvProfile* {
        if (options.profile)
            return candidates.front();
        ambiguous = noneFits ? "no bank profile fits its header" : "several bank profiles fit:";
        if (!noneFits)
            for (const CsvProfile* candidate : candidates)
                ambiguous += " \"" + candidate->name + "\"";
        ambiguous += " (choose one with --profile NAME)";
        return nullptr;
    };

    std::optional<Statement> statement;
    BankRules rules;
    EinnahmeList ledger;
    const std::optional<std::string> ledgerPath = options.into ? options.into : options.ledger;
    try {
        statement = StatementReader::readFile(options.statement, profiles, choose);
        if (options.rules)
            rules = BankRules(readRules(*options.rules));
    } catch (const StatementError& e) {
        return fileError(PathText::oneLine(options.statement) + ": " + e.what());
    } catch (const BankRuleError& e) {
        return fileError(PathText::oneLine(*options.rules) + ": " + e.what());
    }
    if (!statement)
        return fileError(PathText::oneLine(options.statement) + ": " + ambiguous);
    if (ledgerPath)
        ledger = LedgerFile::read(*ledgerPath);

    const std::vector<Proposal> proposals = StatementProposals::make(*statement, rules, ledger);
    EinnahmeList entries;
    EinnahmeList taken;
    entries.reserve(proposals.size());
    for (const Proposal& proposal : proposals) {
        entries.push_back(proposal.makeEntry());
        if (proposal.ticked)
            taken.push_back(entries.back());
    }
    const CsvExport::ExtraColumns extra { { "Status", "Regel" }, [&proposals](std::size_t index) {
                                             const Proposal& p = proposals[index];
                                             return std::vector<std::string> { Proposal::statusText(p.status), p.ruleName };
                                         } };
    CsvExport::encode(entries, extra, [](std::string_view piece) { std::fwrite(piece.data(), 1, piece.size(), stdout); });
    if (options.into) {
        ledger.insert(ledger.end(), taken.begin(), taken.end());
        LedgerFile::write(*options.into, ledger);
        std::fprintf(stderr, "saldo-cli: %zu new entries appended to %s\n", taken.size(), options.into->c_str());
    }
    return finishOutput();
}

} // namespace

extern const CliCommand kBankCommand = { "bank",
    "  bank STATEMENT [--ledger LEDGER] [--rules RULES.ini] [--into LEDGER] [--profile NAME]\n"
    "                    read a bank statement (camt.053 XML or ZIP, or a bank's CSV export) and print\n"
    "                    its bookings as proposed entries (CSV as csv writes it, with Status and Regel);\n"
    "                    --ledger marks those the ledger holds already, --into appends the new ones to\n"
    "                    the ledger (atomically), --rules applies a rules file, --profile names the\n"
    "                    CSV format when none or several fit\n",
    run };

} // namespace saldo::cli
