#pragma once

#include "entrylist/EntryColumn.h"
#include "model/Einnahme.h"

#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace saldo {

// What one edit in a table cell does to its entry: the value the cell's
// control delivers is stored into the field of the column. Text cells deliver
// their text, check boxes their state, the kind pop-up its item index (0 is
// income, anything else an expense), the category pop-up the title of the
// chosen item (none when no item is chosen) and the date cell its instant.
// Amounts and rates are read by the one amount reader (DecimalCommaText);
// text it cannot read whole is refused. The gross amount must also be greater
// than 0, and in the entry table it belongs to an entry without split
// bookings (their sum decides it, in the split-booking editor). The rate takes
// any number. The flags go through the entry's setters, so switching one on
// switches the other off.
class CellEdit {
public:
    enum class Table {
        Entries,        // the document's entry table
        SplitBookings,  // the split-booking editor's table of one entry's children
    };

    enum class Outcome {
        Stored,         // the value went into the entry
        NothingStored,  // a column that stores nothing; the edit still counts
        Refused,        // an amount or rate was refused; the entry is unchanged
        Dropped,        // no usable value (no pop-up item chosen): the edit is ignored
    };

    struct Text {
        std::string text;
    };
    struct Check {
        bool on;
    };
    struct ItemIndex {
        int index;
    };
    struct ItemTitle {
        std::optional<std::string> title;
    };
    struct Date {
        ReferenceSeconds datum;
    };
    using Value = std::variant<Text, Check, ItemIndex, ItemTitle, Date>;

    static Outcome apply(Einnahme& entry, EntryColumn::Id column, const Value& value, Table table = Table::Entries);

    // The diagnostic line of a text-cell edit: the six items "Row: ", the row,
    // ", Column: ", the column's position in its table, " Inhalt: " and the
    // text, joined by one blank.
    static std::string diagnosticText(int row, int columnPosition, std::string_view text);
};

}  // namespace saldo
