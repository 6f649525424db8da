#include "DatevBatchChecker.h"
#include "core/support/RandomLedger.h"

#include "exchange/DatevExport.h"
#include "platform/Calendar.h"
#include "tax/TaxItems.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace saldo {
namespace {

using namespace testing;

DatevExportRequest requestFor(LocalDay from, LocalDay to, int fiscalMonth = 1)
{
    DatevExportRequest request;
    request.beraternummer = 29098;
    request.mandantennummer = 55;
    request.wirtschaftsjahrBeginn = fiscalMonth;
    request.from = from;
    request.to = to;
    request.bezeichnung = "Prüfung";
    request.erzeugtAm = Calendar::fromLocalDateTime({ { 2026, 1, 15, 9, 30, 0 }, 0 });
    return request;
}

std::string allFindings(const DatevBatchCheck& check)
{
    std::string text;
    for (const std::string& finding : check.findings)
        text += finding + '\n';
    return text;
}

TEST(DatevBatchChecker, RandomLedgersGiveBatchesWithoutFindings)
{
    for (std::uint64_t draw = 1; draw <= 24; ++draw) {
        std::mt19937_64 rng(draw);
        const int fiscalMonth = 1 + static_cast<int>(rng() % 12);
        const LocalDay from { 2024, 1 + static_cast<int>(rng() % 12), 1 + static_cast<int>(rng() % 28) };
        const LocalDay to { 2025, 1 + static_cast<int>(rng() % 12), 1 + static_cast<int>(rng() % 28) };
        DatevExportRequest request = requestFor(from, to, fiscalMonth);
        request.konto = draw % 2 == 0 ? 1200 : 1000;
        request.maxBookingsPerFile = draw % 3 == 0 ? 40 : 99999;
        const double first = *Calendar::localMidnight(2023, 12, 1);
        const EinnahmeList ledger = testing::RandomLedger(draw).make(300, first, *Calendar::localMidnight(2026, 2, 1) - first);

        const DatevExportResult result = DatevExport::run(ledger, request);
        std::size_t bookings = 0;
        for (const DatevBatchFile& file : result.files) {
            const DatevBatchCheck check = checkDatevBatch(file.bytes);
            EXPECT_EQ(allFindings(check), "") << "draw " << draw << ", " << file.period.vom.compact();
            EXPECT_EQ(check.bookings.size(), file.bookings) << draw;
            EXPECT_EQ(check.sollCents, file.sollCents) << draw;
            EXPECT_EQ(check.habenCents, file.habenCents) << draw;
            EXPECT_EQ(check.header[14], file.period.vom.compact()) << draw;
            bookings += file.bookings;
        }
        EXPECT_EQ(bookings, result.bookings) << draw;

        // Every item of the days is written, listed or counted as 0 cents.
        std::size_t itemsInDays = 0;
        tax::forEachItem(ledger, [&](const Einnahme&, const Einnahme& top, tax::ItemRow) {
            const std::optional<LocalDay> day = LocalDay::of(top.datum());
            itemsInDays += !day || (*day >= from && *day <= to); // undated: listed in every export
        });
        EXPECT_EQ(result.bookings + result.skipped.size() + result.zeroItems, itemsInDays) << draw;
        EXPECT_GT(result.bookings, 0u) << draw;
        EXPECT_GT(result.replacedCharacters, 0u) << draw;
    }
}

// The checker finds what the adviser's system would refuse.
TEST(DatevBatchChecker, FindsEveryKindOfFault)
{
    auto booking = Einnahme::make("Honorar", "8200 Erlöse Gesch. ", 119.0f, 19.0f);
    booking->setDatum(*Calendar::localMidnight(2025, 3, 4) + 3600);
    booking->setRechnungsnummer("RE-7");
    const std::string good = DatevExport::run({ booking }, requestFor({ 2025, 1, 1 }, { 2025, 6, 30 })).files[0].bytes;
    ASSERT_EQ(allFindings(checkDatevBatch(good)), "");
    const std::string line = "119,00;\"S\";\"EUR\";;;;1200;8200;\"3\";0403;\"RE-7\";;;\"Honorar\"";
    ASSERT_NE(good.find(line), std::string::npos);

    // Each case changes the first `from` on its line (0 header, 1 headings, 2 the booking).
    struct Case {
        const char* what;
        std::string from;
        std::string to;
        int line = 2;
    };
    for (const Case& c : {
             Case { "amount without cents", "119,00;", "119;" },
             Case { "amount 0,00", "119,00;", "0,00;" },
             Case { "side", "\"S\"", "\"X\"" },
             Case { "five-digit account", ";8200;", ";10000;" },
             Case { "Konto = Gegenkonto", ";8200;", ";1200;" },
             Case { "unknown tax key", "\"3\"", "\"4\"" },
             Case { "key on an automatic account", ";8200;\"3\"", ";8400;\"3\"" },
             Case { "day outside the header's days", ";0403;", ";0107;" },
             Case { "Belegfeld character", "\"RE-7\"", "\"RE 7\"" },
             Case { "text length", "\"Honorar\"", "\"" + std::string(61, 'x') + "\"" },
             Case { "a field too many", "\"Honorar\"", "\"Honorar\";" },
             Case { "a lone line feed", "\"Honorar\"", "\"Hono\nrar\"" },
             Case { "a byte Windows-1252 leaves empty", "\"Honorar\"", "\"Hono\x81rar\"" },
             Case { "a filled column that must be empty", "\"Honorar\";", "\"Honorar\";x" },
             Case { "header field count", "\"EXTF\";", "\"EXTF\";;", 0 },
             Case { "Beraternummer", ";29098;", ";999;", 0 },
             Case { "fiscal year beginning after the days", ";20250101;4;", ";20250201;4;", 0 },
             Case { "heading moved", ";Konto;Gegenkonto", ";Gegenkonto;Konto", 1 },
         }) {
        std::string bad = good;
        std::size_t lineStart = 0;
        for (int i = 0; i < c.line; ++i)
            lineStart = good.find("\r\n", lineStart) + 2;
        const std::size_t at = good.find(c.from, lineStart);
        ASSERT_LT(at, good.find("\r\n", lineStart)) << c.what;
        bad.replace(at, c.from.size(), c.to);
        EXPECT_FALSE(checkDatevBatch(bad).findings.empty()) << c.what;
    }
    EXPECT_FALSE(checkDatevBatch(good.substr(0, good.size() - 2)).findings.empty()) << "no CRLF at the end";
}

} // namespace
} // namespace saldo
