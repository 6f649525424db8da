#include "evaluation/AmountFormat.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace saldo {
namespace {

// Expected texts are those of C's "%.2f" in the C locale, as Python's "%.2f"
// writes them for the same doubles. (The golden reports check the locale.)
TEST(AmountFormat, WritesTheWidenedFloatWithTwoDecimals)
{
    struct Case {
        float value;
        const char* text;
    };
    const float inf = std::numeric_limits<float>::infinity();
    const float nan = std::numeric_limits<float>::quiet_NaN();
    for (const Case& c : {
             Case { 142.8f, "\u20ac 142.80" },
             Case { 1234.5f, "\u20ac 1234.50" },
             Case { -3.1f, "\u20ac -3.10" },
             Case { 0.0f, "\u20ac 0.00" },
             Case { -0.0f, "\u20ac -0.00" },
             Case { 0.125f, "\u20ac 0.12" }, // an exact tie rounds to even
             Case { 0.375f, "\u20ac 0.38" },
             Case { 2.675f, "\u20ac 2.67" }, // the float lies below 2.675
             Case { 0.025f, "\u20ac 0.03" }, // the float lies above 0.025
             Case { 1.005f, "\u20ac 1.00" }, // and this one below 1.005
             Case { 99.99999237060547f, "\u20ac 100.00" },
             Case { 16777217.0f, "\u20ac 16777216.00" },
             Case { 3.4028235e38f, "\u20ac 340282346638528859811704183484516925440.00" },
             Case { inf, "\u20ac inf" },
             Case { -inf, "\u20ac -inf" },
             Case { nan, "\u20ac nan" },
             Case { -nan, "\u20ac nan" },
         })
        EXPECT_EQ(AmountFormat::format(c.value), c.text) << c.value;
}

} // namespace
} // namespace saldo
