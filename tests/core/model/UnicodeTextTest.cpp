#include "model/UnicodeText.h"
#include "entrylist/NfcText.h"

#include <gtest/gtest.h>

#include <random>

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

// The shortcut must never call a text NFC that the normaliser would change:
// random texts from pieces that compose, reorder, decompose or are not UTF-8.
TEST(NfcTextTest, TheShortcutAgreesWithTheNormaliser)
{
    const char* pieces[] = { "a", "A", "e", " ", "\u00e4", "\u00df", "\u00a0", "\u0080", "\u0308", "\u0301", "\u0323",
        "\u212b", "\u037e", "\u1100", "\u1161", "\u20ac", "\xc3", "\xc2", "\x80", "\xff", "\u00c5", "\u0041\u030a" };
    EXPECT_TRUE(NfcText::isCertainlyNfc("B\u00fcro Gr\u00fc\u00dfe \u00e9t\u00e9 \u00a0\u00bd"));
    EXPECT_FALSE(NfcText::isCertainlyNfc("Bu\u0308ro"));
    EXPECT_FALSE(NfcText::isCertainlyNfc("\xc3"));
    EXPECT_FALSE(NfcText::isCertainlyNfc("\xc3("));
    std::mt19937 rng(5);
    const std::size_t pieceCount = sizeof(pieces) / sizeof(pieces[0]);
    for (int i = 0; i < 20000; ++i) {
        std::string text;
        for (std::size_t n = rng() % 6; n > 0; --n)
            text += pieces[rng() % pieceCount];
        const std::string nfc = UnicodeText::nfc(text);
        EXPECT_EQ(NfcText::form(text), nfc);
        if (NfcText::isCertainlyNfc(text)) {
            EXPECT_EQ(nfc, text);
        }
    }
}

} // namespace
} // namespace saldo
