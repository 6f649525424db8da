#include "platform/Calendar.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace saldo {
namespace {

// The stored instant as the local date and time that a date field shows and
// edits, and back (tests run in Berlin's time).
TEST(CalendarTest, TheLocalDateTimeOfAnInstantReadsBackToTheMillisecond)
{
    struct Case {
        double datum;
        Calendar::Fields fields;
        int millisecond;
    };
    for (const Case& c : {
             Case { 520598096.25, { 2017, 7, 1, 12, 34, 56 }, 250 }, // summer time
             Case { 0.0, { 2001, 1, 1, 1, 0, 0 }, 0 },
             Case { -0.5, { 2001, 1, 1, 0, 59, 59 }, 500 }, // before the reference date, floored
             Case { 764989200.999, { 2025, 3, 30, 3, 0, 0 }, 999 }, // right after the clocks went forward
         }) {
        SCOPED_TRACE(c.datum);
        const auto local = Calendar::localDateTime(c.datum);
        ASSERT_TRUE(local);
        const Calendar::Fields& f = local->fields;
        EXPECT_EQ(std::tuple(f.year, f.month, f.day, f.hour, f.minute, f.second),
            std::tuple(c.fields.year, c.fields.month, c.fields.day, c.fields.hour, c.fields.minute, c.fields.second));
        EXPECT_EQ(local->millisecond, c.millisecond);
        EXPECT_NEAR(Calendar::fromLocalDateTime(*local), c.datum, 0.0005);
    }
    for (double unnamed : { std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity(), 1e300 })
        EXPECT_FALSE(Calendar::localDateTime(unnamed)) << unnamed;
}

} // namespace
} // namespace saldo
