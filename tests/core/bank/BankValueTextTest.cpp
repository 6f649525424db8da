// Amounts become exact cents and dates exact days, or nothing: a text that is
// not quite an amount must never be read as another amount.
#include "bank/BankValueText.h"

#include <gtest/gtest.h>

namespace saldo {
namespace {

TEST(BankValueTextTest, AmountsInTheMarksOfTheBank)
{
    const std::tuple<const char*, char, char, std::optional<std::int64_t>> cases[] = {
        { "1.234,56", ',', '.', 123456 },
        { "-1.234.567,8", ',', '.', -123456780 },
        { " +12,5 ", ',', '.', 1250 },
        { "1234,56-", ',', '.', -123456 },
        { "\xE2\x88\x92" "3,00 \xE2\x82\xAC", ',', '.', -300 },
        { "12.50 EUR", '.', 0, 1250 },
        { "0,100", ',', '.', 10 },
        { "1234", ',', '.', 123400 },
        { ",5", ',', '.', 50 },
        // Never a guess: a point-decimal amount under a comma profile, groups
        // of the wrong size, a third decimal, a second sign, words.
        { "12.50", ',', '.', std::nullopt },
        { "1.2345,00", ',', '.', std::nullopt },
        { ".123,00", ',', '.', std::nullopt },
        { "0,125", ',', '.', std::nullopt },
        { "--5", ',', '.', std::nullopt },
        { "12,5,0", ',', '.', std::nullopt },
        { "", ',', '.', std::nullopt },
        { ",", ',', '.', std::nullopt },
        { "zwölf", ',', '.', std::nullopt },
        { "99999999999999999999", ',', '.', std::nullopt },
    };
    for (const auto& [text, decimal, thousands, cents] : cases) {
        SCOPED_TRACE(text);
        EXPECT_EQ(BankValueText::cents(text, decimal, thousands), cents);
    }
    EXPECT_EQ(BankValueText::centsText(-123405), "-1234.05");
}

TEST(BankValueTextTest, DatesInTheFormatOfTheBank)
{
    const std::tuple<const char*, const char*, std::optional<BankDate>> cases[] = {
        { "03.11.25", "dd.MM.yy", BankDate { 2025, 11, 3 } },
        { "3.1.2024", "d.M.yyyy", BankDate { 2024, 1, 3 } },
        { "29.02.2024", "d.M.yyyy", BankDate { 2024, 2, 29 } },
        { "2025-11-03", "yyyy-MM-dd", BankDate { 2025, 11, 3 } },
        { "3.11.25", "dd.MM.yy", std::nullopt },
        { "03.11.2025", "dd.MM.yy", std::nullopt },
        { "29.02.2025", "dd.MM.yyyy", std::nullopt },
        { "31.04.2025", "dd.MM.yyyy", std::nullopt },
        { "2025/11/03", "yyyy-MM-dd", std::nullopt },
        { "offen", "dd.MM.yyyy", std::nullopt },
    };
    for (const auto& [text, format, date] : cases) {
        SCOPED_TRACE(text);
        EXPECT_EQ(BankValueText::date(text, format), date);
    }
    EXPECT_TRUE(BankValueText::isDateFormat("d.M.yyyy"));
    EXPECT_FALSE(BankValueText::isDateFormat("dd.dd.yyyy"));
    EXPECT_FALSE(BankValueText::isDateFormat("dd.MM.yyy"));
}

} // namespace
} // namespace saldo
