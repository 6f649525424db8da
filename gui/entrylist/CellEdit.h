#pragma once

#include "entrylist/EntryColumn.h"
#include "model/Einnahme.h"

#include <QString>
#include <QVariant>

namespace saldo::gui {

// What one edit in a table cell does to its entry: reads the value the cell's
// control delivers and stores it into the field of the column. Only the gross
// amount is checked: it must be greater than 0 and the entry must have no split
// bookings (those change the gross amount in their own editor); the VAT rate
// takes any number. The flags go through the entry's setters, so switching one
// on switches the other off. Text cells deliver their text (numbers are read
// from it by their leading number), check boxes their check state, the kind
// pop-up its item index, the category pop-up its item title (none: no item
// chosen) and the date cell its date and time.
class CellEdit {
public:
    enum class Outcome {
        Stored, // the value went into the entry
        NothingStored, // a column that stores nothing; the edit still counts
        Refused, // the gross amount was refused; the entry is unchanged
        Dropped, // no usable value (no pop-up item chosen): ignore the edit
    };

    static Outcome apply(Einnahme& entry, EntryColumn::Id column, const QVariant& value);

    // True for the columns whose cells are text fields.
    static bool isTextField(EntryColumn::Id column);

    // The diagnostic line of a text-field edit: the six items "Row: ", the row,
    // ", Column: ", the column index, " Inhalt: " and the text, joined by one blank.
    static std::string diagnosticText(int row, int column, const QString& text);

    // The kind pop-up's items; index 0 stands for income, index 1 for expense.
    static const QStringList& artTitles();
};

} // namespace saldo::gui
