#include "tax/EuerRules.h"
#include "tax/EuerReport.h"

#include <gtest/gtest.h>

#include <cmath>
#include <set>
#include <utility>

namespace saldo::tax {
namespace {

struct Item {
    bool income;
    const char* kategorie;
    float brutto = 119.0f;
    float rate = 19.0f;
    bool flag = false;
};

EinnahmePtr entryOf(const Item& item)
{
    Einnahme::Stored s;
    s.art = item.income ? kArtEinnahme : kArtAusgabe;
    s.kategorie = item.kategorie;
    s.brutto = item.brutto;
    s.steuersatz = item.rate;
    s.innergemeinschaftlicherErwerb = item.flag;
    return Einnahme::restore(std::move(s));
}

// "39/150 100.00, 57/185 19.00", then the list and its amount, then the remarks.
std::string placed(const Item& item, bool kleinunternehmer = false)
{
    const EuerForm& form = *EuerForm::forYear(2025);
    const EuerPlacement p = EuerRules::place(*entryOf(item), kleinunternehmer);
    std::string text;
    for (std::size_t b = 0; b < p.bookingCount; ++b) {
        const EuerLine& line = form.line(p.bookings[b].field);
        text += (text.empty() ? "" : ", ") + std::to_string(line.zeile) + "/" + std::to_string(line.kennzahl) + " "
            + EuerReport::cNotation(p.bookings[b].cents);
    }
    if (p.list != EuerList::None)
        text += std::string(text.empty() ? "" : " | ") + p.reason
            + (p.amountKnown ? " " + EuerReport::cNotation(p.listedCents) : "");
    if (p.ohneKontonummer)
        text += " +ohne Nummer";
    if (p.reverseCharge)
        text += " +reverse charge";
    return text;
}

constexpr bool E = true; // income
constexpr bool A = false; // expense

TEST(EuerRules, EveryRowOfTheChartPlacesItsItems)
{
    struct Case {
        Item item;
        const char* expected;
    };
    // 119.00 at 19 % unless said otherwise: net 100.00, tax 19.00.
    for (const Case& c : {
             Case { { E, "1200 Bank Bank " }, "Geldkonto 119.00" },
             Case { { A, "70000 Kreditor allgemein Verb " }, "Verbindlichkeit 119.00" },
             Case { { A, "2341 Einstellungen in den Sonderposten mit " }, "Sonderposten mit Ruecklageanteil 119.00" },
             Case { { E, "1790 USt. Vorjahr VorSt. " }, "18/141 119.00" },
             Case { { A, "1780 USt. Vorauszahlungen VorSt. ", 119.0f, NAN }, "58/186 119.00" }, // no rate needed
             Case { { E, "1776 Umsatzsteuer 19% USt. " }, "17/140 119.00" },
             Case { { A, "1588 Bezahlte Einfuhrumsatzste VorSt. " }, "57/185 119.00" },
             Case { { A, "1810 Privatsteuern Gesch. " }, "106/122 119.00" },
             Case { { E, "1880 Unentgeltliche Wertabgaben Gesch. " }, "21/108 100.00, 17/140 19.00" },
             Case { { E, "1890 Privateinlagen Gesch. ", 119.0f, -1.0f }, "107/123 119.00" },
             Case { { A, "0410 Geschäftsausstattung Gesch. " },
                 "57/185 19.00 | Anlagegut — ueber die AfA absetzen 100.00" },
             Case { { E, "8400 Erlöse 19% Gesch. " }, "15/112 100.00, 17/140 19.00" },
             Case { { E, "8125 Steuerfreie EG-Lieferungen", 50.0f, 0.0f, true }, "16/103 50.00" },
             Case { { E, "Honorar ohne Konto", 50.0f, 0.0f }, "16/103 50.00" },
             Case { { A, "8736 Gewährte Skonti 19% Gesch. " }, "15/112 -100.00, 17/140 -19.00" },
             Case { { A, "8700 Erlösschmälerungen Gesch. ", 20.0f, 0.0f }, "16/103 -20.00" },
             Case { { E, "3736 Erhaltene Skonti 19% Gesch. " }, "27/100 -100.00, 57/185 -19.00" },
             Case { { A, "3100 Fremdleistungen Gesch. " }, "29/110 100.00, 57/185 19.00" },
             Case { { A, "3400 Wareneingang 19% VoSt. Gesch. " }, "27/100 100.00, 57/185 19.00" },
             Case { { A, "4100 Löhne und Gehälter Gesch. ", 3000.0f, 0.0f }, "30/120 3000.00" },
             Case { { A, "4210 Miete Gesch. " }, "39/150 100.00, 57/185 19.00" },
             Case { { A, "4240 Gas, Strom, Wasser Gesch. " }, "41/151 100.00, 57/185 19.00" },
             Case { { A, "2375 Grundsteuer Gesch. ", 80.0f, 0.0f }, "41/151 80.00" },
             Case { { A, "4320 Gewerbesteuer Gesch. ", 500.0f, 0.0f }, "Gewerbesteuer 500.00" },
             Case { { A, "4360 Versicherungen Gesch. ", 200.0f, 0.0f }, "49/223 200.00" },
             Case { { A, "4570 Leasingfahrzeugkosten Gesch. " }, "68/144 100.00, 57/185 19.00" },
             Case { { A, "4520 Kfz-Versicherungen Gesch. ", 60.0f, 0.0f }, "69/145 60.00" },
             Case { { A, "4540 Kfz-Reparaturen Gesch. " }, "70/146 100.00, 57/185 19.00" },
             Case { { A, "4595 Fremdfahrzeugkosten Gesch. ", 30.0f, 0.0f }, "71/147 30.00" },
             Case { { A, "4600 Werbe- und Reisekosten Gesch. " }, "54/224 100.00, 57/185 19.00" },
             Case { { A, "4630 Geschenke abzugsfähig Gesch. " }, "62/174 100.00, 57/185 19.00" },
             Case { { A, "4635 Geschenke n. abzugsfähig Gesch. " }, "62/164 100.00, 57/185 19.00" },
             Case { { A, "4650 Bewirtungskosten Gesch. ", 86.7f }, "63/175 51.00, 63/165 21.86, 57/185 13.84" },
             Case { { A, "4654 Bewirtung n. abzugsfähig Gesch. " }, "63/165 100.00, 57/185 19.00" },
             Case { { A, "4670 Reisekosten Unternehmer Gesch. " }, "44/221 100.00, 57/185 19.00" },
             Case { { A, "4678 Fahrten zw. Whg und Arbeit abziehbar Gesch. ", 30.0f, 0.0f }, "73/176 30.00" },
             Case { { A, "4679 Fahrten zw. Whg und Arbeit n. abziehb Gesch. " },
                 "57/185 19.00 | Fahrten zwischen Wohnung und Betriebsstaette 100.00" },
             Case { { A, "4700 Kosten der Warenabgabe Gesch. " }, "53/227 100.00, 57/185 19.00" },
             Case { { A, "4800 Reparaturen tech. Anlagen Gesch. " }, "48/225 100.00, 57/185 19.00" },
             Case { { A, "4815 Kaufleasing Gesch. " }, "47/222 100.00, 57/185 19.00" },
             Case { { A, "4822 Abschreibungen auf Immatrielle ", 10.0f, 0.0f }, "32/131 10.00" },
             Case { { A, "4832 Abschreibungen auf KFZ Gesch. ", 10.0f, 0.0f }, "33/130 10.00" },
             Case { { A, "4831 Abschreibungen auf Gebäude Gesch. ", 10.0f, 0.0f }, "31/136 10.00" },
             Case { { A, "4851 Sonderabschreibung ohne Kfz Gesch. ", 10.0f, 0.0f }, "34/134 10.00" },
             Case { { A, "4855 Sofortabschreibungen geringwertige WG Gesch. ", 10.0f, 0.0f }, "36/132 10.00" },
             Case { { A, "4985 Werkzeuge & Kleingeräte Gesch. " }, "51/229 100.00, 57/185 19.00" },
             Case { { A, "4925 Telefax und Internetkosten Gesch. " }, "43/280 100.00, 57/185 19.00" },
             Case { { A, "4945 Fortbildungskosten Gesch. " }, "45/281 100.00, 57/185 19.00" },
             Case { { A, "4955 Buchführungskosten Gesch. " }, "46/194 100.00, 57/185 19.00" },
             Case { { A, "2110 Zinsaufw. f. kurzf. Verb. Gesch. ", 40.0f, 0.0f }, "56/234 40.00" },
             Case { { A, "4970 Nebenkosten Geldverkehr Gesch. " }, "60/183 100.00, 57/185 19.00" },
             Case { { A, "Sonderposten" }, "60/183 100.00, 57/185 19.00 +ohne Nummer" },
             // A reverse-charge flag: the amount paid on the line, nothing on the VAT lines.
             Case { { A, "3425 Wareneingang EG 19% Gesch. ", 420.0f, 19.0f, true }, "27/100 420.00 +reverse charge" },
             Case { { A, "0027 EDV-Software Gesch. ", 249.0f, 19.0f, true },
                 "Anlagegut — ueber die AfA absetzen 249.00 +reverse charge" },
             // What cannot be taken: the amount first, the rate where the row uses it.
             Case { { A, "4930 Bürobedarf Gesch. ", NAN }, "Betrag ungueltig" },
             Case { { E, "1200 Bank Bank ", 1e10f }, "Betrag zu gross" },
             Case { { A, "4930 Bürobedarf Gesch. ", 119.0f, 19.005f }, "Steuersatz ungueltig 119.00" },
         })
        EXPECT_EQ(placed(c.item), c.expected) << c.item.kategorie;
}

TEST(EuerRules, BewirtungSplitsSeventyPercentRoundedHalfAwayFromZero)
{
    struct Case {
        float brutto;
        const char* expected;
    };
    // At 0 % the net amount is the gross amount: 70 % of 5 cents is 3.5.
    for (const Case& c : {
             Case { 0.05f, "63/175 0.04, 63/165 0.01" },
             Case { 0.15f, "63/175 0.11, 63/165 0.04" },
             Case { 0.16f, "63/175 0.11, 63/165 0.05" },
             Case { -0.05f, "63/175 -0.04, 63/165 -0.01" },
         })
        EXPECT_EQ(placed({ A, "4650 Bewirtungskosten Gesch. ", c.brutto, 0.0f }), c.expected) << c.brutto;
}

TEST(EuerRules, AKleinunternehmerBooksGrossAndDeductsNoInputTax)
{
    struct Case {
        Item item;
        const char* expected;
    };
    for (const Case& c : {
             Case { { E, "8400 Erlöse 19% Gesch. " }, "12/111 119.00" },
             Case { { E, "8100 Steuerfreie Umsätze §4 Nr.8 ff Gesch. ", 50.0f, NAN }, "12/111 50.00" },
             Case { { E, "1790 USt. Vorjahr VorSt. " }, "18/141 119.00" },
             Case { { E, "1880 Unentgeltliche Wertabgaben Gesch. " }, "21/108 119.00" },
             Case { { E, "1200 Bank Bank " }, "Geldkonto 119.00" },
             Case { { A, "4930 Bürobedarf Gesch. " }, "51/229 119.00" },
             Case { { A, "0410 Geschäftsausstattung Gesch. " }, "Anlagegut — ueber die AfA absetzen 119.00" },
             Case { { A, "8736 Gewährte Skonti 19% Gesch. " }, "12/111 -119.00" },
             Case { { A, "3425 Wareneingang EG 19% Gesch. ", 420.0f, 19.0f, true }, "27/100 420.00" },
         })
        EXPECT_EQ(placed(c.item, true), c.expected) << c.item.kategorie;
}

TEST(EuerForm, FormYearsHoldEveryFieldOnceAndRefuseOtherYears)
{
    for (int year : { 2024, 2025 }) {
        const EuerForm* form = EuerForm::forYear(year);
        ASSERT_NE(form, nullptr) << year;
        EXPECT_EQ(form->year(), year);
        std::set<std::pair<int, int>> keys;
        int zeile = 0;
        for (const EuerLine& line : form->lines()) {
            EXPECT_TRUE(keys.insert({ line.zeile, line.kennzahl }).second) << line.zeile << "/" << line.kennzahl;
            EXPECT_GE(line.zeile, zeile) << "lines in the form's order";
            zeile = line.zeile;
        }
        for (std::size_t f = 0; f < kEuerFieldCount; ++f)
            EXPECT_TRUE(form->indexOf(static_cast<EuerField>(f))) << "field " << f << " in " << year;
    }
    for (int year : { 2023, 2026 }) {
        EXPECT_EQ(EuerForm::forYear(year), nullptr);
        EXPECT_NE(EuerForm::missingYearMessage(year).find(std::to_string(year)), std::string::npos);
    }
}

} // namespace
} // namespace saldo::tax
