#include "model/DecimalCommaText.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <random>

using saldo::DecimalCommaText;

TEST(DecimalCommaTextTest, FixedRoundsTheExactValueAndWritesAComma)
{
    EXPECT_EQ(DecimalCommaText::fixed(119.0f / (19.0f / 100.0f + 1.0f), 2), "100,00");
    EXPECT_EQ(DecimalCommaText::fixed(1234.5f, 2), "1234,50");
    EXPECT_EQ(DecimalCommaText::fixed(0.0f, 2), "0,00");
    // 2.675f is 2.67499995..., so it rounds down.
    EXPECT_EQ(DecimalCommaText::fixed(2.675f, 2), "2,67");
    EXPECT_EQ(DecimalCommaText::fixed(-3.5f, 1), "-3,5");
}

TEST(DecimalCommaTextTest, EditableShowsTwoDecimalsAndMoreOnlyWhenNeeded)
{
    EXPECT_EQ(DecimalCommaText::editable(12.5f), "12,50");
    EXPECT_EQ(DecimalCommaText::editable(19.0f), "19,00");
    EXPECT_EQ(DecimalCommaText::editable(1234.5f), "1234,50");
    EXPECT_EQ(DecimalCommaText::editable(12.345f), "12,345");
    EXPECT_EQ(DecimalCommaText::editable(0.1f), "0,10");
    EXPECT_EQ(DecimalCommaText::editable(16777216.0f), "16777216,00");
}

TEST(DecimalCommaTextTest, ParseAcceptsWhatAGermanUserTypes)
{
    struct Case {
        const char* text;
        float value;
    };
    for (const Case& c : {Case{"12,50", 12.5f}, Case{"12.50", 12.5f}, Case{" 7 ", 7.0f}, Case{"-5", -5.0f},
             Case{"+3,25", 3.25f}, Case{"1.234,50", 1234.5f}, Case{"1.234.567,5", 1234567.5f},
             Case{"1.234", 1.234f}, Case{",5", 0.5f}, Case{"5,", 5.0f}, Case{"1e3", 1000.0f}}) {
        SCOPED_TRACE(c.text);
        auto parsed = DecimalCommaText::parse(c.text);
        ASSERT_TRUE(parsed.has_value());
        EXPECT_EQ(*parsed, c.value);
    }
}

TEST(DecimalCommaTextTest, ParseRefusesWhatIsNotANumber)
{
    for (const char* text : {"", "  ", "abc", "12abc", "12 €", "1,2,3", "1,234.5", "1..234,5", ".234,5", "--5",
             "+-5", "-", "inf", "-inf", "nan", "1e50", "0x10"}) {
        SCOPED_TRACE(text);
        EXPECT_FALSE(DecimalCommaText::parse(text).has_value());
    }
}

// Showing a value in a form field and reading the field back must never change
// the value, or taking a form over would move amounts the user never touched.
TEST(DecimalCommaTextTest, EditableTextReadsBackAsTheSameFloat)
{
    std::mt19937 rng(20250101u);
    std::uniform_real_distribution<float> amounts(0.0f, 1.0e6f);
    std::uniform_int_distribution<std::uint32_t> bits(0, 0x7f7fffffu);  // every finite positive float
    for (int i = 0; i < 20000; ++i) {
        float value = 0.0f;
        if (i % 2 == 0) {
            value = amounts(rng);
        } else {
            const std::uint32_t b = bits(rng);
            std::memcpy(&value, &b, sizeof value);
        }
        const std::string text = DecimalCommaText::editable(value);
        auto back = DecimalCommaText::parse(text);
        ASSERT_TRUE(back.has_value()) << text;
        ASSERT_EQ(*back, value) << text;
    }
}
