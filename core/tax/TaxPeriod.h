#pragma once

#include "platform/Clock.h"

#include <optional>
#include <string>
#include <string_view>

namespace saldo::tax {

// A span of whole local months of one year that a return covers: a month
// ("2025-03"), a quarter ("2025-Q1") or the year ("2025"). An item belongs to
// it when its top-level entry's date lies from local midnight of the first
// day to local midnight after the last day (the instant floored to whole
// seconds, as the report takes months).
class TaxPeriod {
public:
    // Reads "YYYY", "YYYY-MM" or "YYYY-QN" (four-digit years from 1000 to 9998);
    // nothing for any other text.
    static std::optional<TaxPeriod> parse(std::string_view text);
    // The months first..last (1..12) of a year; nothing when they make no span
    // or the calendar cannot name their bounds.
    static std::optional<TaxPeriod> months(int year, int firstMonth, int lastMonth);

    int year() const { return year_; }
    int firstMonth() const { return firstMonth_; }
    int lastMonth() const { return lastMonth_; }
    ReferenceSeconds start() const { return start_; }
    ReferenceSeconds end() const { return end_; }

    // False also for a date that is not a number.
    bool contains(ReferenceSeconds datum) const { return datum >= start_ && datum < end_; }

    // "2025-03", "2025-Q1" or "2025" for the spans parse() reads, else "2025-01..2025-05".
    std::string text() const;
    // The same as a German reader names it: "Maerz 2025", "1. Quartal 2025",
    // "Jahr 2025", "Januar bis Mai 2025".
    std::string germanName() const;
    // German month names without umlauts, "Januar" to "Dezember" (1..12).
    static const char* monthName(int month);

private:
    int year_ = 0;
    int firstMonth_ = 1;
    int lastMonth_ = 12;
    ReferenceSeconds start_ = 0;
    ReferenceSeconds end_ = 0;
};

} // namespace saldo::tax
