// saldo-cli datev LEDGER --berater N --mandant N --from DAY --to DAY: the DATEV booking batches.
#include "CliCommand.h"

#include "exchange/DatevExport.h"
#include "model/LedgerFile.h"
#include "settings/DatevSettings.h"

#include <charconv>
#include <cstdio>
#include <optional>
#include <string_view>

namespace saldo::cli {

namespace {

const char* const kDatevUsage
    = R"(  datev FILE --berater N --mandant N --from YYYY-MM-DD --to YYYY-MM-DD [--konto KONTO] [--wj-beginn MONAT] [--out OUT]
                    write the entries of the days as DATEV booking batches (EXTF, Windows-1252) for the
                    tax adviser: Konto is the money account (default 1200), the fiscal year begins in
                    MONAT (1-12, default 1); to OUT, or to standard output. Each calendar year is a batch
                    of its own: for several, OUT gets the year before its extension (OUT-2024.csv,
                    OUT-2025.csv; OUT-2025-07.csv when the fiscal year does not begin in January;
                    -teil1, -teil2 for a year of more than 99999 bookings). Entries that cannot be
                    written go to standard error, one line each ("Zeile 12.2: Grund")
)";

std::optional<std::uint32_t> wholeNumber(const std::string& text)
{
    std::uint32_t value = 0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    if (text.empty() || text.size() > 9 || error != std::errc() || stop != end)
        return std::nullopt;
    return value;
}

// The file's name without its folder and extension.
std::string ledgerName(const std::string& path)
{
    const std::size_t slash = path.rfind('/');
    std::string name = slash == std::string::npos ? path : path.substr(slash + 1);
    if (const std::size_t dot = name.rfind('.'); dot != std::string::npos && dot > 0)
        name.resize(dot);
    return name;
}

int runDatev(const std::vector<std::string>& args)
{
    std::optional<std::string> ledger;
    std::optional<std::string> out;
    std::optional<std::uint32_t> berater;
    std::optional<std::uint32_t> mandant;
    std::optional<std::uint32_t> konto = 1200;
    std::optional<std::uint32_t> fiscalMonth = 1;
    std::optional<LocalDay> from;
    std::optional<LocalDay> to;
    for (std::size_t i = 0; i < args.size(); ++i) {
        const std::string& arg = args[i];
        if (arg.size() < 2 || arg.compare(0, 2, "--") != 0) {
            if (ledger)
                return usageError("datev takes one FILE");
            ledger = arg;
            continue;
        }
        if (i + 1 == args.size())
            return usageError("datev: " + arg + " needs a value");
        const std::string& value = args[++i];
        if (arg == "--berater")
            berater = wholeNumber(value);
        else if (arg == "--mandant")
            mandant = wholeNumber(value);
        else if (arg == "--konto")
            konto = wholeNumber(value);
        else if (arg == "--wj-beginn")
            fiscalMonth = wholeNumber(value);
        else if (arg == "--from")
            from = LocalDay::parse(value);
        else if (arg == "--to")
            to = LocalDay::parse(value);
        else if (arg == "--out")
            out = value;
        else
            return usageError("datev: unknown option " + arg);
    }
    if (!ledger)
        return usageError("datev takes one FILE");
    if (!berater || !DatevSettings::isBeraternummer(*berater))
        return usageError("datev: --berater needs a number from 1001 to 9999999");
    if (!mandant || !DatevSettings::isMandantennummer(*mandant))
        return usageError("datev: --mandant needs a number from 1 to 99999");
    if (!konto || *konto < 1 || *konto > 9999)
        return usageError("datev: --konto needs an account number of one to four digits");
    if (!fiscalMonth || *fiscalMonth < 1 || *fiscalMonth > 12)
        return usageError("datev: --wj-beginn needs a month from 1 to 12");
    if (!from || !to)
        return usageError("datev: --from and --to need dates YYYY-MM-DD");
    if (*to < *from)
        return usageError("datev: --to lies before --from");
    const std::size_t batches = DatevPeriod::split(*from, *to, static_cast<int>(*fiscalMonth)).size();
    if (batches > 1 && !out)
        return usageError("datev: the days make " + std::to_string(batches) + " batches; give --out FILE");

    DatevExportRequest request;
    request.beraternummer = *berater;
    request.mandantennummer = *mandant;
    request.wirtschaftsjahrBeginn = static_cast<int>(*fiscalMonth);
    request.konto = *konto;
    request.from = *from;
    request.to = *to;
    request.bezeichnung = ledgerName(*ledger);
    request.erzeugtAm = now();

    const DatevExportResult result = DatevExport::run(LedgerFile::read(*ledger), request);
    for (const DatevSkippedItem& skipped : result.skipped)
        std::fprintf(stderr, "Zeile %s: %s\n", skipped.row.c_str(), skipped.reason.c_str());
    if (out) {
        DatevExport::write(DatevExport::filePaths(*out, result.files), result);
        return kOk;
    }
    if (result.files.size() > 1)
        return usageError("datev: more than 99999 bookings make " + std::to_string(result.files.size())
            + " batches; give --out FILE");
    const std::string& bytes = result.files.front().bytes;
    std::fwrite(bytes.data(), 1, bytes.size(), stdout);
    return finishOutput();
}

} // namespace

extern const CliCommand kDatevCommand = { "datev", kDatevUsage, runDatev };

} // namespace saldo::cli
