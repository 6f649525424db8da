#include "editors/RecurringSeries.h"
#include "editors/UtcDateText.h"

#include "core/evaluation/ReportFixtures.h"
#include "platform/Calendar.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <ctime>
#include <tuple>

namespace saldo {
namespace {

using namespace std::string_literals;

ReferenceSeconds utc(int year, int month, int day, int hour = 0, int minute = 0)
{
    std::tm tm {};
    tm.tm_year = year - 1900;
    tm.tm_mon = month - 1;
    tm.tm_mday = day;
    tm.tm_hour = hour;
    tm.tm_min = minute;
    return static_cast<double>(::timegm(&tm)) - kReferenceDateUnixSeconds;
}

// Each copy starts the chosen day in local time (so its hour stays 0 across a
// daylight-saving change), in the months of the template's year in local time.
TEST(RecurringSeriesTest, CopiesStartTheChosenDayOfEachMonthInLocalTime)
{
    struct Case {
        const char* tz;
        ReferenceSeconds templateDatum;
        int dayIndex;
        const char* title;
        int year, day;
        std::vector<int> months;
    };
    for (const Case& c :
        std::vector<Case> {
            { "Europe/Berlin", utc(2017, 8, 20, 10), 1, "2ter Monat", 2017, 15, { 1, 3, 5, 7, 9, 11 } },
            { "Europe/Berlin", utc(2017, 7, 1, 8, 30), 0, "Monat", 2017, 1, { 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12 } },
            { "America/New_York", utc(2017, 7, 1, 8, 30), 2, "3ter Monat", 2017, 1, { 1, 4, 7, 10 } },
            // 23:30 UTC on New Year's Eve is already 2018 in Berlin, still 2017 in New York.
            { "Europe/Berlin", utc(2017, 12, 31, 23, 30), 1, "3ter Monat", 2018, 15, { 1, 4, 7, 10 } },
            { "America/New_York", utc(2017, 12, 31, 23, 30), 1, "Monat", 2017, 15,
                { 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12 } },
            { "Europe/Berlin", utc(2017, 7, 1), 0, "monat", 2017, 1, {} },
            { "Europe/Berlin", utc(10000, 6, 1), 0, "Monat", 0, 1, {} },
            { "Europe/Berlin", std::nan(""), 0, "Monat", 0, 1, {} },
        }) {
        testing::ScopedTimeZone zone(c.tz);
        auto source = Einnahme::make("Miete", "", 500.0f, 19.0f);
        source->setDatum(c.templateDatum);
        source->setChildTransactions({ Einnahme::make("Teil", "", 1.0f, 0.0f) });
        const auto series = RecurringSeries::compute(*source, c.dayIndex, c.title);
        ASSERT_EQ(series.size(), c.months.size()) << c.tz << " " << c.title;
        for (std::size_t i = 0; i < series.size(); ++i) {
            const auto f = Calendar::localFields(series[i]->datum());
            EXPECT_EQ(std::tuple(f.year, f.month, f.day, f.hour, f.minute, f.second),
                std::tuple(c.year, c.months[i], c.day, 0, 0, 0))
                << c.tz << " copy " << i;
            EXPECT_EQ(std::tuple(series[i]->name(), series[i]->childTransactions()),
                std::tuple("Miete Serie"s, source->childTransactions()));
        }
    }
}

TEST(RecurringSeriesTest, DescriptionTextUnderAGermanLocale)
{
    const std::string before = std::setlocale(LC_ALL, nullptr);
    ASSERT_NE(std::setlocale(LC_ALL, "de_DE.UTF-8"), nullptr);
    auto entry = Einnahme::make("Beratung", "8400 Erloese ", 10.0f, 7.0f);
    entry->setDatum(utc(2017, 7, 1, 8, 30));
    const std::string head = "Name: \t\tBeratung\nArt: \t\t\tEinnahme\nKategorie: \t8400 Erloese \n"
                             "Brutto: \t\t\u20ac 10.00\nNetto: \t\t\u20ac 9.35\nSteuer: \t\t\u20ac 0.65\n"
                             "Steuersatz: \t 7.0\nDatum: \t\t2017-07-01 08:30:00 +0000\n";
    EXPECT_EQ(RecurringSeries::descriptionText(*entry), head);
    entry->setIsNonEU(true);
    EXPECT_EQ(RecurringSeries::descriptionText(*entry), head + "Non EU");
    auto both = entry->stored(); // as a file may hold it
    both.innergemeinschaftlicherErwerb = true;
    EXPECT_EQ(RecurringSeries::descriptionText(*Einnahme::restore(both)), head + "Innergemenschaftlicher Erwerb");
    for (const auto& [rate, line] : std::vector<std::pair<float, std::string>> {
             { 7.25f, "\t 7.2\n" }, { -5.0f, "\t -5.0\n" }, { std::nanf(""), "\t nan\n" } }) {
        entry->setSteuersatz(rate);
        EXPECT_NE(RecurringSeries::descriptionText(*entry).find(line), std::string::npos) << rate;
    }
    std::setlocale(LC_ALL, before.c_str());
}

TEST(UtcDateTextTest, WholeSecondsInUtcWithTheYearInFull)
{
    for (const auto& [datum, text] : std::vector<std::pair<ReferenceSeconds, std::string>> {
             { 520590600.0, "2017-07-01 08:30:00 +0000" },
             { 59.999, "2001-01-01 00:00:59 +0000" }, // fractions are dropped, never rounded up
             { -0.5, "2000-12-31 23:59:59 +0000" },
             { -26481600.0, "2000-02-29 12:00:00 +0000" },
             { -978307201.0, "1969-12-31 23:59:59 +0000" },
             { -63113904001.0, "0000-12-31 23:59:59 +0000" },
             { -63145526401.0, "-0001-12-31 23:59:59 +0000" },
             { 252423993600.0, "10000-01-01 00:00:00 +0000" },
             { std::nan(""), "" },
             { HUGE_VAL, "" },
             { -1e19, "" },
         })
        EXPECT_EQ(UtcDateText::format(datum), text) << datum;
}

} // namespace
} // namespace saldo
