#include "printing/PrintColumns.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <utility>

namespace saldo {
namespace {

TEST(PrintColumns, RatesInTheirShortestForm)
{
    const float inf = std::numeric_limits<float>::infinity();
    const std::pair<float, const char*> rates[]
        = { { 19.0f, "19.0" }, { 0.0f, "0.0" }, { -0.0f, "-0.0" }, { 7.5f, "7.5" }, { 0.1f, "0.1" },
              { 0.0001f, "0.0001" }, { 16777215.0f, "16777215.0" }, { 16777216.0f, "1.6777216e+07" },
              { 1e-5f, "1.0e-05" }, { std::nanf(""), "nan" }, { inf, "inf" }, { -inf, "-inf" } };
    for (const auto& [value, text] : rates)
        EXPECT_EQ(PrintColumns::rate(value), text);
}

} // namespace
} // namespace saldo
