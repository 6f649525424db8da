#include "tax/EuerEvaluation.h"
#include "tax/EuerReport.h"
#include "tax/TaxItems.h"

#include "core/support/RandomLedger.h"
#include "platform/Calendar.h"

#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <set>

namespace saldo::tax {
namespace {

ReferenceSeconds localTime(int year, int month, int day, double seconds = 12 * 3600.0)
{
    return *Calendar::localMidnight(year, month, day) + seconds;
}

EinnahmePtr entry(
    bool income, const char* kategorie, float brutto, float rate, ReferenceSeconds datum, EinnahmeList children = {})
{
    Einnahme::Stored s;
    s.art = income ? kArtEinnahme : kArtAusgabe;
    s.kategorie = kategorie;
    s.brutto = brutto;
    s.steuersatz = rate;
    s.datum = datum;
    s.childTransactions = std::move(children);
    return Einnahme::restore(std::move(s));
}

const EuerForm& form2025()
{
    return *EuerForm::forYear(2025);
}

std::size_t lineOf(int zeile, int kennzahl)
{
    const auto lines = form2025().lines();
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (lines[i].zeile == zeile && lines[i].kennzahl == kennzahl)
            return i;
    }
    ADD_FAILURE() << "no line " << zeile << "/" << kennzahl;
    return 0;
}

std::string rowsAndShares(const std::vector<EuerLineItem>& items)
{
    std::string text;
    for (const EuerLineItem& item : items)
        text += item.row + "=" + EuerReport::cNotation(item.cents) + " ";
    return text;
}

std::string rowsOf(const std::vector<EuerListed>& listed)
{
    std::string text;
    for (const EuerListed& item : listed)
        text += item.row + ":" + item.reason + " ";
    return text;
}

TEST(EuerEvaluation, WorkedExample)
{
    const ReferenceSeconds june = localTime(2025, 6, 15);
    const EinnahmeList ledger = {
        entry(true, "8400 Erlöse 19% Gesch. ", 119.0f, 19.0f, june),
        entry(false, "4930 Bürobedarf Gesch. ", 59.5f, 19.0f, june),
        entry(false, "4650 Bewirtungskosten Gesch. ", 100.0f, 19.0f, june),
        entry(false, "4360 Versicherungen Gesch. ", 200.0f, 0.0f, june),
        entry(false, "1800 Privatentnahmen allgemein Gesch. ", 1000.0f, 0.0f, june),
    };
    const EuerResult result = EuerEvaluation::evaluate(ledger, form2025(), false);
    EXPECT_EQ(EuerReport::tsv(result),
        "15\t112\t100.00\n17\t140\t19.00\n23\t159\t119.00\n49\t223\t200.00\n51\t229\t50.00\n57\t185\t25.47\n"
        "63\t165\t25.21\n63\t175\t58.82\n75\t199\t334.29\n92\t290\t-215.29\n106\t122\t1000.00\n");
    EXPECT_EQ(result.itemCount, 5u);

    // An empty year still prints its three sums.
    EXPECT_EQ(EuerReport::tsv(EuerEvaluation::evaluate(ledger, *EuerForm::forYear(2024), false)),
        "23\t159\t0.00\n75\t199\t0.00\n92\t290\t0.00\n");
}

TEST(EuerEvaluation, SplitBookingsLandOnTheirOwnLinesInTheYearOfTheirEntry)
{
    // The entry's date decides the year, not its split bookings' dates; an
    // entry without a date is listed in every year.
    const ReferenceSeconds old = localTime(2024, 7, 1);
    const EinnahmeList ledger = {
        entry(false, "4900 Sammelbeleg", 0.0f, 0.0f, localTime(2025, 1, 1, 0.0),
            {
                entry(false, "4930 Bürobedarf Gesch. ", 59.5f, 19.0f, old),
                entry(false, "4920 Telefon Gesch. ", 11.9f, 19.0f, old),
                entry(false, "", 0.0f, 0.0f, old,
                    { entry(false, "1200 Bank Bank ", 5.0f, 0.0f, old),
                        entry(false, "4320 Gewerbesteuer Gesch. ", 10.0f, 0.0f, old) }),
            }),
        entry(false, "4930 Bürobedarf Gesch. ", 1000.0f, 19.0f, localTime(2025, 1, 1, -1.0)),
        entry(false, "4930 Bürobedarf Gesch. ", 5.0f, NAN, localTime(2026, 1, 1, -1.0)),
        entry(false, "4930 Bürobedarf Gesch. ", 5.0f, 19.0f, NAN),
    };
    const EuerResult result = EuerEvaluation::evaluate(ledger, form2025(), false);
    EXPECT_EQ(EuerReport::tsv(result),
        "23\t159\t0.00\n43\t280\t10.00\n51\t229\t50.00\n57\t185\t11.40\n75\t199\t71.40\n92\t290\t-71.40\n"
        "offen\t3\tSteuersatz ungueltig\noffen\t4\tDatum ungueltig\n");
    EXPECT_EQ(result.itemCount, 6u);
    EXPECT_EQ(rowsOf(result.nichtTeil), "1.3.1:Geldkonto ");
    EXPECT_EQ(rowsOf(result.nichtAbziehbar), "1.3.2:Gewerbesteuer ");
    ASSERT_EQ(result.nichtAbziehbar.size(), 1u);
    EXPECT_EQ(result.nichtAbziehbar[0].item, ledger[0]->childTransactions()[2]->childTransactions()[1].get());
    EXPECT_EQ(result.nichtAbziehbar[0].entryIndex, 0u);

    auto behind = [&](int zeile, int kennzahl) {
        return rowsAndShares(EuerEvaluation::itemsBehind(ledger, form2025(), false, lineOf(zeile, kennzahl)));
    };
    EXPECT_EQ(behind(43, 280), "1.2=10.00 ");
    EXPECT_EQ(behind(57, 185), "1.1=9.50 1.2=1.90 ");
    EXPECT_EQ(behind(92, 290), "1.1=-59.50 1.2=-11.90 ");
    EXPECT_EQ(behind(15, 112), "");
}

// What the form adds up, written out here independently of the form's table.
const std::set<int> kEinnahmen = { 111, 112, 103, 140, 141, 102, 106, 108 };
const std::set<int> kAusgaben
    = { 100, 110, 120, 136, 131, 130, 134, 138, 132, 137, 135, 150, 152, 151, 280, 221, 281, 194, 222, 225, 223, 228,
          229, 226, 227, 224, 232, 234, 185, 186, 183, 174, 175, 171, 172, 163, 177, 144, 145, 146, 147, 176 };

TEST(EuerEvaluation, OverRandomLedgersTheSumsAreTheirPartsAndEveryItemIsAccountedFor)
{
    const ReferenceSeconds first = localTime(2024, 10, 1, 0.0), year = localTime(2025, 1, 1, 0.0),
                           next = localTime(2026, 1, 1, 0.0);
    for (int round = 0; round < 150; ++round) {
        const EinnahmeList ledger = testing::RandomLedger(round).make(30, first, localTime(2026, 3, 1, 0.0) - first);
        const bool kleinunternehmer = round % 3 == 0;
        const EuerResult result = EuerEvaluation::evaluate(ledger, form2025(), kleinunternehmer);
        const auto lines = form2025().lines();
        std::int64_t einnahmen = 0, ausgaben = 0;
        std::set<std::string> accounted;
        for (std::size_t i = 0; i < lines.size(); ++i) {
            const int kz = lines[i].kennzahl;
            if (kz != 159 && kz != 199 && kz != 290) {
                einnahmen += kEinnahmen.count(kz) ? result.cents[i] : 0;
                ausgaben += kAusgaben.count(kz) ? result.cents[i] : 0;
            }
            // The items behind a line add up to it.
            std::int64_t shares = 0;
            for (const EuerLineItem& item : EuerEvaluation::itemsBehind(ledger, form2025(), kleinunternehmer, i)) {
                shares += item.cents;
                accounted.insert(item.row);
            }
            EXPECT_EQ(shares, result.cents[i]) << "line " << lines[i].zeile << "/" << kz;
        }
        EXPECT_EQ(result.value(EuerField::SummeEinnahmen), einnahmen);
        EXPECT_EQ(result.value(EuerField::SummeAusgaben), ausgaben);
        EXPECT_EQ(result.value(EuerField::Gewinn), einnahmen - ausgaben);

        for (const auto* list :
            { &result.nichtZugeordnet, &result.nichtAbziehbar, &result.anlagegut, &result.nichtTeil })
            for (const EuerListed& item : *list)
                accounted.insert(item.row);
        std::size_t items = 0;
        forEachItem(ledger, [&](const Einnahme&, const Einnahme& top, ItemRow row) {
            if (std::isnan(top.datum()) || (top.datum() >= year && top.datum() < next)) {
                ++items;
                EXPECT_TRUE(accounted.count(rowText(row))) << "item " << rowText(row) << " is nowhere";
            }
        });
        EXPECT_EQ(result.itemCount, items);
    }
}

TEST(EuerReport, AmountsAsTheFormAndScriptsTakeThem)
{
    struct Case {
        std::int64_t cents;
        const char* euros;
        const char* c;
    };
    for (const Case& c :
        { Case { 0, "0,00", "0.00" }, Case { 5, "0,05", "0.05" }, Case { -21529, "-215,29", "-215.29" },
            Case { 100000, "1.000,00", "1000.00" }, Case { 123456789, "1.234.567,89", "1234567.89" },
            Case { -99999999999999, "-999.999.999.999,99", "-999999999999.99" } }) {
        EXPECT_EQ(EuerReport::euros(c.cents), c.euros);
        EXPECT_EQ(EuerReport::cNotation(c.cents), c.c);
    }
}

} // namespace
} // namespace saldo::tax
