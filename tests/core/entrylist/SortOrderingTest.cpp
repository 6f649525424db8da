#include "entrylist/SortOrdering.h"
#include "core/support/TestSupport.h"
#include "entrylist/EntryLists.h"
#include "entrylist/SearchOutcome.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <random>

namespace saldo {
namespace {

using testing::Names;
using testing::namesOf;

Names sorted(EinnahmeList list, std::optional<std::string_view> key, bool ascending)
{
    SortOrdering::sortEinnahmen(list, key, ascending);
    return namesOf(list);
}

TEST(SortOrderingTest, TextsOrderByCodePointsWithCanonicalSpellingsEqual)
{
    EinnahmeList list;
    for (const char* name : { "apfel", "Zebra", "\u00c4pfel", "Birne", "A\u0308rger", "Ausgabe" })
        list.push_back(Einnahme::make(name, "", 1.0f, 19.0f));
    // Ä (U+00C4) follows every ASCII letter, also when written as A + U+0308.
    const Names ascending { "Ausgabe", "Birne", "Zebra", "apfel", "\u00c4pfel", "A\u0308rger" };
    EXPECT_EQ(sorted(list, "name", true), ascending);
    EXPECT_EQ(sorted(list, "name", false), Names(ascending.rbegin(), ascending.rend()));
}

TEST(SortOrderingTest, AmountsDatesAndFlagsWithNotANumberLastAscending)
{
    auto gross119 = Einnahme::make("119@19", "", 119.0f, 19.0f);
    auto gross105 = Einnahme::make("105@0", "", 105.0f, 0.0f);
    auto gross50 = Einnahme::make("50@7", "", 50.0f, 7.0f);
    gross119->setDatum(300.0);
    gross105->setDatum(-100.0);
    gross50->setDatum(200.0);
    gross105->setIsNonEU(true);
    gross50->setInnergemeinschaftlicherErwerb(true);
    const EinnahmeList list { gross105, gross119, gross50 };

    // By the derived net: 119 at 19 % is 100, below 105 at 0 %.
    EXPECT_EQ(sorted(list, "netto", true), (Names { "50@7", "119@19", "105@0" }));
    EXPECT_EQ(sorted(list, "datum", false), (Names { "119@19", "50@7", "105@0" }));
    EXPECT_EQ(sorted(list, "noneu", true).back(), "105@0");
    EXPECT_EQ(sorted(list, "innergem", false).front(), "50@7");

    // Not a number sorts last ascending and first descending.
    const float nan = std::numeric_limits<float>::quiet_NaN();
    EinnahmeList withNan;
    for (float brutto : { 3.0f, nan, 1.0f, nan, 2.0f })
        withNan.push_back(
            Einnahme::make(std::isnan(brutto) ? "nan" : std::to_string(static_cast<int>(brutto)), "", brutto, 19.0f));
    EXPECT_EQ(sorted(withNan, "brutto", true), (Names { "1", "2", "3", "nan", "nan" }));
    EXPECT_EQ(sorted(withNan, "brutto", false), (Names { "nan", "nan", "3", "2", "1" }));
}

TEST(SortOrderingTest, UnknownOrMissingKeyOrdersByArtThenBruttoInEitherDirection)
{
    EinnahmeList list;
    for (auto [art, brutto] :
        { std::pair { "Einnahme", 50.0f }, { "Ausgabe", 10.0f }, { "Einnahme", 5.0f }, { "Ausgabe", 3.0f } }) {
        auto e = Einnahme::make(std::string(art) + " " + std::to_string(static_cast<int>(brutto)), "", brutto, 19.0f);
        e->setArt(art);
        list.push_back(e);
    }
    const Names expected { "Ausgabe 3", "Ausgabe 10", "Einnahme 5", "Einnahme 50" };
    EXPECT_EQ(sorted(list, "leistungsart", true), expected);
    EXPECT_EQ(sorted(list, "Name", false), expected);
    EXPECT_EQ(sorted(list, std::nullopt, false), expected);
}

// Random lists with repeated values, NaN amounts and dates, and texts in both
// Unicode spellings: the fast sort must give an order the pairwise ordering
// accepts, and must only permute the list.
TEST(SortOrderingTest, SortedListsAgreeWithThePairwiseOrderingOnRandomData)
{
    std::mt19937 rng(77);
    using namespace std::string_literals;
    // Short texts, texts around the sixteen bytes the sort takes at a time
    // (one, two and three times), and texts with a zero byte, which must not
    // pass for a missing one.
    const std::string texts[] = { ""s, "a"s, "A"s, "Z"s, "ab"s, "ac"s, "\u00e4"s, "a\u0308"s, "\u00c4b"s, "A\u0308b"s,
        "Einnahme"s, "Ausgabe"s, "ab\0"s, "0123456789abcdef"s, "0123456789abcdef\0"s, "0123456789abcdefg"s,
        "0123456789abcde\u00e4x"s, "0123456789abcdea\u0308x"s, "Miete B\u00fcro Januar 2024 A"s,
        "Miete B\u00fcro Januar 2024 B"s, "Miete B\u00fcro Januar 2024"s,
        "Beratung Sch\u00e4fer GmbH, Rechnung vom 3. Mai"s, "Beratung Sch\u00e4fer GmbH, Rechnung vom 3. M\u00e4rz"s };
    const std::size_t textCount = sizeof(texts) / sizeof(texts[0]);
    const float amounts[] = { 0.0f, 1.0f, 1.0f, 119.0f, 105.0f, std::numeric_limits<float>::quiet_NaN(), -0.0f, 1e30f };
    std::vector<std::optional<std::string_view>> keys(
        SortOrdering::kColumnKeys.begin(), SortOrdering::kColumnKeys.end());
    keys.push_back(std::nullopt);
    keys.push_back("unknown");
    // Short lists are sorted by comparisons; from a few hundred entries on by
    // radix passes, and from 65,536 on by two threads.
    for (int round = 0; round < 42; ++round) {
        EinnahmeList list;
        const int count = round < 40 ? static_cast<int>(rng() % 200) : round == 40 ? 1000 : 70'000;
        for (int i = 0; i < count; ++i) {
            auto e = Einnahme::make(
                texts[rng() % textCount], texts[rng() % textCount], amounts[rng() % 8], amounts[rng() % 8]);
            e->setArt(texts[rng() % textCount]);
            e->setRechnungsnummer(texts[rng() % textCount]);
            e->setSteuernummer(texts[rng() % textCount]);
            e->setDatum(rng() % 5 == 0 ? std::numeric_limits<double>::quiet_NaN() : static_cast<double>(rng() % 7));
            e->setIsNonEU(rng() % 2 == 0);
            e->setInnergemeinschaftlicherErwerb(rng() % 3 == 0);
            list.push_back(e);
        }
        EinnahmeList listByAddress = list;
        std::sort(listByAddress.begin(), listByAddress.end());
        for (const auto& key : keys) {
            for (bool ascending : { true, false }) {
                EinnahmeList result = list;
                SortOrdering::sortEinnahmen(result, key, ascending);
                const auto before = [&](const EinnahmePtr& a, const EinnahmePtr& b) {
                    return SortOrdering::before(*a, *b, key, ascending);
                };
                EXPECT_TRUE(std::is_sorted(result.begin(), result.end(), before))
                    << (key ? *key : "(none)") << " ascending " << ascending;
                EinnahmeList resultByAddress = result;
                std::sort(resultByAddress.begin(), resultByAddress.end());
                EXPECT_EQ(resultByAddress, listByAddress);
            }
        }
    }
}

// Texts with a shared beginning of a mebibyte were told apart sixteen bytes
// per call, one call deeper each time: a deep enough beginning ran out of stack.
TEST(SortOrderingTest, TextsWithALongSharedBeginningSortWithoutACallPerSixteenBytes)
{
    const std::string beginning(1 << 20, 'a');
    for (int count : { 3, 300 }) {
        EinnahmeList list;
        Names expected;
        for (int i = count; i-- > 0;) {
            const std::string name = beginning + std::to_string(1000 + i);
            list.push_back(Einnahme::make(name, "", 1.0f, 19.0f));
            expected.insert(expected.begin(), name);
        }
        EXPECT_EQ(sorted(list, "name", true), expected) << count;
    }
}

TEST(SortOrderingTest, SortingUnderAFilterLeavesTheCompleteListInItsOrder)
{
    EinnahmeList entries;
    for (const char* name : { "Miete c", "Strom", "Miete a", "Porto", "Miete b" })
        entries.push_back(Einnahme::make(name, "", 1.0f, 19.0f));
    EntryLists lists;
    lists.setEntries(entries);
    lists.applySearch(SearchOutcome::decide("Name", "Miete"));
    lists.sortEinnahmen("name", true);
    EXPECT_EQ(namesOf(lists.einnahmen()), (Names { "Miete a", "Miete b", "Miete c" }));
    EXPECT_EQ(lists.backupEinnahmen(), entries);
    lists.applySearch(SearchOutcome::decide("Name", ""));
    EXPECT_EQ(lists.einnahmen(), entries);
}

} // namespace
} // namespace saldo
