#include "model/Einnahme.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <tuple>

namespace saldo {
namespace {

using namespace std::string_literals;

// The text fields, then the flags.
auto textsAndFlags(const Einnahme& e)
{
    return std::tuple(e.name(), e.kategorie(), e.art(), e.rechnungsnummer(), e.steuernummer(), e.leistungsart(),
        e.innergemeinschaftlicherErwerb(), e.isNonEU());
}

class EinnahmeTest : public ::testing::Test {
protected:
    void SetUp() override { setNowOverrideForTesting(&fixedNow); }
    void TearDown() override { setNowOverrideForTesting(nullptr); }
    ReferenceSeconds fixedNow = 785'000'123.456;
};

TEST_F(EinnahmeTest, NewEntryTakesTheGivenFieldsAndTheNewEntryValues)
{
    const auto e = Einnahme::make("Neu", "", 0.0f, 19.0f);
    EXPECT_EQ(textsAndFlags(*e), std::tuple("Neu"s, ""s, "Einnahme"s, ""s, ""s, ""s, false, false));
    EXPECT_EQ(e->datum(), fixedNow);
    EXPECT_EQ(e->description(), "Name: Neu");
}

TEST_F(EinnahmeTest, NettoIsComputedInSinglePrecisionInTheGivenOrder)
{
    // 119 / 1.19f is one ulp below 100 in single precision.
    EXPECT_EQ(static_cast<double>(Einnahme::make("a", "", 119.0f, 19.0f)->netto()), 99.99999237060547);
    EXPECT_EQ(static_cast<double>(Einnahme::make("a", "", 10.0f, 7.0f)->netto()), 9.345793724060059);
    // A rate of -100 divides by zero: infinite, or not a number for a zero gross.
    EXPECT_TRUE(std::isinf(Einnahme::make("a", "", 5.0f, -100.0f)->netto()));
    EXPECT_TRUE(std::isnan(Einnahme::make("a", "", 0.0f, -100.0f)->netto()));
}

TEST_F(EinnahmeTest, SettersRefuseNegativeGrossKeepTheFlagsExclusiveAndSetTheStatusImage)
{
    auto e = Einnahme::make("a", "", 12.5f, 19.0f);
    e->setBrutto(-5.0f);
    EXPECT_EQ(e->brutto(), 12.5f);
    e->setBrutto(0.0f);
    EXPECT_EQ(e->brutto(), 0.0f);

    e->setIsNonEU(true);
    e->setInnergemeinschaftlicherErwerb(true);
    e->setIsNonEU(false); // clearing one flag leaves the other alone
    EXPECT_TRUE(e->innergemeinschaftlicherErwerb());
    EXPECT_FALSE(e->isNonEU());

    // Green only for exactly "Einnahme".
    EXPECT_STREQ(e->statusImage(), "greenCircle");
    e->setArt("einnahme");
    EXPECT_STREQ(e->statusImage(), "redCircle");
}

TEST_F(EinnahmeTest, CopyAppendsKopieAndSharesTheChildEntries)
{
    auto child = Einnahme::make("Teil", "K ", 3.0f, 7.0f);
    Einnahme::Stored s = Einnahme::make("Miete", "4210 Miete Gesch. ", 800.0f, 19.0f)->stored();
    s.art = "Ausgabe";
    s.innergemeinschaftlicherErwerb = s.isNonEU = true; // both set, as a file may hold them
    s.rechnungsnummer = "R-1";
    s.steuernummer = "St-2";
    s.leistungsart = "Raum";
    s.datum = 700'000'000.25; // not the moment of the copy
    s.childTransactions = { child };
    const auto source = Einnahme::restore(s);

    const auto copy = source->copy();
    ASSERT_NE(copy, source);
    EXPECT_EQ(copy->copy()->name(), "Miete Kopie Kopie");
    EXPECT_EQ(Einnahme::make("", "", 0, 0)->copy()->name(), " Kopie");
    // The flags go through the setters in order: non-EU wins.
    EXPECT_EQ(textsAndFlags(*copy),
        std::tuple("Miete Kopie"s, s.kategorie, "Ausgabe"s, "R-1"s, "St-2"s, "Raum"s, false, true));
    // A copy once moved its date by a second, and no test saw it.
    EXPECT_EQ(std::tuple(copy->brutto(), copy->steuersatz(), copy->datum()), std::tuple(800.0f, 19.0f, s.datum));

    ASSERT_EQ(copy->childTransactions(), (EinnahmeList { child }));
    copy->childTransactions()[0]->setName("geändert");
    EXPECT_EQ(source->childTransactions()[0]->name(), "geändert");
    // The lists themselves are separate.
    copy->setChildTransactions({});
    EXPECT_EQ(source->childTransactions().size(), 1u);
}

TEST_F(EinnahmeTest, OrderingPutsIncomeFirstThenAscendingGross)
{
    auto a = Einnahme::make("a", "", 10.0f, 19.0f);
    a->setArt("Ausgabe");
    auto b = Einnahme::make("b", "", 50.0f, 19.0f);
    auto c = Einnahme::make("c", "", 5.0f, 19.0f);
    EinnahmeList list { a, b, c };
    std::sort(list.begin(), list.end(), [](const auto& x, const auto& y) { return *x < *y; });
    EXPECT_EQ(list, (EinnahmeList { c, b, a }));
    EXPECT_TRUE(!(*b < *b) && *a > *b);

    // Canonically equivalent kinds are equal; only the gross then decides.
    auto composed = Einnahme::make("x", "", 2.0f, 0.0f);
    auto decomposed = Einnahme::make("y", "", 1.0f, 0.0f);
    composed->setArt("Ausgab\xC3\xA9"); // é precomposed
    decomposed->setArt("Ausgabe\xCC\x81"); // e + combining acute
    EXPECT_TRUE(*decomposed < *composed);
    EXPECT_FALSE(*composed < *decomposed);
}

TEST_F(EinnahmeTest, FieldsAreReadableByKeyName)
{
    auto e = Einnahme::make("Honorar", "8400 Erlöse 19% Gesch. ", 119.0f, 19.0f);
    e->setIsNonEU(true);
    EXPECT_EQ(std::get<std::string>(*e->valueForKey("kategorie")), "8400 Erlöse 19% Gesch. ");
    EXPECT_EQ(std::get<bool>(*e->valueForKey("isNonEU")), true);
    EXPECT_EQ(std::get<float>(*e->valueForKey("netto")), e->netto());
    for (auto key : kEinnahmeKeys)
        EXPECT_TRUE(e->valueForKey(key).has_value()) << key;
    EXPECT_FALSE(e->valueForKey("Name").has_value());
}

} // namespace
} // namespace saldo
