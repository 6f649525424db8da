// A year of a busy account: a statement of 100,000 bookings read and turned
// into proposals (rules applied, duplicates matched) against a ledger of
// 100,000 entries, half of which the statement holds already. The target is
// under one second for the whole import. Run with --benchmark_repetitions to
// read medians.
#include "RealisticLedger.h"

#include "bank/BankRules.h"
#include "bank/CsvProfiles.h"
#include "bank/StatementProposals.h"
#include "bank/StatementReader.h"
#include "platform/Calendar.h"

#include <benchmark/benchmark.h>

#include <string>

namespace {

using namespace saldo;

constexpr std::size_t kCount = 100'000;

struct Booking {
    int day; // of 2024, 0 to 365
    std::int64_t cents;
    int partner;
};

const char* const kPartners[] = { "Hausverwaltung Schäfer GmbH", "Stadtwerke Lindenau", "Deutsche Post AG",
    "Jörg Weiß Beratung", "Bürobedarf Müller & Söhne", "Telekom Deutschland", "Autohaus Kröger", "Café Grünspan" };

// The bookings: the first half are the ledger's own entries (as a bank
// would have booked them), the second half new.
std::vector<Booking> bookings(const EinnahmeList& ledger)
{
    std::vector<Booking> out;
    out.reserve(kCount);
    const ReferenceSeconds yearStart = *Calendar::localMidnight(2024, 1, 1);
    for (std::size_t i = 0; i < kCount; ++i) {
        if (i < kCount / 2) {
            const Einnahme& e = *ledger[i];
            const auto cents = static_cast<std::int64_t>(std::llround(static_cast<double>(e.brutto()) * 100.0));
            out.push_back({ static_cast<int>((e.datum() - yearStart) / 86400.0), e.isIncome() ? cents : -cents,
                static_cast<int>(i % 8) });
        } else {
            out.push_back({ static_cast<int>(i % 366), (static_cast<std::int64_t>(i * 7919 % 500'000) + 1) * (i % 3 ? -1 : 1),
                static_cast<int>(i % 8) });
        }
    }
    return out;
}

std::string isoDay(int day)
{
    const Calendar::Fields f = Calendar::localFields(*Calendar::localMidnight(2024, 1, 1) + day * 86400.0 + 43200.0);
    char buffer[16];
    std::snprintf(buffer, sizeof buffer, "%04d-%02d-%02d", f.year, f.month, f.day);
    return buffer;
}

std::string camtStatement(const std::vector<Booking>& list)
{
    std::string out = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<Document "
                      "xmlns=\"urn:iso:std:iso:20022:tech:xsd:camt.053.001.08\"><BkToCstmrStmt><Stmt><Acct><Ccy>EUR</Ccy></Acct>\n";
    for (const Booking& b : list) {
        const std::int64_t magnitude = b.cents < 0 ? -b.cents : b.cents;
        const bool in = b.cents >= 0;
        out += "<Ntry><Amt Ccy=\"EUR\">" + std::to_string(magnitude / 100) + "." + std::to_string(magnitude % 100 / 10)
            + std::to_string(magnitude % 10) + "</Amt><CdtDbtInd>" + (in ? "CRDT" : "DBIT")
            + "</CdtDbtInd><Sts><Cd>BOOK</Cd></Sts><BookgDt><Dt>" + isoDay(b.day) + "</Dt></BookgDt><ValDt><Dt>"
            + isoDay(b.day) + "</Dt></ValDt><AcctSvcrRef>2024" + std::to_string(b.day) + "</AcctSvcrRef><NtryDtls><TxDtls>"
            + "<Refs><EndToEndId>NOTPROVIDED</EndToEndId></Refs><RltdPties><" + (in ? "Dbtr" : "Cdtr") + "><Pty><Nm>"
            + kPartners[b.partner] + "</Nm></Pty></" + (in ? "Dbtr" : "Cdtr") + "><" + (in ? "DbtrAcct" : "CdtrAcct")
            + "><Id><IBAN>DE89370400440532013000</IBAN></Id></" + (in ? "DbtrAcct" : "CdtrAcct")
            + "></RltdPties><RmtInf><Ustrd>Rechnung RE-2024-" + std::to_string(b.day * 100 + b.partner)
            + "</Ustrd></RmtInf></TxDtls></NtryDtls></Ntry>\n";
    }
    return out + "</Stmt></BkToCstmrStmt></Document>\n";
}

std::string dkbStatement(const std::vector<Booking>& list)
{
    std::string out = "\xEF\xBB\xBF\"Girokonto\";\"DE12\"\n\"Zeitraum:\";\"2024\"\n\"Kontostand vom 31.12.2024:\";\"0,00 €\"\n\"\"\n"
                      "\"Buchungsdatum\";\"Wertstellung\";\"Status\";\"Zahlungspflichtige*r\";\"Zahlungsempfänger*in\";"
                      "\"Verwendungszweck\";\"Umsatztyp\";\"IBAN\";\"Betrag (€)\";\"Gläubiger-ID\";\"Mandatsreferenz\";\"Kundenreferenz\"\n";
    for (const Booking& b : list) {
        const std::string iso = isoDay(b.day);
        const std::string day = iso.substr(8, 2) + "." + iso.substr(5, 2) + "." + iso.substr(2, 2);
        const std::int64_t magnitude = b.cents < 0 ? -b.cents : b.cents;
        std::string euros = std::to_string(magnitude / 100);
        for (int at = static_cast<int>(euros.size()) - 3; at > 0; at -= 3)
            euros.insert(static_cast<std::size_t>(at), ".");
        const std::string amount = (b.cents < 0 ? "-" : "") + euros + "," + std::to_string(magnitude % 100 / 10)
            + std::to_string(magnitude % 10);
        const std::string partner = kPartners[b.partner];
        out += "\"" + day + "\";\"" + day + "\";\"Gebucht\";\"" + (b.cents >= 0 ? partner : "Ich") + "\";\""
            + (b.cents < 0 ? partner : "Ich") + "\";\"Rechnung RE-2024-" + std::to_string(b.day)
            + "\";\"Eingang\";\"DE89370400440532013000\";\"" + amount + "\";\"\";\"\";\"\"\n";
    }
    return out;
}

std::vector<BankRule> rules()
{
    std::vector<BankRule> list(4);
    list[0].name = "Miete";
    list[0].partner = "hausverwaltung";
    list[0].sign = BankRule::Sign::Out;
    list[0].kategorie = "4210 Miete";
    list[1].name = "Strom";
    list[1].partner = "stadtwerke";
    list[1].kategorie = "4240 Strom";
    list[2].name = "Rechnung";
    list[2].pattern = "RE-2024-1\\d{3}";
    list[2].kategorie = "8400 Erlöse";
    list[3].name = "Porto";
    list[3].text = "porto";
    list[3].maxCents = 1000;
    list[3].kategorie = "4910 Porto";
    return list;
}

void import(benchmark::State& state, bool csv)
{
    static const EinnahmeList ledger = bench::realisticLedger(kCount);
    const std::vector<Booking> list = bookings(ledger);
    const std::string bytes = csv ? dkbStatement(list) : camtStatement(list);
    const CsvProfiles profiles = CsvProfiles::load();
    const BankRules bankRules(rules());
    std::size_t fresh = 0;
    for (auto _ : state) {
        const std::optional<Statement> statement = StatementReader::read(bytes, profiles, nullptr);
        const std::vector<Proposal> proposals = StatementProposals::make(*statement, bankRules, ledger);
        fresh = static_cast<std::size_t>(std::count_if(
            proposals.begin(), proposals.end(), [](const Proposal& p) { return p.status == Proposal::Status::Neu; }));
        benchmark::DoNotOptimize(proposals.data());
    }
    state.counters["bookings"] = static_cast<double>(list.size());
    state.counters["new"] = static_cast<double>(fresh);
    state.counters["MiB"] = static_cast<double>(bytes.size()) / (1 << 20);
}

BENCHMARK_CAPTURE(import, camt053_100k_against_100k, false)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK_CAPTURE(import, dkb_csv_100k_against_100k, true)->Unit(benchmark::kMillisecond)->Iterations(3);

} // namespace

BENCHMARK_MAIN();
