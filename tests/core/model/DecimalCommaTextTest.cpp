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

// The one reader of typed amounts and rates: German and C notation, with
// "1.234" read as a German reads it, and nothing read that is not whole.
TEST(DecimalCommaTextTest, ParseReadsTheGermanAndTheCWayAndRefusesTheRest)
{
    struct Case {
        const char* text;
        float value;
    };
    for (const Case& c :
        { Case { "12,50", 12.5f }, Case { "12.50", 12.5f }, Case { "1234,56", 1234.56f }, Case { "1.234,56", 1234.56f },
            Case { "1234.56", 1234.56f }, Case { "12,5", 12.5f }, Case { " 7 ", 7.0f }, Case { "-5", -5.0f },
            Case { "+3,25", 3.25f }, Case { "1.234.567,5", 1234567.5f }, Case { "1.234", 1234.0f },
            Case { "12.345.678", 12345678.0f }, Case { "0.125", 0.125f }, Case { "1234.567", 1234.567f },
            Case { "1.2345", 1.2345f }, Case { ",5", 0.5f }, Case { "5,", 5.0f }, Case { "1e3", 1000.0f } }) {
        SCOPED_TRACE(c.text);
        auto parsed = DecimalCommaText::parse(c.text);
        ASSERT_TRUE(parsed.has_value());
        EXPECT_EQ(*parsed, c.value);
    }
    for (const char* text : { "", "  ", ",", "abc", "12abc", "12 €", "1,2,3", "1,234.5", "1..234,5", ".234,5",
             "12.34,5", "1.2345,6", "--5", "+-5", "-", "inf", "-inf", "nan", "1e39", "1e50", "0x10", "1,5e3" }) {
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
    std::uniform_int_distribution<std::uint32_t> bits(0, 0x7f7fffffu); // every finite positive float
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
