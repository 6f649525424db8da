#include "evaluation/MonthTable.h"
#include "core/evaluation/ReportFixtures.h"
#include "platform/Calendar.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

namespace saldo {
namespace {

// The calendar asked one instant at a time is the reference; the table must
// give the same month for every instant, right at every month start included.
void expectSameMonthsAsTheCalendar(const char* tz, double from, double to, double step)
{
    testing::ScopedTimeZone zone(tz);
    const MonthTable table(from, to);
    ASSERT_GT(table.size(), 1u) << tz;
    std::vector<double> probes;
    for (double t = from; t <= to; t += step)
        probes.push_back(t);
    // The exact month starts between the probes, found by bisecting whole seconds.
    const std::size_t evenlySpaced = probes.size();
    for (std::size_t i = 1; i < evenlySpaced; ++i) {
        double lo = std::floor(probes[i - 1]), hi = std::floor(probes[i]);
        if (Calendar::monthOf(lo) == Calendar::monthOf(hi))
            continue;
        while (hi - lo > 1.0) {
            const double mid = std::floor((lo + hi) / 2);
            (Calendar::monthOf(mid) == Calendar::monthOf(lo) ? lo : hi) = mid;
        }
        for (double d : { -1.0, -0.5, -1e-6, 0.0, 1e-6, 0.5, 1.0 })
            probes.push_back(hi + d);
    }
    for (double t : probes)
        EXPECT_EQ(table.monthOf(t), Calendar::monthOf(t)) << tz << " at " << t;
}

TEST(MonthTable, AgreesWithTheCalendarInZonesWithAwkwardMonthStarts)
{
    const double from = -1.0e8 - 0.75; // 1997, before the reference date
    const double to = 6.0e8; // 2020
    // Summer time, no summer time, clocks that skipped midnight of 1 October
    // 2017, clocks that repeated the first hour of 1 November 2015, a
    // half-hour shift and a quarter-hour offset.
    for (const char* tz :
        { "Europe/Berlin", "UTC", "America/Asuncion", "America/Havana", "Australia/Lord_Howe", "Asia/Kathmandu" })
        expectSameMonthsAsTheCalendar(tz, from, to, 3 * 3600.0 + 0.25);
}

TEST(MonthTable, InstantsOutsideTheTableAskTheCalendar)
{
    testing::ScopedTimeZone zone("Europe/Berlin");
    const MonthTable table(7.0e8, 7.1e8);
    for (double t : { -3.0e9 - 0.5, 6.99e8, 7.2e8, 1.0e12, std::numeric_limits<double>::quiet_NaN(),
             std::numeric_limits<double>::infinity() })
        EXPECT_EQ(table.monthOf(t), Calendar::monthOf(t)) << t;

    const MonthTable empty(std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity());
    EXPECT_EQ(empty.size(), 0u);
    EXPECT_EQ(empty.monthOf(7.05e8), Calendar::monthOf(7.05e8));
}

} // namespace
} // namespace saldo
