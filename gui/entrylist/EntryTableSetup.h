#pragma once

#include "entrylist/EntryColumn.h"

class QTableView;

namespace saldo::gui {

// How every table of entries (the entry table and the split-booking editor's
// table) shows and edits its cells: text and number cells in a line edit, the
// flags as check boxes, kind and category as pop-ups, the date in a date field,
// each by the column a position shows; a pop-up or date cell opens with one
// click, as the control it stands for. Rows are 20 pixels high without row
// headers, columns start at their usual widths, whole rows are selected, a
// cell is edited by typing or by a click on the selected row, and the table
// scrolls sideways by pixels.
class EntryTableSetup {
public:
    using ColumnAt = EntryColumn::Id (*)(int position);

    static void apply(QTableView* table, int columnCount, ColumnAt columnAt);
};

} // namespace saldo::gui
