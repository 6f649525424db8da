// The rules: first match wins over every kind of condition, the stored list
// survives a round trip and is refused whole when damaged, and the rules
// file of the command line reads into the same rules.
#include "bank/BankRuleCodec.h"
#include "bank/BankRuleError.h"
#include "bank/BankRules.h"

#include <gtest/gtest.h>

namespace saldo {
namespace {

BankBooking booking(std::int64_t cents, std::string partner, std::string text, std::string iban = "",
    std::string bookingText = "")
{
    BankBooking b;
    b.cents = cents;
    b.partner = std::move(partner);
    b.text = std::move(text);
    b.iban = std::move(iban);
    b.bookingText = std::move(bookingText);
    return b;
}

std::vector<BankRule> table()
{
    std::vector<BankRule> rules(7);
    rules[0].name = "Miete";
    rules[0].partner = "HAUSVERWALTUNG";
    rules[0].sign = BankRule::Sign::Out;
    rules[1].name = "Konto";
    rules[1].partner = "de44 5001";
    rules[2].name = "Kleinbetrag Porto";
    rules[2].text = "porto";
    rules[2].maxCents = 1000;
    rules[3].name = "Rechnungsnummer";
    rules[3].pattern = "re-?\\d{4}";
    rules[4].name = "Großkunde";
    rules[4].partner = "müller";
    rules[4].sign = BankRule::Sign::In;
    rules[4].minCents = 100000;
    rules[5].name = "Karte";
    rules[5].text = "kartenzahlung";
    rules[6].name = "Alles andere";
    return rules;
}

TEST(BankRulesTest, TheFirstRuleWhoseConditionsAllHoldWins)
{
    const BankRules rules(table());
    const std::pair<BankBooking, int> cases[] = {
        { booking(-90000, "Hausverwaltung Schmidt", "Miete Mai"), 0 },
        { booking(90000, "Hausverwaltung Schmidt", "Rueckzahlung"), 6 }, // money in: not the rent
        { booking(-5000, "X", "", "DE44500105170123456789"), 1 }, // IBAN with and without blanks
        { booking(-995, "Post", "Porto Briefe"), 2 },
        { booking(-1001, "Post", "Porto Paket"), 6 }, // above the range
        { booking(5000, "Kunde", "Zahlung RE2024 danke"), 3 },
        { booking(5000, "Kunde", "Zahlung re-2024"), 3 },
        { booking(5000, "Kunde", "Zahlung RE 2024"), 6 },
        { booking(150000, "MÜLLER & Söhne", "Rechnung"), 4 }, // case folded beyond ASCII
        { booking(99999, "Müller & Söhne", "Rechnung"), 6 },
        { booking(-2350, "Tankstelle", "", "", "KARTENZAHLUNG"), 5 }, // the bank's booking text counts as text
    };
    for (const auto& [b, expected] : cases) {
        SCOPED_TRACE(b.partner + " " + b.text);
        EXPECT_EQ(rules.match(b), expected);
    }
    EXPECT_EQ(BankRules().match(booking(1, "a", "b")), -1);
    BankRule broken;
    broken.name = "kaputt";
    broken.pattern = "(offen";
    EXPECT_THROW(BankRules({ broken }), BankRuleError);
}

TEST(BankRulesTest, TheStoredListSurvivesARoundTripAndIsRefusedWholeWhenDamaged)
{
    std::vector<BankRule> rules = table();
    rules[0].kategorie = "4210 Miete Gesch. "; // the trailing blank of a category row stays
    rules[0].steuersatz = 0.0f;
    rules[1].flag = BankRule::Flag::NonEU;
    rules[2].flag = BankRule::Flag::InnergemeinschaftlicherErwerb;
    rules[2].steuersatz = 5.5f;
    rules[3].nameTemplate = "%partner \\ Zeile 1\nZeile 2 (%ref)";
    InMemoryUserDefaults defaults;
    EXPECT_TRUE(BankRuleCodec::load(defaults).empty());
    BankRuleCodec::store(defaults, rules);
    EXPECT_EQ(BankRuleCodec::load(defaults), rules);

    const std::vector<std::string> stored = *defaults.stringArray(BankRuleCodec::kKey);
    const auto damaged = [&](std::size_t at, const std::string& text) {
        std::vector<std::string> copy = stored;
        copy[at] = text;
        return copy;
    };
    const std::pair<std::vector<std::string>, std::string> cases[] = {
        { damaged(0, "Saldo-Bankregeln 2"), "unbekanntes Format" },
        { {}, "unbekanntes Format" },
        { damaged(2, "Name=X\nFarbe=rot"), "Gespeicherte Bankregel 2: unbekannter Schluessel \"Farbe\"" },
        { damaged(2, "Name=X\nName=Y"), "steht zweimal da" },
        { damaged(2, "Partner=X"), "keinen Namen" },
        { damaged(2, "Name=X\nMuster=(offen"), "Muster ist fehlerhaft" },
        { damaged(2, "Name=X\nBetragAb=12,5,0"), "kein Betrag" },
        { damaged(2, "Name=X\nBetragAb=20\nBetragBis=10"), "groesser" },
        { damaged(2, "Name=X\nSteuersatz=neunzehn"), "kein Steuersatz" },
        { damaged(2, "Name=X\nRichtung=rein"), "\"Richtung\"" },
        { damaged(2, "Name=X\nKennzeichen=EU"), "\"Kennzeichen\"" },
        { damaged(2, "Name=a\\b"), "Rueckstrich" },
        { damaged(2, "Name"), "ohne \"=\"" },
    };
    for (const auto& [list, reason] : cases) {
        SCOPED_TRACE(reason);
        defaults.setStringArray(BankRuleCodec::kKey, list);
        try {
            BankRuleCodec::load(defaults);
            ADD_FAILURE() << "loaded";
        } catch (const BankRuleError& e) {
            EXPECT_NE(std::string(e.what()).find(reason), std::string::npos) << e.what();
        }
    }
    defaults.setRawValue(BankRuleCodec::kKey, { false, {} });
    EXPECT_THROW(BankRuleCodec::load(defaults), BankRuleError);
}

TEST(BankRulesTest, ARulesFileReadsSectionByRuleInOrder)
{
    const std::vector<BankRule> rules = BankRuleCodec::fromIni("\xEF\xBB\xBF# Regeln\n"
                                                               "[Miete]\n"
                                                               "Partner = Hausverwaltung\n"
                                                               "Richtung = Ausgabe\n"
                                                               "Kategorie = \"4210 Miete Gesch. \"\n"
                                                               "Steuersatz = 0\n"
                                                               "\n"
                                                               "[ Porto ]\n"
                                                               "; bis zehn Euro\n"
                                                               "Text=porto\n"
                                                               "BetragBis = 10,00\n"
                                                               "Kennzeichen = isNonEU\n");
    ASSERT_EQ(rules.size(), 2u);
    EXPECT_EQ(rules[0].name, "Miete");
    EXPECT_EQ(rules[0].kategorie, "4210 Miete Gesch. ");
    EXPECT_EQ(rules[0].sign, BankRule::Sign::Out);
    EXPECT_EQ(rules[0].steuersatz, 0.0f);
    EXPECT_EQ(rules[1].name, "Porto");
    EXPECT_EQ(rules[1].maxCents, 1000);
    EXPECT_EQ(rules[1].flag, BankRule::Flag::NonEU);
    for (const char* bad : { "Partner = x\n", "[Miete\n", "[A]\nkein Wert\n", "[A]\nBetragAb = -5\n" })
        EXPECT_THROW(BankRuleCodec::fromIni(bad), BankRuleError) << bad;
}

} // namespace
} // namespace saldo
