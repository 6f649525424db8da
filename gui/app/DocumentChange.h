#pragma once

#include "model/Einnahme.h"

#include <cstddef>
#include <vector>

namespace saldo::gui {

// What one change of a document's entries did, as its panes hear of it: which
// entries it concerned and what the table's selection should be afterwards.
struct DocumentChange {
    enum class Kind {
        EntriesEdited,  // fields of `entries` changed in place; every row stays
        RowsInserted,   // `entries` came into the lists
        RowsRemoved,    // `entries` left the lists
        ListsReplaced,  // the shown list was rebuilt (search, import, reload)
    };
    enum class Selection {
        KeepEntries,  // the selected entries stay selected wherever they are now
        Rows,         // exactly `rows` of the shown list are selected
        KeepRows,     // the selected row numbers stay selected (an import)
    };

    Kind kind = Kind::EntriesEdited;
    EinnahmeList entries;
    Selection selection = Selection::KeepEntries;
    std::vector<std::size_t> rows;
    // Scroll the table so that the last selected row is visible.
    bool scroll = false;
};

}  // namespace saldo::gui
