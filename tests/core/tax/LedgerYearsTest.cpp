#include "tax/LedgerYears.h"

#include "platform/Calendar.h"

#include <gtest/gtest.h>

#include <cmath>

namespace saldo::tax {
namespace {

ReferenceSeconds local(int year, int month, int day, int hour = 12, int minute = 0, int second = 0)
{
    return Calendar::fromLocalFields({ year, month, day, hour, minute, second });
}

EinnahmePtr dated(ReferenceSeconds datum, EinnahmeList children = {})
{
    auto e = Einnahme::make("e", "8400 Erlöse", 1.0f, 19.0f);
    e->setDatum(datum);
    e->setChildTransactions(std::move(children));
    return e;
}

TEST(LedgerYears, TheLocalYearsOfTheTopLevelEntriesAscending)
{
    // Years at their local bounds (in Berlin, 23:00 UTC on New Year's Eve is
    // already the new year), dates that name no year, split bookings' own
    // dates, which do not count, and years that come back out of order.
    const ReferenceSeconds newYear2025 = local(2025, 1, 1, 0, 0, 0);
    struct Case {
        const char* what;
        EinnahmeList entries;
        std::vector<int> years;
    } cases[] = {
        { "empty", {}, {} },
        { "bounds",
            { dated(newYear2025), dated(newYear2025 - 0.5), dated(newYear2025 + 365 * 86400.0 - 1.0),
                dated(newYear2025 + 365 * 86400.0) },
            { 2024, 2025, 2026 } },
        { "no year", { dated(NAN), dated(INFINITY), dated(-INFINITY), dated(1e300), dated(local(2023, 5, 5)) },
            { 2023 } },
        { "split bookings", { dated(local(2025, 3, 1), { dated(local(2019, 3, 1)), dated(NAN) }) }, { 2025 } },
        { "out of order",
            { dated(local(2025, 3, 1)), dated(local(2021, 3, 1)), dated(local(2025, 12, 31)), dated(local(2023, 7, 1)),
                dated(local(2021, 1, 1)), dated(local(2024, 2, 29)) },
            { 2021, 2023, 2024, 2025 } },
    };
    for (const Case& c : cases)
        EXPECT_EQ(LedgerYears::of(c.entries), c.years) << c.what;
}

} // namespace
} // namespace saldo::tax
