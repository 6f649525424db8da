#pragma once

#include "entrylist/DeletionRecord.h"
#include "model/Einnahme.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace saldo {

class SearchOutcome;

// The two working lists of one document window and the rules that place entries
// in them: `einnahmen`, the entries the table shows in table order (a subset
// while a search is active, reordered by sorting), and `backupEinnahmen`, the
// complete list that is saved. Both hold the same entry objects by reference;
// every add, duplicate, delete, undo and redo changes both, looking entries up
// by identity, never by field values. Row numbers are positions in `einnahmen`.
// The lists know nothing of tables, alerts or undo stacks: the window's
// controller reloads, selects, asks and registers with what these calls answer.
class EntryLists {
public:
    // Both lists start empty.
    EntryLists() = default;

    const EinnahmeList& einnahmen() const { return einnahmen_; }
    const EinnahmeList& backupEinnahmen() const { return backupEinnahmen_; }

    // Document hand-over: both lists hold the given entries, in that order.
    void setEntries(EinnahmeList entries);
    // Both lists as they were at another moment (an undone load).
    void setLists(EinnahmeList einnahmen, EinnahmeList backupEinnahmen);

    // The content of a new document: one entry "Neu", empty category, gross 0,
    // rate 19, in both lists.
    void setStartingEntry();

    // A new entry as the add command makes it: "Neu", empty category, gross 0, rate 0.
    static EinnahmePtr makeNewEntry();

    // Appends a new entry (makeNewEntry) to both lists, also while a search
    // hides other entries. Answers its row (the last one).
    std::size_t addEntry();

    // Appends an entry made elsewhere (a recurring series) to both lists;
    // answers its row.
    std::size_t appendEntry(EinnahmePtr entry);

    // Puts `replacement` in place of the entry at `row`: at that row of the
    // shown list and at the first place of the same object in the complete
    // list (the split-booking editor's write-back). Should the source be
    // missing from the complete list, the replacement is appended there so
    // that it is saved. False, and nothing changed, for a bad row.
    bool replaceEntry(std::size_t row, EinnahmePtr replacement);

    // Inserts a copy of the entry at `row` right after it in the shown list and
    // at the end of the complete list; answers row + 1. Nothing for a bad row.
    std::optional<std::size_t> duplicate(std::size_t row);

    // Puts a copy made earlier at `row` of the shown list (the end when the row
    // lies beyond it) and at the end of the complete list; answers its row.
    std::size_t insertCopy(std::size_t row, EinnahmePtr copy);

    // Puts `replacement` at the first place of `current` in each list where it
    // stands (an undone or redone write-back). Answers its row in the shown list.
    std::optional<std::size_t> replaceObject(const Einnahme* current, const EinnahmePtr& replacement);

    // Where an entry stood before it was taken out of the lists.
    struct Place {
        std::optional<std::size_t> shown;
        std::optional<std::size_t> complete;
    };
    // Takes the entry at `row` out of the shown list and its first place in the
    // complete list (a series replaces its template); nothing for a bad row.
    std::optional<Place> takeOut(std::size_t row);
    // Puts an entry back where it was taken out (clamped to the lists' ends);
    // answers its row in the shown list, if it is shown.
    std::optional<std::size_t> putBack(const Place& place, const EinnahmePtr& entry);

    // Removes exactly these objects from both lists wherever they stand.
    void removeEntries(const EinnahmeList& entries);

    // The row the duplicate command works on: the selected row, or the last row
    // when nothing is selected; nothing when the list is empty or the selected
    // row lies outside it.
    static std::optional<std::size_t> duplicateSourceRow(std::optional<std::size_t> selectedRow, std::size_t rowCount);

    // Removes the entries at the given rows (any order; duplicates and rows
    // outside the list are ignored), walking from the highest row to the lowest:
    // each leaves the shown list and, at the first place where that same object
    // stands, the complete list (which stays as it is when the object is not in
    // it). Answers the undo record, highest row first; an empty record when no
    // row was valid.
    DeletionRecord deleteRows(const std::vector<std::size_t>& rows);

    // Appends each entry of the record, in record order, to both lists and
    // answers, for each, its row in the shown list (its first place there), in
    // record order: the rows to select.
    std::vector<std::size_t> undoDeletion(const DeletionRecord& record);

    // Removes exactly the record's objects from both lists wherever they stand.
    // An entry no longer in a list is skipped for that list; other entries, even
    // ones with equal field values, stay.
    void redoDeletion(const DeletionRecord& record);

    // "Moechten Sie 1 Eintrag loeschen?", "Moechten Sie 3 Eintraege loeschen?".
    static std::string deleteConfirmationText(std::size_t count);

    // First row of the given object in the shown list.
    std::optional<std::size_t> rowOf(const Einnahme* entry) const;

    // Search: applies the outcome of a search text to the shown list. Answers
    // false when the table is to be left alone (a number or date that could not
    // be read), true when it is to be reloaded and "TableViewUpdated" posted.
    bool applySearch(const SearchOutcome& outcome);

    // Sorts the shown list by a column key (see SortOrdering); the complete list
    // keeps its order.
    void sortEinnahmen(std::optional<std::string_view> key, bool ascending);

private:
    EinnahmeList einnahmen_;
    EinnahmeList backupEinnahmen_;
};

}  // namespace saldo
