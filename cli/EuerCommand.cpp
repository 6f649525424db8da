// saldo-cli euer LEDGER YEAR [--tsv] [--kleinunternehmer]: the year's Anlage EÜR.
#include "CliCommand.h"

#include "model/LedgerFile.h"
#include "tax/EuerEvaluation.h"
#include "tax/EuerReport.h"

#include <charconv>
#include <cstdio>
#include <filesystem>

namespace saldo::cli {

namespace {

int runEuer(const std::vector<std::string>& args)
{
    bool tsv = false;
    bool kleinunternehmer = false;
    std::vector<std::string> operands;
    for (const std::string& arg : args) {
        if (arg == "--tsv")
            tsv = true;
        else if (arg == "--kleinunternehmer")
            kleinunternehmer = true;
        else if (arg.size() > 1 && arg[0] == '-')
            return usageError("euer: unknown option \"" + arg + "\"");
        else
            operands.push_back(arg);
    }
    if (operands.size() != 2)
        return usageError("euer takes a LEDGER and a YEAR");
    const std::string& yearText = operands[1];
    int year = 0;
    const auto [end, ec] = std::from_chars(yearText.data(), yearText.data() + yearText.size(), year);
    if (yearText.size() != 4 || ec != std::errc() || end != yearText.data() + yearText.size())
        return usageError("euer: YEAR \"" + yearText + "\" is not a four-digit year");
    const tax::EuerForm* form = tax::EuerForm::forYear(year);
    if (!form) {
        std::fprintf(stderr, "saldo-cli: %s\n", tax::EuerForm::missingYearMessage(year).c_str());
        return kUsage;
    }

    const EinnahmeList entries = LedgerFile::read(operands[0]);
    const tax::EuerResult result = tax::EuerEvaluation::evaluate(entries, *form, kleinunternehmer);
    const std::string text = tsv
        ? tax::EuerReport::tsv(result)
        : tax::EuerReport::text(result, std::filesystem::path(operands[0]).filename().string());
    std::fwrite(text.data(), 1, text.size(), stdout);
    return finishOutput();
}

} // namespace

extern const CliCommand kEuerCommand = { "euer",
    "  euer LEDGER YEAR  the year's Anlage EÜR: its lines and sums, then the entries on no line\n"
    "                    --tsv: ZEILE<TAB>KZ<TAB>VALUE lines, then offen<TAB>ROW<TAB>REASON lines\n"
    "                    --kleinunternehmer: income and expenses gross (§ 19 UStG)\n"
    "                    exit status 2 also for a year Saldo has no form for\n",
    runEuer };

} // namespace saldo::cli
