#include "printing/PrintColumns.h"

#include "platform/Calendar.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <utility>

namespace saldo {
namespace {

TEST(PrintColumns, RatesInTheirShortestFormAndDatesWithoutLeadingZeros)
{
    const float inf = std::numeric_limits<float>::infinity();
    const std::pair<float, const char*> rates[] = {
        { 19.0f, "19.0" },
        { 7.0f, "7.0" },
        { 0.0f, "0.0" },
        { -0.0f, "-0.0" },
        { 7.5f, "7.5" },
        { 0.1f, "0.1" }, // not 0.100000001
        { 0.0001f, "0.0001" },
        { 16777215.0f, "16777215.0" },
        { 16777216.0f, "1.6777216e+07" },
        { 1e-5f, "1.0e-05" },
        { 3.4028235e38f, "3.4028235e+38" },
        { std::nanf(""), "nan" },
        { inf, "inf" },
        { -inf, "-inf" },
    };
    for (const auto& [value, text] : rates)
        EXPECT_EQ(PrintColumns::rate(value), text);

    const std::pair<double, const char*> dates[] = {
        { *Calendar::localMidnight(2017, 7, 1), "1.7.2017" },
        { *Calendar::localMidnight(2017, 7, 1) - 1.0, "30.6.2017" },
        { *Calendar::localMidnight(1999, 12, 31), "31.12.1999" },
        { std::nan(""), "1.1.1900" },
    };
    for (const auto& [datum, text] : dates)
        EXPECT_EQ(PrintColumns::date(datum), text);
}

} // namespace
} // namespace saldo
