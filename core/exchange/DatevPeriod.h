#pragma once

#include "platform/Clock.h"

#include <compare>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace saldo {

// A day of the user's calendar, without a time.
struct LocalDay {
    int year = 0;
    int month = 1;
    int day = 1;

    auto operator<=>(const LocalDay&) const = default;

    // Reads "YYYY-MM-DD" (years 1000 to 9998, a day the month has); nothing for any other text.
    static std::optional<LocalDay> parse(std::string_view text);
    // The local day of an instant; nothing for one the calendar cannot name.
    static std::optional<LocalDay> of(ReferenceSeconds datum);
    static bool exists(int year, int month, int day);
    static int daysInMonth(int year, int month);

    LocalDay previous() const;
    // "YYYYMMDD", as the batch's header writes dates.
    std::string compact() const;
    // "DD.MM.YYYY", as a person reads it.
    std::string german() const;
};

// The days a booking batch covers. The tax adviser's system takes the
// bookings of one calendar year, inside one fiscal year, per batch, so a
// chosen span of days (from and to included) is cut at every 1 January and
// at every first day of the fiscal year's first month. With a fiscal year
// that begins in January that is one batch per calendar year.
struct DatevPeriod {
    LocalDay vom;
    LocalDay bis;
    // The first day of the fiscal year that holds vom and bis.
    LocalDay wirtschaftsjahrBeginn;

    // The batches of from..to, in order; empty when to lies before from or
    // the month is not 1 to 12.
    static std::vector<DatevPeriod> split(LocalDay from, LocalDay to, int fiscalYearFirstMonth);
};

} // namespace saldo
