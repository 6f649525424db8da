#pragma once

#include "model/Einnahme.h"

#include <optional>
#include <string>
#include <string_view>

namespace saldo {

// The rules of the recurring-entries sheet: the description of the template
// entry, the day and interval choices, and the series itself. A series is one
// copy of the template per chosen month of the template's year, from January:
// every month, every second or every third month, each dated at local midnight
// of the chosen day and named with " Serie" after the template's name.
class RecurringSeries {
public:
    // The interval pop-up's titles, in order: steps of 1, 2 and 3 months.
    static constexpr std::string_view kIntervalTitles[3] = { "Monat", "2ter Monat", "3ter Monat" };

    // The day of the month for the day pop-up's selected index: 15 for the
    // second item, 1 for any other index (none selected included).
    static int dayOfMonth(int dayItemIndex);

    // The step in months for the interval pop-up's selected title, compared
    // exactly; nothing for any other title or no selected item.
    static std::optional<int> stepInMonths(std::optional<std::string_view> intervalTitle);

    // The copies for the day item and interval title, in month order. Each is
    // made by the entry's copy rule, renamed to the template's name followed by
    // " Serie" and dated at the start of the day in local time. The year is the
    // template's in local time. Empty for an interval title outside the table
    // and for a template whose year the calendar cannot name (outside 1 to
    // 9999, or a date that is not a number).
    static EinnahmeList compute(
        const Einnahme& templateEntry, int dayItemIndex, std::optional<std::string_view> intervalTitle);

    // The sheet's description of the template: eight lines, each a label with
    // its tabs and a value, ended by "\n"; then, without a line break,
    // "Innergemenschaftlicher Erwerb" or "Non EU" when that flag is set (the
    // first when both are). Amounts read "€ %.2f", the rate " %.1f", with a
    // decimal point whatever the process locale; net and tax are computed in
    // single precision; the date is its UTC text (UtcDateText).
    static std::string descriptionText(const Einnahme& entry);
};

} // namespace saldo
