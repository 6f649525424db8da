#include "tax/TaxItems.h"
#include "tax/TaxPeriod.h"

#include "platform/Calendar.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

namespace saldo::tax {
namespace {

TEST(TaxItems, GrossCentsRoundHalfAwayFromZeroAndRefuseWhatNoSumCanHold)
{
    struct Case {
        float brutto;
        std::int64_t cents;
        const char* fault;
        bool centExact;
    };
    const float inf = std::numeric_limits<float>::infinity();
    for (const Case& c : {
             Case { 119.0f, 11900, nullptr, true },
             Case { 0.125f, 13, nullptr, true },      // an exact half cent goes up
             Case { -0.125f, -13, nullptr, true },    // and down below zero
             Case { 2.675f, 267, nullptr, true },     // the float lies below 2.675
             Case { 0.285f, 28, nullptr, true },      // below 0.285 as well: no second rounding
             Case { 131071.99f, 13107199, nullptr, true },
             Case { 131072.0f, 13107200, nullptr, false },
             Case { -131072.0f, -13107200, nullptr, false },
             Case { 1048576.5f, 104857650, nullptr, false },
             Case { 9999998976.0f, 999999897600, nullptr, false }, // the largest float below the bound
             Case { 1e10f, 0, kBetragZuGross, false },
             Case { -3e38f, 0, kBetragZuGross, false },
             Case { inf, 0, kBetragUngueltig, false },
             Case { std::nanf(""), 0, kBetragUngueltig, false },
         }) {
        const GrossCents got = grossCents(c.brutto);
        EXPECT_EQ(got.cents, c.cents) << c.brutto;
        // The reasons are compared as texts: a literal's address may differ between objects.
        EXPECT_EQ(std::string(got.fault ? got.fault : ""), std::string(c.fault ? c.fault : "")) << c.brutto;
        EXPECT_EQ(got.centExact, c.centExact) << c.brutto;
    }
}

TEST(TaxItems, RatesAreWholeHundredthsOrRefused)
{
    struct Case {
        float steuersatz;
        std::optional<std::int64_t> rate;
    };
    for (const Case& c : {
             Case { 19.0f, 1900 },
             Case { 10.7f, 1070 },           // 10.6999998… is within 0.001 of a hundredth
             Case { 19.0000001f, 1900 },     // the same float as 19
             Case { 0.0f, 0 },
             Case { 19.005f, std::nullopt }, // half a hundredth
             Case { 7.0001f, std::nullopt },
             Case { -7.0f, std::nullopt },
             Case { 10000.0f, 1000000 },
             Case { 10000.01f, std::nullopt },
             Case { std::numeric_limits<float>::infinity(), std::nullopt },
             Case { std::nanf(""), std::nullopt },
         })
        EXPECT_EQ(rateHundredths(c.steuersatz), c.rate) << c.steuersatz;
}

TEST(TaxItems, NetAndTaxInIntegerCents)
{
    struct Case {
        std::int64_t gross, rate, net, reverseTax;
    };
    for (const Case& c : {
             Case { 11900, 1900, 10000, 2261 },
             Case { 1000, 700, 935, 70 },
             Case { -1000, 700, -935, -70 },
             Case { 5950, 1900, 5000, 1131 },   // 1130.5 goes up
             Case { -5950, 1900, -5000, -1131 },
             Case { 5, 1900, 4, 1 },             // 4.2 and 0.95
             Case { 1000, 0, 1000, 0 },
             Case { 999999999999, 1000000, 9900990099, 99999999999900 },
         }) {
        EXPECT_EQ(netCents(c.gross, c.rate), c.net) << c.gross << " at " << c.rate;
        EXPECT_EQ(taxOnBase(c.gross, c.rate), c.reverseTax) << c.gross << " at " << c.rate;
    }
}

TEST(TaxItems, CategoryNumberIsTheLeadingDigitsBeforeABlankOrTheEnd)
{
    struct Case {
        const char* kategorie;
        std::optional<std::uint32_t> value;
        int digits;
    };
    for (const Case& c : {
             Case { "8400 Erl\xc3\xb6se 19% Gesch. ", 8400, 4 },
             Case { "0410 Gesch\xc3\xa4" "ftsausstattung", 410, 4 },
             Case { "10000", 10000, 5 },
             Case { "8400Erl\xc3\xb6se", std::nullopt, 0 },
             Case { "\xe2\x82\xac Sonderposten", std::nullopt, 0 },
             Case { "", std::nullopt, 0 },
             Case { " 8400 Erloese", std::nullopt, 0 },
             Case { "8400\tErloese", std::nullopt, 0 },
             Case { "1234567890 zu lang", std::nullopt, 0 },
         }) {
        const auto number = categoryNumber(c.kategorie);
        EXPECT_EQ(number ? std::optional<std::uint32_t>(number->value) : std::nullopt, c.value) << c.kategorie;
        if (number) {
            EXPECT_EQ(number->digits, c.digits) << c.kategorie;
        }
    }
}

TEST(TaxItems, ItemsAreTheLeavesWithTheirRowsAndTopLevelEntry)
{
    auto plain = Einnahme::make("Miete", "", 1.0f, 19.0f);
    auto split = Einnahme::make("Einkauf", "", 3.0f, 19.0f);
    auto nested = Einnahme::make("Teil 2", "", 2.0f, 19.0f);
    nested->setChildTransactions({ Einnahme::make("2a", "", 1.0f, 7.0f), Einnahme::make("2b", "", 1.0f, 0.0f) });
    split->setChildTransactions({ Einnahme::make("Teil 1", "", 1.0f, 19.0f), nested });
    std::string visited;
    forEachItem(EinnahmeList { plain, split }, [&](const Einnahme& item, const Einnahme& top, ItemRow row) {
        visited += item.name() + "@" + rowText(row) + "<" + top.name() + "> ";
    });
    EXPECT_EQ(visited, "Miete@1<Miete> Teil 1@2.1<Einkauf> 2a@2.2.1<Einkauf> 2b@2.2.2<Einkauf> ");
}

TEST(TaxItems, CentSumRefusesToOverflow)
{
    CentSum sum;
    EXPECT_TRUE(sum.add(std::numeric_limits<std::int64_t>::max() - 1));
    EXPECT_FALSE(sum.add(2));
    EXPECT_TRUE(sum.add(-5));
    EXPECT_EQ(sum.value(), std::numeric_limits<std::int64_t>::max() - 6);
}

TEST(TaxPeriod, ReadsMonthsQuartersAndYearsBetweenLocalMidnights)
{
    struct Case {
        const char* text;
        int firstMonth, lastMonth;
    };
    for (const Case& c : { Case { "2025-03", 3, 3 }, Case { "2025-Q1", 1, 3 }, Case { "2025-Q4", 10, 12 },
             Case { "2025", 1, 12 } }) {
        const auto period = TaxPeriod::parse(c.text);
        ASSERT_TRUE(period) << c.text;
        EXPECT_EQ(period->firstMonth(), c.firstMonth) << c.text;
        EXPECT_EQ(period->lastMonth(), c.lastMonth) << c.text;
        EXPECT_EQ(period->text(), c.text);
    }
    for (const char* wrong : { "2025-13", "2025-00", "2025-Q5", "2025-3", "25-03", "2025-03-01", "2025 ", "Q1", "" })
        EXPECT_FALSE(TaxPeriod::parse(wrong)) << wrong;

    // A period runs from local midnight to local midnight, also across the
    // changes to and from summer time; a date that is not a number is in none.
    struct Instant {
        const char* period;
        ReferenceSeconds datum;
        bool inside;
    };
    const ReferenceSeconds april = Calendar::fromLocalFields({ 2025, 4, 1, 0, 0, 0 }); // 22:00 UTC the day before
    const ReferenceSeconds november = Calendar::fromLocalFields({ 2025, 11, 1, 0, 0, 0 }); // 23:00 UTC
    for (const Instant& c : {
             Instant { "2025-03", *Calendar::localMidnight(2025, 3, 1) - 0.001, false },
             Instant { "2025-03", *Calendar::localMidnight(2025, 3, 1), true },
             Instant { "2025-03", april - 0.5, true },
             Instant { "2025-03", april, false },
             Instant { "2025-04", april, true },
             Instant { "2025-Q1", april - 0.001, true },
             Instant { "2025-Q2", april, true },
             Instant { "2025-03", Calendar::fromLocalFields({ 2025, 3, 30, 3, 0, 0 }), true }, // the hour after the gap
             Instant { "2025-10", Calendar::fromLocalFields({ 2025, 10, 26, 2, 30, 0 }), true }, // the hour twice
             Instant { "2025-10", november - 1.0, true },
             Instant { "2025-10", november, false },
             Instant { "2025-11", november, true },
             Instant { "2025", *Calendar::localMidnight(2025, 1, 1) - 1.0, false },
             Instant { "2025", *Calendar::localMidnight(2026, 1, 1) - 1.0, true },
             Instant { "2025", std::nan(""), false },
         })
        EXPECT_EQ(TaxPeriod::parse(c.period)->contains(c.datum), c.inside) << c.period << " " << c.datum;
}

} // namespace
} // namespace saldo::tax
