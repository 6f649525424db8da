#include "entrylist/FormEdit.h"

#include <gtest/gtest.h>

namespace saldo {
namespace {

FormEdit::Texts form(std::string name, std::string brutto = "12,50", std::string steuersatz = "7")
{
    return { std::move(name), "R-1", "St-1", "Lieferung", std::string("1000 Kasse "), std::move(brutto),
        std::move(steuersatz) };
}

TEST(FormEditTest, TheWholeFormIsTakenOverOnlyWithANameOfThreeCharacters)
{
    // Two user-perceived characters, one of them composed, are too few.
    for (const char* name : { "", "Ab", "Ao\u0308" }) {
        SCOPED_TRACE(name);
        Einnahme entry("Miete", "", 10.0f, 19.0f);
        EXPECT_FALSE(FormEdit::apply(entry, form(name)).taken);
        EXPECT_EQ(entry.name(), "Miete");
        EXPECT_EQ(entry.rechnungsnummer(), "");
        EXPECT_EQ(entry.brutto(), 10.0f);
    }
    Einnahme entry("Miete", "", 10.0f, 19.0f);
    const auto result = FormEdit::apply(entry, form("Ao\u0308x", "1.234,56"));
    EXPECT_TRUE(result.taken);
    EXPECT_FALSE(result.bruttoKept || result.steuersatzKept);
    EXPECT_EQ(entry.name(), "Ao\u0308x");
    EXPECT_EQ(entry.rechnungsnummer(), "R-1");
    EXPECT_EQ(entry.steuernummer(), "St-1");
    EXPECT_EQ(entry.leistungsart(), "Lieferung");
    EXPECT_EQ(entry.kategorie(), "1000 Kasse ");
    EXPECT_EQ(entry.brutto(), 1234.56f);
    EXPECT_EQ(entry.steuersatz(), 7.0f);
}

TEST(FormEditTest, AmountsThatCannotBeTakenKeepTheStoredValuesWhileTheRestIsTaken)
{
    struct Case {
        const char* brutto;
        const char* steuersatz;
        bool hasSplits;
        float keptBrutto;
        float keptSteuersatz;
        bool bruttoKept, steuersatzKept;
    };
    for (const Case& c : { Case { "-5", "-3,5", false, 10.0f, -3.5f, true, false },
             Case { "zwoelf", "7%", false, 10.0f, 19.0f, true, true },
             Case { "0", "0", false, 0.0f, 0.0f, false, false }, Case { "99", "7", true, 10.0f, 7.0f, true, false } }) {
        SCOPED_TRACE(c.brutto);
        Einnahme entry("Miete", "", 10.0f, 19.0f);
        if (c.hasSplits)
            entry.setChildTransactions({ Einnahme::make("Teil", "", 1.0f, 0.0f) });
        auto texts = form("Wartung", c.brutto, c.steuersatz);
        texts.kategorie.reset(); // no item chosen: the category stays
        const auto result = FormEdit::apply(entry, texts);
        EXPECT_TRUE(result.taken);
        EXPECT_EQ(result.bruttoKept, c.bruttoKept);
        EXPECT_EQ(result.steuersatzKept, c.steuersatzKept);
        EXPECT_EQ(entry.brutto(), c.keptBrutto);
        EXPECT_EQ(entry.steuersatz(), c.keptSteuersatz);
        EXPECT_EQ(entry.name(), "Wartung");
        EXPECT_EQ(entry.kategorie(), "");
    }
}

} // namespace
} // namespace saldo
