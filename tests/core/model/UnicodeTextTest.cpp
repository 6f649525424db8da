#include "model/UnicodeText.h"

#include <gtest/gtest.h>

namespace saldo {
namespace {

TEST(UnicodeTextTest, CanonicallyEquivalentTextsAreEqual)
{
    const std::string composed = "Erl\xC3\xB6se"; // ö precomposed
    const std::string decomposed = "Erlo\xCC\x88se"; // o + combining diaeresis
    EXPECT_TRUE(UnicodeText::equal(composed, decomposed));
    EXPECT_EQ(UnicodeText::compare(composed, decomposed), 0);
    EXPECT_EQ(UnicodeText::nfc(decomposed), composed);
    EXPECT_FALSE(UnicodeText::equal(composed, "Erlose"));
    EXPECT_FALSE(UnicodeText::equal("Einnahme", "einnahme"));
}

TEST(UnicodeTextTest, OrderIsByCodePointWithoutCaseFoldingOrLocale)
{
    EXPECT_LT(UnicodeText::compare("Zebra", "apfel"), 0);
    EXPECT_LT(UnicodeText::compare("Ausgabe", "Einnahme"), 0);
    EXPECT_LT(UnicodeText::compare("Miete", "Miete Kopie"), 0); // a proper prefix first
    EXPECT_GT(UnicodeText::compare("\xC3\x84pfel", "Zebra"), 0); // Ä after every ASCII letter
    EXPECT_LT(UnicodeText::compare("", "a"), 0);
    // Invalid UTF-8 does not throw and still orders consistently.
    EXPECT_NE(UnicodeText::compare("\xFF", "a"), 0);
    EXPECT_EQ(UnicodeText::compare("\xFF", "\xFF"), 0);
}

TEST(UnicodeTextTest, GraphemesCountUserPerceivedCharacters)
{
    EXPECT_EQ(UnicodeText::graphemeCount(""), 0u);
    EXPECT_EQ(UnicodeText::graphemeCount("Ab"), 2u);
    EXPECT_EQ(UnicodeText::graphemeCount("A\xC3\xB6"), 2u); // precomposed ö
    EXPECT_EQ(UnicodeText::graphemeCount("Ao\xCC\x88"), 2u); // o + combining mark
    EXPECT_EQ(UnicodeText::graphemeCount("\xF0\x9F\x91\x8D\xF0\x9F\x8F\xBD"), 1u); // thumbs up + skin tone
}

} // namespace
} // namespace saldo
