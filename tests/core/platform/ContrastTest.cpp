#include "platform/Contrast.h"

#include <gtest/gtest.h>

namespace saldo {
namespace {

using Rgb = Contrast::Rgb;
constexpr Rgb kBlack { 0, 0, 0 };
constexpr Rgb kWhite { 255, 255, 255 };
constexpr Rgb kBlue { 0, 0, 255 };

TEST(ContrastTest, RatiosAndTheTextChosenForThem)
{
    struct Case {
        Rgb text;
        Rgb background;
        double ratio; // to two decimals
        Rgb legible;
    };
    for (const Case& c : {
             Case { kBlack, kWhite, 21.0, kBlack },
             Case { kWhite, kWhite, 1.0, kBlack },
             // The entry table's blue under black text: far from legible.
             Case { kBlack, kBlue, 2.44, kWhite },
             Case { kWhite, kBlue, 8.59, kWhite },
             // A common selection blue under white text falls short; black reads.
             Case { kWhite, Rgb { 0x30, 0x8c, 0xc6 }, 3.69, kBlack },
             // Grey #777 on white sits just under the line, #767676 just over it.
             Case { Rgb { 0x77, 0x77, 0x77 }, kWhite, 4.48, kBlack },
             Case { Rgb { 0x76, 0x76, 0x76 }, kWhite, 4.54, Rgb { 0x76, 0x76, 0x76 } },
         }) {
        EXPECT_NEAR(Contrast::ratio(c.text, c.background), c.ratio, 0.005);
        EXPECT_NEAR(Contrast::ratio(c.background, c.text), c.ratio, 0.005);
        EXPECT_EQ(Contrast::legibleText(c.text, c.background), c.legible);
        EXPECT_GE(Contrast::ratio(Contrast::legibleText(c.text, c.background), c.background), Contrast::kLegible);
    }
}

// Black or white always reaches the line, whatever the background.
TEST(ContrastTest, EveryGreyGetsLegibleText)
{
    for (int level = 0; level < 256; ++level) {
        const auto v = static_cast<std::uint8_t>(level);
        const Rgb grey { v, v, v };
        EXPECT_GE(Contrast::ratio(Contrast::legibleText(grey, grey), grey), Contrast::kLegible) << level;
    }
}

} // namespace
} // namespace saldo
