#include "model/DateText.h"
#include "platform/Calendar.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <tuple>

using saldo::Calendar;
using saldo::DateText;

namespace {

// What the field showed before the user typed: 24.11.2026 17:45:30.250.
const Calendar::LocalDateTime kShown { { 2026, 11, 24, 17, 45, 30 }, 250 };

// The whole local date and time read, seconds and milliseconds included.
std::string typed(const char* text)
{
    const auto local = DateText::parse(text, kShown);
    if (!local)
        return "refused";
    const auto two = [](int n) { return (n < 10 ? "0" : "") + std::to_string(n); };
    return DateText::format(*local) + ":" + two(local->fields.second) + "." + std::to_string(local->millisecond);
}

} // namespace

// What a German user types into a date field: the day first, in any usual
// short form, and the time of day kept from the shown date unless typed.
TEST(DateTextTest, ReadsTheDayFirstAndKeepsTheTimeOfDay)
{
    struct Case {
        const char* text;
        const char* read;
    };
    for (const Case& c : {
             Case { "15.03.2026", "15.03.2026 17:45:30.250" },
             Case { "15.3.26", "15.03.2026 17:45:30.250" },
             Case { "15032026", "15.03.2026 17:45:30.250" },
             Case { "31012026", "31.01.2026 17:45:30.250" },
             Case { "150326", "15.03.2026 17:45:30.250" },
             Case { "1503", "15.03.2026 17:45:30.250" },
             Case { "  1.7.  ", "01.07.2026 17:45:30.250" },
             Case { "5", "05.11.2026 17:45:30.250" },
             Case { "15,3,26", "15.03.2026 17:45:30.250" }, // the German number pad's comma
             Case { "29.2.2024", "29.02.2024 17:45:30.250" },
             Case { "1.1.99", "01.01.1999 17:45:30.250" }, // the two-digit year nearest the shown one
             Case { "1.1.76", "01.01.1976 17:45:30.250" },
             Case { "1.1.75", "01.01.2075 17:45:30.250" },
             Case { "15.03.2026 9:05", "15.03.2026 09:05:30.250" },
             Case { "15.03.2026 09:05:07", "15.03.2026 09:05:07.0" },
             Case { "", "refused" },
             Case { "31.02.2026", "refused" },
             Case { "29.2.2025", "refused" },
             Case { "15.13.2026", "refused" },
             Case { "0.3.2026", "refused" },
             Case { "15.3.202", "refused" },
             Case { "1532026", "refused" },
             Case { "15.3.2026.1", "refused" },
             Case { "15..2026", "refused" },
             Case { "15.3.ab", "refused" },
             Case { "15.03.2026 24:00", "refused" },
             Case { "15.03.2026 9:5", "refused" },
             Case { "15.03.2026 abends", "refused" },
             Case { "+15.3.26", "refused" },
             Case { "2026-03-15", "refused" },
         }) {
        EXPECT_EQ(typed(c.text), c.read) << '"' << c.text << '"';
    }
}

TEST(DateTextTest, ShowsDayMonthYearAndTimeWithLeadingZeros)
{
    EXPECT_EQ(DateText::format({ { 987, 3, 5, 7, 8, 9 }, 0 }), "05.03.0987 07:08");
    // What is shown reads back as itself, the seconds of the shown date kept.
    const auto again = DateText::parse(DateText::format(kShown), kShown);
    ASSERT_TRUE(again);
    EXPECT_EQ(std::tuple(DateText::format(*again), again->fields.second, again->millisecond),
        std::tuple(DateText::format(kShown), 30, 250));
}

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
