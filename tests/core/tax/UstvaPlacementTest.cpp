#include "tax/UstvaPlacement.h"
#include "tax/TaxItems.h"

#include <gtest/gtest.h>

#include <cmath>
#include <map>

namespace saldo::tax {
namespace {

using B = UstvaBox;
using K = UstvaPlacement::Kind;
constexpr bool E = true; // income
constexpr bool A = false; // expense
constexpr bool IG = true;

struct Case {
    const char* what;
    bool income;
    const char* kategorie;
    float brutto;
    float steuersatz;
    bool ig;
    bool nonEU;
    K kind;
    const char* reason;
    std::map<B, std::int64_t> adds;
    std::int64_t booked;
};

// Every rule of the placement once, top down, with the nearest rule it must
// win against where one would also match. The amount is looked at before
// anything else, the rate only after the accounts booked on their own.
TEST(UstvaPlacement, FirstMatchingRuleDecides)
{
    const float nan = std::nanf("");
    const Case cases[] = {
        { "kein Betrag", A, "1780 Umsatzsteuer-Vorauszahlungen ", nan, 19.0f, false, false, K::NichtZugeordnet,
            kBetragUngueltig, {}, 0 },
        { "zu gross", E, "8400 Erlöse", 1e10f, 19.0f, false, false, K::NichtZugeordnet, kBetragZuGross, {}, 0 },
        // Not part of the return: payments to the Finanzamt, money accounts,
        // receivables, private; whatever kind, rate or flags.
        { "Finanzamt", A, "1780 Umsatzsteuer-Vorauszahlungen ", 500.0f, 19.0f, false, false, K::NichtTeil, kFinanzamt,
            {}, 0 },
        { "Erstattung", E, "1791 USt frühere Jahre", 80.0f, 0.0f, false, false, K::NichtTeil, kFinanzamt, {}, 0 },
        { "Bank", E, "1200 Bank ", 100.0f, 19.0f, IG, false, K::NichtTeil, kGeldkonto, {}, 0 },
        { "Debitor", E, "10000 Kunde", 100.0f, 19.0f, false, false, K::NichtTeil, kForderungVerbindlichkeit, {}, 0 },
        { "Entnahme", A, "1800 Privatentnahmen ", 100.0f, 19.0f, false, false, K::NichtTeil, kPrivat, {}, 0 },
        { "Einlage", E, "1890 Privateinlagen ", 100.0f, 0.0f, false, false, K::NichtTeil, kPrivat, {}, 0 },
        // Input tax and import VAT booked on their own: the whole amount, any rate.
        { "Vorsteuer", A, "1576 Abziehbare Vorsteuer 19% ", 19.0f, nan, false, false, K::Form, nullptr,
            { { B::Vorsteuer, 1900 } }, -1900 },
        { "Vorsteuer ig", A, "1574 Vorsteuer ig Erwerb 19% ", 19.0f, 19.0f, false, false, K::Form, nullptr,
            { { B::VorsteuerIgErwerb, 1900 } }, -1900 },
        { "EUSt", A, "1588 Einfuhrumsatzsteuer ", 47.5f, 0.0f, false, false, K::Form, nullptr,
            { { B::Einfuhrumsatzsteuer, 4750 } }, -4750 },
        // VAT booked on its own: before the rate is looked at.
        { "Umsatzsteuer", E, "1776 Umsatzsteuer 19% ", 19.0f, nan, false, false, K::NichtZugeordnet,
            kUmsatzsteuerOhneBemessung, {}, 0 },
        // From here on the rate counts.
        { "Satz", E, "8400 Erlöse", 119.0f, 19.5001f, false, false, K::NichtZugeordnet, kSteuersatzUngueltig, {}, 0 },
        // Reductions of turnover, per rate; nothing at 0 %.
        { "Skonto 19", A, "8736 Gewährte Skonti 19% ", 11.9f, 19.0f, false, false, K::Form, nullptr,
            { { B::Umsatz19, -1000 } }, -190 },
        { "Skonto 7", A, "8731 Gewährte Skonti 7% ", 10.7f, 7.0f, false, false, K::Form, nullptr,
            { { B::Umsatz7, -1000 } }, -70 },
        { "Skonto 16", A, "8700 Erlösschmälerungen", 11.6f, 16.0f, false, false, K::Form, nullptr,
            { { B::UmsatzAndereBasis, -1000 }, { B::UmsatzAndereSteuer, -160 } }, -160 },
        { "Skonto 0", A, "8700 Erlösschmälerungen", 10.0f, 0.0f, false, false, K::Form, nullptr, {}, 0 },
        // Discounts received reduce the input tax.
        { "Skonto erhalten", E, "3736 Erhaltene Skonti 19% ", 11.9f, 19.0f, false, false, K::Form, nullptr,
            { { B::Vorsteuer, -190 } }, 190 },
        // Income.
        { "ig mit Satz", E, "8125 Steuerfreie EG-Lieferungen", 100.0f, 19.0f, IG, false, K::NichtZugeordnet,
            kIgLieferungMitSteuersatz, {}, 0 },
        { "19 %", E, "8400 Erlöse 19% Gesch. ", 119.0f, 19.0f, false, false, K::Form, nullptr,
            { { B::Umsatz19, 10000 } }, 1900 },
        { "Gutschrift", E, "8400 Erlöse", -11.9f, 19.0f, false, false, K::Form, nullptr, { { B::Umsatz19, -1000 } },
            -190 },
        { "7 %", E, "8300 Erlöse 7% Gesch. ", 10.0f, 7.0f, false, false, K::Form, nullptr, { { B::Umsatz7, 935 } },
            65 },
        { "Wertabgabe", E, "1880 Unentgeltliche Wertabgaben", 119.0f, 19.0f, false, false, K::Form, nullptr,
            { { B::Umsatz19, 10000 } }, 1900 },
        { "10,7 %", E, "8400 Erlöse", 110.7f, 10.7f, false, true, K::Form, nullptr,
            { { B::UmsatzAndereBasis, 10000 }, { B::UmsatzAndereSteuer, 1070 } }, 1070 },
        { "steuerfrei 8100", E, "8100 Steuerfreie Umsätze", 50.0f, 0.0f, IG, false, K::Form, nullptr,
            { { B::SteuerfreiOhneVorsteuer, 5000 } }, 0 },
        { "ig Lieferung", E, "8125 Steuerfreie EG-Lieferungen", 50.0f, 0.0f, IG, false, K::Form, nullptr,
            { { B::IgLieferung, 5000 } }, 0 },
        { "EU-Leistung", E, "8338 Erlöse EU sonstige Leistung", 50.0f, 0.0f, IG, false, K::Form, nullptr,
            { { B::NichtSteuerbar18b, 5000 } }, 0 },
        { "Ausfuhr", E, "8120 Steuerfreie Umsätze Ausfuhr", 50.0f, 0.0f, false, true, K::Form, nullptr,
            { { B::Ausfuhr, 5000 } }, 0 },
        { "Ausland", E, "8400 Erlöse", 50.0f, 0.0f, false, true, K::Form, nullptr,
            { { B::NichtSteuerbarUebrige, 5000 } }, 0 },
        { "ohne Flagge", E, "8315 Erlöse EG 19% Gesch. ", 50.0f, 0.0f, false, false, K::NichtZugeordnet,
            kSteuerfreiOhneZuordnung, {}, 0 },
        { "ohne Nummer", E, "€ Sonderposten", 50.0f, 0.0f, false, false, K::NichtZugeordnet, kSteuerfreiOhneZuordnung,
            {}, 0 },
        // Expenses: reverse charge on the amount paid.
        { "ig Ware 19", A, "3425 Wareneingang EG 19% ", 420.0f, 19.0f, IG, false, K::Form, nullptr,
            { { B::IgErwerb19, 42000 }, { B::VorsteuerIgErwerb, 7980 } }, 0 },
        { "ig Anlage 7", A, "0410 Geschäftsausstattung", 10.0f, 7.0f, IG, false, K::Form, nullptr,
            { { B::IgErwerb7, 1000 }, { B::VorsteuerIgErwerb, 70 } }, 0 },
        { "ig Ware 16", A, "3400 Wareneingang", 100.0f, 16.0f, IG, false, K::Form, nullptr,
            { { B::IgErwerbAndereBasis, 10000 }, { B::IgErwerbAndereSteuer, 1600 }, { B::VorsteuerIgErwerb, 1600 } },
            0 },
        { "EU-Dienst", A, "4930 Bürobedarf", 100.0f, 19.0f, IG, false, K::Form, nullptr,
            { { B::Leistung13bEuBasis, 10000 }, { B::Leistung13bEuSteuer, 1900 }, { B::Vorsteuer13b, 1900 } }, 0 },
        { "Drittland", A, "0027 EDV-Software", 249.0f, 19.0f, false, true, K::Form, nullptr,
            { { B::Leistung13bAndereBasis, 24900 }, { B::Leistung13bAndereSteuer, 4731 }, { B::Vorsteuer13b, 4731 } },
            0 },
        { "Vorsteuer", A, "4930 Bürobedarf Gesch. ", 59.5f, 19.0f, false, false, K::Form, nullptr,
            { { B::Vorsteuer, 950 } }, -950 },
        { "0 %", A, "4360 Versicherungen", 312.0f, 0.0f, false, true, K::OhneVorsteuer, nullptr, {}, 0 },
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        const UstvaPlacement p = UstvaPlacement::place(
            UstvaPlacement::Item { c.income, c.kategorie, c.brutto, c.steuersatz, c.ig, c.nonEU });
        EXPECT_EQ(p.kind, c.kind);
        EXPECT_STREQ(p.reason, c.reason);
        std::map<B, std::int64_t> adds;
        for (std::uint8_t i = 0; i < p.addCount; ++i)
            adds[p.adds[i].box] = p.adds[i].cents;
        EXPECT_EQ(adds, c.adds);
        EXPECT_EQ(p.bookedTax, c.booked);
    }
}

} // namespace
} // namespace saldo::tax
