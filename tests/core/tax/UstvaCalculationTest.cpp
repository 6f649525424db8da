#include "tax/UstvaCalculation.h"
#include "tax/CentText.h"
#include "tax/KleinunternehmerCheck.h"
#include "tax/UstvaPlacement.h"
#include "tax/UstvaText.h"

#include "core/support/RandomLedger.h"
#include "platform/Calendar.h"

#include <gtest/gtest.h>

#include <charconv>
#include <cmath>
#include <limits>
#include <map>
#include <sstream>

namespace saldo::tax {
namespace {

ReferenceSeconds local(int year, int month, int day, int hour = 12, int minute = 0, int second = 0)
{
    return Calendar::fromLocalFields({ year, month, day, hour, minute, second });
}

EinnahmePtr item(const char* name, const char* kategorie, bool income, float brutto, float steuersatz,
    ReferenceSeconds datum = local(2025, 3, 10), EinnahmeList children = {})
{
    Einnahme::Stored s;
    s.name = name;
    s.kategorie = kategorie;
    s.art = income ? kArtEinnahme : kArtAusgabe;
    s.brutto = brutto;
    s.steuersatz = steuersatz;
    s.datum = datum;
    s.childTransactions = std::move(children);
    return Einnahme::restore(std::move(s));
}

UstvaResult calculate(const EinnahmeList& entries, const char* period = "2025-03")
{
    const TaxPeriod p = *TaxPeriod::parse(period);
    return UstvaCalculation::calculate(entries, p, *UstvaForm::forYear(p.year()));
}

// The Kennzahl lines of the script output, as numbers in cents (bases in euros).
std::map<int, std::int64_t> kennzahlen(const UstvaResult& result)
{
    std::map<int, std::int64_t> values;
    std::istringstream lines(UstvaText::tsv(result));
    for (std::string line; std::getline(lines, line);) {
        if (line.rfind("offen\t", 0) == 0)
            continue;
        const auto tab = line.find('\t');
        const int kz = std::stoi(line.substr(0, tab));
        const std::string value = line.substr(tab + 1);
        double number = 0;
        std::from_chars(value.data(), value.data() + value.size(), number);
        values[kz] = value.find('.') == std::string::npos ? static_cast<std::int64_t>(number)
                                                          : static_cast<std::int64_t>(std::llround(number * 100));
    }
    return values;
}

TEST(UstvaCalculation, WorkedExample)
{
    const UstvaResult result = calculate({
        item("Verkauf", "8400 Erlöse 19% Gesch. ", true, 119.0f, 19.0f),
        item("Buch", "8300 Erlöse 7% Gesch. ", true, 10.0f, 7.0f),
        item("Papier", "4930 Bürobedarf Gesch. ", false, 59.5f, 19.0f),
    });
    EXPECT_EQ(UstvaText::tsv(result), "66\t9.50\n81\t100\n83\t10.13\n86\t9\n");
    EXPECT_EQ(result.remainingCents(), 1013);
    EXPECT_EQ(result.bookedTax, 1900 + 65 - 950);
    EXPECT_EQ(result.differenceCents(), -2);
    EXPECT_EQ(result.placed, 3u);

    // The rows for a person: Kennzahl, base, tax, and the result marked.
    std::string rows;
    for (const UstvaText::Row& row : UstvaText::rows(result))
        rows += row.kennzahl + "|" + row.base + "|" + row.tax + (row.result ? "* " : " ");
    EXPECT_EQ(rows, "81|100|19,00 86|9|0,63 66||9,50 83||10,13* ");
}

// Bases are whole euros cut toward zero; the form's own taxes come from them;
// the taxes of their own are the cents as summed.
TEST(UstvaCalculation, WholeEuroBasesAndTheTaxesTakenFromThem)
{
    struct Case {
        float brutto;
        float steuersatz;
        bool income;
        const char* tsv;
    };
    for (const Case& c : {
             Case { 1468.46f, 19.0f, true, "81\t1234\n83\t234.46\n" }, // n = 1234.00: 19 % of 1234
             Case { 120.18f, 19.0f, true, "81\t100\n83\t19.00\n" }, // n = 100.99: cut, not rounded
             Case { -1.78f, 19.0f, true, "81\t-1\n83\t-0.19\n" }, // n = -1.50: cut toward zero
             Case { 0.99f, 19.0f, true, "83\t0.00\n" }, // n = 0.83: no euro at all
             Case { 0.03f, 19.0f, false, "83\t0.00\n" }, // n = 0.0252: 0.03, and no tax
             Case { 0.07f, 19.0f, false, "66\t0.01\n83\t-0.01\n" }, // n = 0.0588: 0.06, t = 0.01
             Case { 110.7f, 10.7f, true, "35\t100\n36\t10.70\n83\t10.70\n" },
             Case { 119.0f, 19.0000001f, true, "81\t100\n83\t19.00\n" },
         }) {
        SCOPED_TRACE(c.brutto);
        const UstvaResult result = calculate({ item("x", "8400 Erlöse", c.income, c.brutto, c.steuersatz) });
        EXPECT_EQ(UstvaText::tsv(result), c.tsv);
    }

    // From 131,072 EUR on, an amount is placed and listed as not exact to the cent.
    const UstvaResult large = calculate({ item("Auftrag", "8400 Erlöse", true, 131072.0f, 19.0f),
        item("klein", "8400 Erlöse", true, 131071.99f, 19.0f) });
    EXPECT_EQ(large.placed, 2u);
    ASSERT_EQ(large.nichtCentgenau.size(), 1u);
    EXPECT_EQ(large.nichtCentgenau[0].row, "1");
}

// Only the leaves of split bookings count, each with its own kind, rate,
// category and flags, in the period of the top-level entry.
TEST(UstvaCalculation, SplitBookingsArePlacedPartByPartUnderTheirEntrysDate)
{
    auto reverseCharge = item("Lizenz USA", "4964 Lizenzen", false, 100.0f, 19.0f, local(2024, 1, 1));
    reverseCharge->setIsNonEU(true);
    const EinnahmeList entries = {
        item("Miete", "4210 Miete", false, 119.0f, 19.0f),
        item("Einkauf", "", false, 0.0f, 0.0f, local(2025, 3, 31, 23, 59, 59),
            {
                item("Papier", "4930 Bürobedarf", false, 11.9f, 19.0f, local(2025, 4, 15)),
                item("Teil", "", false, 0.0f, 0.0f, local(2025, 1, 1),
                    { reverseCharge, item("Kaffee", "1800 Privatentnahmen", false, 5.0f, 7.0f),
                        item("Pfand", "4930 Bürobedarf", false, 1.0f, 7.0001f) }),
            }),
        item("April", "8400 Erlöse", true, 119.0f, 19.0f, local(2025, 4, 1, 0, 0, 0)),
        item("ohne Datum", "8400 Erlöse", true, 1.0f, 19.0f, std::nan("")), // listed in every period
    };
    const UstvaResult result = calculate(entries);
    EXPECT_EQ(result.sum(UstvaBox::Vorsteuer), 1900 + 190);
    EXPECT_EQ(result.sum(UstvaBox::Leistung13bAndereBasis), 10000);
    EXPECT_EQ(result.sum(UstvaBox::Vorsteuer13b), 1900);
    EXPECT_EQ(result.sum(UstvaBox::Umsatz19), 0);
    ASSERT_EQ(result.nichtTeil.size(), 1u);
    EXPECT_EQ(result.nichtTeil[0].row, "2.2.2");
    EXPECT_EQ(result.nichtTeil[0].top, 1u);
    EXPECT_EQ(result.nichtTeil[0].name, "Kaffee");
    ASSERT_EQ(result.nichtZugeordnet.size(), 2u);
    EXPECT_EQ(result.nichtZugeordnet[0].row, "2.2.3");
    EXPECT_STREQ(result.nichtZugeordnet[0].reason, kSteuersatzUngueltig);
    EXPECT_STREQ(result.nichtZugeordnet[1].reason, kDatumUngueltig);
    EXPECT_EQ(UstvaText::tsv(result),
        "66\t20.90\n67\t19.00\n83\t-20.90\n84\t100\n85\t19.00\noffen\t2.2.3\t"
        "Steuersatz ungueltig\noffen\t4\tDatum ungueltig\n");
}

// Random ledgers, bad values included: every item of the period is placed or
// listed, Kz 83 is the form's formula over the printed values, and the VAT as
// booked differs from it only by what the whole-euro bases cut off and the
// cents of the items.
TEST(UstvaCalculation, RemainingPaymentIsTheFormulaOverThePrintedValues)
{
    const ReferenceSeconds first = local(2025, 1, 1, 0, 0, 0), april = local(2025, 4, 1, 0, 0, 0),
                           july = local(2025, 7, 1, 0, 0, 0);
    for (int round = 0; round < 40; ++round) {
        const EinnahmeList entries = testing::RandomLedger(round).make(150, first, local(2026, 1, 1, 0, 0, 0) - first);
        std::size_t items = 0;
        forEachItem(entries, [&](const Einnahme&, const Einnahme& top, ItemRow) {
            items += std::isnan(top.datum()) || (top.datum() >= april && top.datum() < july);
        });
        const UstvaResult result = calculate(entries, "2025-Q2");
        EXPECT_EQ(result.placed + result.nichtZugeordnet.size() + result.nichtTeil.size(), items);

        auto kz = kennzahlen(result);
        const std::int64_t formula = kz[81] * 19 + kz[86] * 7 + kz[36] + kz[89] * 19 + kz[93] * 7 + kz[98] + kz[47]
            + kz[85] - kz[66] - kz[61] - kz[62] - kz[67];
        EXPECT_EQ(kz[83], formula) << UstvaText::tsv(result);
        EXPECT_LE(std::llabs(result.differenceCents()), 4 * 19 + static_cast<std::int64_t>(items));
    }
}

TEST(KleinunternehmerCheck, YearsIncomeAgainstTheLimitsAndTheEntryThatCrossedIt)
{
    auto deposit = item("Einlage", "1890 Privateinlagen", true, 50000.0f, 0.0f, local(2025, 1, 5));
    const EinnahmeList entries = {
        item("Vorjahr", "8400 Erlöse", true, 25000.0f, 19.0f, local(2024, 12, 31, 23, 59, 59)),
        item("Vorjahr Teil", "8400 Erlöse", true, 0.01f, 0.0f, local(2024, 6, 1)),
        item("Herbst", "8400 Erlöse", true, 60000.0f, 19.0f, local(2025, 10, 1)),
        item("Sommer", "8400 Erlöse", true, 40000.0f, 19.0f, local(2025, 7, 1)),
        item("Ausgabe", "4930 Bürobedarf", false, 90000.0f, 19.0f, local(2025, 2, 1)),
        deposit,
        item("Gutschrift", "8400 Erlöse", true, -0.01f, 19.0f, local(2025, 11, 1)),
        item("ungueltig", "8400 Erlöse", true, std::nanf(""), 19.0f, local(2025, 3, 1)),
        item("danach", "8400 Erlöse", true, 5.0f, 19.0f, local(2025, 12, 1)),
    };
    const KleinunternehmerResult result = KleinunternehmerCheck::check(entries, *UstvaForm::forYear(2025));
    EXPECT_EQ(result.previousYearCents, 2500001);
    EXPECT_TRUE(result.previousYearOver());
    EXPECT_EQ(result.currentYearCents, 10000499);
    EXPECT_TRUE(result.currentYearOver());
    ASSERT_TRUE(result.crossing);
    EXPECT_EQ(result.crossing->name, "danach"); // 100,000.00 in October is not over the limit; -0.01 in November
    EXPECT_EQ(result.crossing->row, "9");
    ASSERT_EQ(result.notCounted.size(), 1u);
    EXPECT_EQ(result.notCounted[0].name, "ungueltig");

    const KleinunternehmerResult next = KleinunternehmerCheck::check(entries, *UstvaForm::forYear(2026));
    EXPECT_EQ(next.previousYearCents, 10000499);
    EXPECT_EQ(next.currentYearCents, 0);
    EXPECT_FALSE(next.crossing);
}

TEST(UstvaForm, TablesPerYear)
{
    EXPECT_EQ(UstvaForm::years(), (std::vector<int> { 2025, 2026 }));
    EXPECT_EQ(UstvaForm::forYear(2024), nullptr);
    const UstvaForm& y2025 = *UstvaForm::forYear(2025);
    const UstvaForm& y2026 = *UstvaForm::forYear(2026);
    ASSERT_EQ(y2025.lines.size(), y2026.lines.size());
    // Every box the rules fill is on the form exactly once.
    std::map<UstvaBox, int> boxes;
    for (const UstvaLine& line : y2025.lines) {
        if (line.hasBase())
            ++boxes[line.baseBox];
        if (line.hasTaxKz())
            ++boxes[line.taxBox];
    }
    EXPECT_EQ(boxes.size(), kUstvaBoxCount);
    for (const auto& [box, count] : boxes)
        EXPECT_EQ(count, 1) << static_cast<int>(box);
    std::string changed;
    for (std::size_t i = 0; i < y2025.lines.size(); ++i)
        if (std::string(y2025.lines[i].label) != y2026.lines[i].label)
            changed += std::to_string(y2026.lines[i].zeile);
    EXPECT_EQ(changed, "22");
}

// The same texts as the Anlage EÜR's (tested there), for whole euros and the
// extremes of 64 bits.
TEST(CentText, WholeEurosAndTheSmallestAmount)
{
    EXPECT_EQ(CentText::wholeEuros(1234), "1.234");
    EXPECT_EQ(CentText::wholeEuros(-999), "-999");
    EXPECT_EQ(CentText::euros(std::numeric_limits<std::int64_t>::min()), "-92.233.720.368.547.758,08");
}

} // namespace
} // namespace saldo::tax
