#include "core/support/TestSupport.h"
#include "entrylist/EntryLists.h"
#include "entrylist/SearchMenu.h"
#include "entrylist/SearchOutcome.h"
#include "entrylist/SearchText.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <tuple>

namespace saldo {
namespace {

using testing::Names;
using testing::namesOf;

// Local midnights in Europe/Berlin (the tests' TZ), as seconds since 2001-01-01
// UTC, computed with Python's zoneinfo.
constexpr ReferenceSeconds k2017_07_01 = 520552800.0;
constexpr ReferenceSeconds k2017_07_02 = 520639200.0;

TEST(SearchTextTest, NumbersAreReadWholeInCNotationAsSinglePrecision)
{
    // "0.1" is read as float, not as double rounded later: 0.1f is not 0.1.
    for (const auto& [text, value] : { std::pair { "12.5", 12.5f }, { "100", 100.0f }, { "-3", -3.0f }, { "+7", 7.0f },
             { "1e2", 100.0f }, { "2.5E-1", 0.25f }, { ".5", 0.5f }, { "0.1", 0.1f } })
        EXPECT_EQ(SearchText::number(text), value) << text;
    for (const char* refused :
        { "12,5", "", " 12", "12 ", "12abc", "+", ".", "+-1", "1e", "0x10", "inf", "nan", "1e50", "1e-50" })
        EXPECT_FALSE(SearchText::number(refused)) << refused;
}

TEST(SearchTextTest, DaysAreReadStrictlyAsTwoTwoFourDigits)
{
    const auto d = SearchText::day("01-07-2017");
    ASSERT_TRUE(d);
    EXPECT_EQ(std::tuple(d->day, d->month, d->year), std::tuple(1, 7, 2017));
    EXPECT_TRUE(SearchText::day("29-02-2024"));
    for (const char* refused : { "01.07.2017", "1-7-2017", "01-07-17", "01-07-2017 ", "29-02-2023", "29-02-1900",
             "00-01-2020", "01-13-2020", "31-04-2020", "01-07-0000", "0a-07-2017" })
        EXPECT_FALSE(SearchText::day(refused)) << refused;

    // Daylight-saving days last 23 and 25 hours; the year's last day ends at the next year.
    for (const auto& [text, start, end] : { std::tuple { "26-03-2017", 512175600.0, 512258400.0 },
             { "29-10-2017", 530920800.0, 531010800.0 }, { "31-12-2017", 536367600.0, 536454000.0 } }) {
        const auto day = SearchText::localDay(text);
        ASSERT_TRUE(day) << text;
        EXPECT_EQ(std::pair(day->start, day->end), std::pair(start, end)) << text;
    }
}

TEST(SearchMenuTest, EveryModeOfTheMenuSelectsACondition)
{
    EXPECT_EQ(SearchMenu::modes(),
        (Names { "Name", "Kategorie", "Art", "Non EU", "Innergemeinschaftlich",
            "Brutto >=", "Brutto =", "Brutto <=", "Netto >=", "Netto <=", "Steuersatz >=", "Steuersatz =",
            "Steuersatz <=", "Datum >=", "Datum =", "Datum <=" }));
    for (const auto& mode : SearchMenu::modes()) {
        const char* text = mode.rfind("Datum", 0) == 0 ? "01-07-2017" : "1";
        EXPECT_EQ(SearchOutcome::decide(mode, text).kind(), SearchOutcome::Kind::Filter) << mode;
    }
    // The submenu holders and unknown placeholders keep the shown list.
    for (const char* mode : { "Brutto", "Datum", "Netto =", "name", "" })
        EXPECT_EQ(SearchOutcome::decide(mode, "1").kind(), SearchOutcome::Kind::KeepShown) << mode;
}

class SearchFilterTest : public ::testing::Test {
protected:
    EinnahmePtr add(const char* name, float brutto, float steuersatz)
    {
        auto e = Einnahme::make(name, "", brutto, steuersatz);
        entries.push_back(e);
        return e;
    }
    Names search(const char* mode, const char* text)
    {
        lists.setEntries(entries);
        const SearchOutcome outcome = SearchOutcome::decide(mode, text);
        EXPECT_EQ(outcome.kind(), SearchOutcome::Kind::Filter) << mode << " " << text;
        lists.applySearch(outcome);
        return namesOf(lists.einnahmen());
    }

    EinnahmeList entries;
    EntryLists lists;
};

TEST_F(SearchFilterTest, TextsAreFoundByCaseAndDiacriticSensitiveSubstrings)
{
    add("Miete Januar", 1.0f, 19.0f)->setKategorie("4210 Miete");
    add("miete", 1.0f, 19.0f);
    add("B\u00fcro", 1.0f, 19.0f); // precomposed ü
    add("Bu\u0308cher", 1.0f, 19.0f); // u and a combining diaeresis
    add("Miete Februar", 1.0f, 19.0f)->setArt("Ausgabe");

    EXPECT_EQ(search("Name", "Miete"), (Names { "Miete Januar", "Miete Februar" }));
    EXPECT_EQ(search("Name", "B\u00fc"), (Names { "B\u00fcro", "Bu\u0308cher" }));
    EXPECT_EQ(search("Name", "Bu\u0308r"), (Names { "B\u00fcro" }));
    EXPECT_EQ(search("Name", "*"), (Names {}));
    EXPECT_EQ(search("Kategorie", "Miete"), (Names { "Miete Januar" }));
    EXPECT_EQ(search("Art", "Aus"), (Names { "Miete Februar" }));
}

TEST_F(SearchFilterTest, AmountsCompareWithTheSinglePrecisionFields)
{
    add("119@19", 119.0f, 19.0f);
    add("100@0", 100.0f, 0.0f);
    add("99.99@0", 99.99f, 0.0f);
    add("0.1@7", 0.1f, 7.0f);
    add("nan", std::numeric_limits<float>::quiet_NaN(), 19.0f);

    EXPECT_EQ(search("Brutto >=", "100"), (Names { "119@19", "100@0" }));
    EXPECT_EQ(search("Brutto =", "0.1"), (Names { "0.1@7" }));
    // 119 at 19 % nets 99.99999 in single precision.
    EXPECT_EQ(search("Netto >=", "100"), (Names { "100@0" }));
    EXPECT_EQ(search("Steuersatz <=", "7"), (Names { "100@0", "99.99@0", "0.1@7" }));

    // An unreadable number changes nothing and asks for no reload.
    const EinnahmeList shown = lists.einnahmen();
    EXPECT_FALSE(lists.applySearch(SearchOutcome::decide("Brutto >=", "100,50")));
    EXPECT_EQ(lists.einnahmen(), shown);
}

TEST_F(SearchFilterTest, FlagsAcceptOnlyOneAndZero)
{
    add("plain", 1.0f, 19.0f);
    add("nonEU", 1.0f, 19.0f)->setIsNonEU(true);
    add("innergem", 1.0f, 19.0f)->setInnergemeinschaftlicherErwerb(true);

    EXPECT_EQ(search("Non EU", "1"), (Names { "nonEU" }));
    EXPECT_EQ(search("Innergemeinschaftlich", "0"), (Names { "plain", "nonEU" }));
    EXPECT_EQ(search("Non EU", "01"), (Names { "plain", "nonEU", "innergem" }));
}

TEST_F(SearchFilterTest, DatesCompareWithLocalMidnights)
{
    add("30.6. 23:59:59", 1.0f, 19.0f)->setDatum(k2017_07_01 - 1.0);
    add("1.7. 00:00", 1.0f, 19.0f)->setDatum(k2017_07_01);
    add("1.7. 12:00", 1.0f, 19.0f)->setDatum(k2017_07_01 + 12 * 3600.0);
    add("1.7. 23:59:59.5", 1.0f, 19.0f)->setDatum(k2017_07_02 - 0.5);
    add("2.7. 00:00", 1.0f, 19.0f)->setDatum(k2017_07_02);

    EXPECT_EQ(
        search("Datum >=", "01-07-2017"), (Names { "1.7. 00:00", "1.7. 12:00", "1.7. 23:59:59.5", "2.7. 00:00" }));
    EXPECT_EQ(search("Datum <=", "01-07-2017"), (Names { "30.6. 23:59:59", "1.7. 00:00" }));
    EXPECT_EQ(search("Datum =", "01-07-2017"), (Names { "1.7. 00:00", "1.7. 12:00", "1.7. 23:59:59.5" }));
    EXPECT_EQ(SearchOutcome::decide("Datum =", "31-02-2017").kind(), SearchOutcome::Kind::NoChange);
}

TEST_F(SearchFilterTest, AnUnknownModeKeepsTheShownListAndTheNextFilterDropsASort)
{
    add("b", 2.0f, 19.0f);
    add("a", 1.0f, 19.0f);
    add("c", 3.0f, 19.0f);
    lists.setEntries(entries);
    lists.sortEinnahmen("name", true);
    ASSERT_EQ(namesOf(lists.einnahmen()), (Names { "a", "b", "c" }));
    EXPECT_TRUE(lists.applySearch(SearchOutcome::decide("Brutto", "2")));
    EXPECT_EQ(namesOf(lists.einnahmen()), (Names { "a", "b", "c" }));
    EXPECT_TRUE(lists.applySearch(SearchOutcome::decide("Brutto >=", "0")));
    EXPECT_EQ(namesOf(lists.einnahmen()), (Names { "b", "a", "c" }));
}

} // namespace
} // namespace saldo
