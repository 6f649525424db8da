#include "entrylist/NfcText.h"
#include "model/UnicodeText.h"

#include <gtest/gtest.h>

#include <random>

namespace saldo {
namespace {

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
