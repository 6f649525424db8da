#pragma once

#include "platform/Clock.h"

#include <vector>

namespace saldo {

// Answers "which local month is this instant in" for many instants at once,
// with the same result as Calendar::monthOf. It asks the calendar only for the
// starts of the months between the earliest and the latest instant it is built
// for, then finds each instant's month by binary search among those starts.
// Instants outside that span, or too far from the present era to be worth a
// table, are handed to Calendar::monthOf one by one.
class MonthTable {
public:
    // A table covering the local months from the one holding `earliest` to the
    // one holding `latest`. With no finite instant (earliest > latest) the table
    // is empty and every query goes to the calendar.
    MonthTable(ReferenceSeconds earliest, ReferenceSeconds latest);

    // Month 1..12 of `datum` in local time, the instant floored to whole seconds.
    int monthOf(ReferenceSeconds datum) const;

    // Number of month starts in the table (for tests and benchmarks).
    std::size_t size() const { return starts_.size(); }

private:
    void build(ReferenceSeconds earliest, ReferenceSeconds latest);

    // starts_[i] is the Unix time of the first second of a local month, as a
    // double; months_[i] is that month's number. The table ends with the start
    // of the month after the last covered month.
    std::vector<double> starts_;
    std::vector<unsigned char> months_;
};

} // namespace saldo
