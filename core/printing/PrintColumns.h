#pragma once

#include "model/Einnahme.h"

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace saldo {

// The ten columns of the printout: their titles, their x positions in points
// from the left edge of the paper, and the texts an entry shows in them. Every
// number is written the same way under any process locale (decimal point,
// no grouping); net and tax are computed in single precision in the entry's
// own order.
class PrintColumns {
public:
    static constexpr std::size_t kCount = 10;

    struct Column {
        std::string_view title;
        double x;
    };
    static constexpr std::array<Column, kCount> kColumns { {
        { "Art", 0.0 },
        { "Name", 50.0 },
        { "Innerg.", 120.0 },
        { "Non EU", 155.0 },
        { "Brutto", 195.0 },
        { "Netto", 235.0 },
        { "Steuersatz", 270.0 },
        { "St.betrag", 320.0 },
        { "Datum", 365.0 },
        { "Rg-Nr", 405.0 },
    } };

    // The room a column's texts have: up to a small gap before the next
    // column, the last one up to the paper's right edge. A longer text is cut
    // there rather than running over its neighbour.
    static constexpr double kColumnGap = 2.0;
    static double width(std::size_t column, double paperWidth);

    // "✔︎" (heavy check mark, then the text-style selector) or "✕".
    static constexpr std::string_view kFlagSet = "\u2714\uFE0E";
    static constexpr std::string_view kFlagClear = "\u2715";

    // The entry's texts in column order. A split booking's kind is written
    // with "> " before it.
    static std::array<std::string, kCount> values(const Einnahme& entry, bool splitBooking);

    static std::string_view flag(bool set) { return set ? kFlagSet : kFlagClear; }

    // Two decimals of the value widened to double ("119.00", "nan", "-inf").
    static std::string amount(float value);

    // The rate in its shortest form: the fewest decimal digits that read back
    // as the same single-precision value. Zero and magnitudes from 0.0001 up
    // to below 2^24 (where a float still holds every whole number) are written
    // in plain notation with at least one fraction digit ("19.0", "7.5",
    // "0.0", "-0.0", "0.0001"); other finite values in scientific notation
    // with at least one fraction digit and a two-digit exponent ("1.0e-05",
    // "1.6777216e+07"), so that no digits are made up. Not-a-number reads
    // "nan", the infinities "inf" and "-inf".
    static std::string rate(float value);

    // Day, month and year of the instant in the local calendar, joined by
    // points, without leading zeros ("1.7.2017"). An instant the calendar
    // cannot name (not finite, or too far away) reads as its 1 January 1900.
    static std::string date(ReferenceSeconds datum);
};

} // namespace saldo
