#pragma once

#include "app/DocumentChange.h"
#include "entrylist/EntryLists.h"
#include "model/SnapshotGate.h"
#include "platform/UserDefaults.h"

#include <QObject>

#include <functional>
#include <optional>
#include <string_view>
#include <vector>

namespace saldo::gui {

class Document;
class EntryTableModel;

// The entries of one document: its two lists (`einnahmen`, shown in table
// order, and `backupEinnahmen`, the complete list that is saved) and the
// entry table's model over them. Every change of the lists goes through one
// of the calls below, which keep the model's rows in step and tell the panes:
// aboutToChange() before the lists are touched, changed() afterwards, with
// what was done and what the selection should be. The document's commands
// are built from these calls; nothing else changes the lists.
class DocumentEntries : public QObject {
    Q_OBJECT
public:
    DocumentEntries(Document& document, const UserDefaults& defaults, QObject* parent = nullptr);
    ~DocumentEntries() override;

    const EntryLists& lists() const { return lists_; }
    const EinnahmeList& einnahmen() const { return lists_.einnahmen(); }
    const EinnahmeList& backupEinnahmen() const { return lists_.backupEinnahmen(); }
    EntryTableModel* model() const { return model_; }

    // Both lists become `entries`.
    void setEntries(EinnahmeList entries, DocumentChange::Selection selection = DocumentChange::Selection::KeepEntries);
    // Both lists become what they were at another moment; the selected rows stay.
    void setLists(EinnahmeList einnahmen, EinnahmeList backupEinnahmen);
    // The shown list becomes what a search text selects (nothing for NoChange).
    void applySearch(const SearchOutcome& outcome);
    // Reorders the shown list; the model, which asks for it, keeps its rows in step.
    void sortEinnahmen(std::optional<std::string_view> key, bool ascending);

    // Appends entries to both lists; `select` selects exactly them.
    void append(const EinnahmeList& entries, bool select);
    // Puts a copy at `row` of the shown list and at the end of the complete
    // list and selects it; answers its row.
    std::size_t insertCopy(std::size_t row, const EinnahmePtr& copy);
    // Removes exactly these objects from both lists wherever they stand.
    void remove(const EinnahmeList& entries);
    // Deletes the entries at the given rows of the shown list; answers the undo record.
    DeletionRecord deleteRows(const std::vector<std::size_t>& rows);
    // Appends a deletion's entries to both lists again and selects them.
    void undoDeletion(const DeletionRecord& record);
    // Gives the entry these field values.
    void setFields(const EinnahmePtr& entry, Einnahme::Stored fields);
    // Changes many entries at once, split bookings among them: `change` gets
    // each entry and its place in `entries`; every row is shown anew.
    void changeEntries(
        const EinnahmeList& entries, const std::function<void(Einnahme&, std::size_t)>& change);
    // Changes an entry of the document (a split booking edited in its editor
    // included) in place, past the gates of the workers that may be reading
    // it. Every change of an entry's values goes through here.
    void changeEntry(Einnahme& entry, const std::function<void(Einnahme&)>& change);

    // The gates of the two workers that read entries while the window goes
    // on: the automatic save and the summary panel's evaluation.
    SnapshotGate& saveGate() { return saveGate_; }
    SnapshotGate& summaryGate() { return summaryGate_; }
    // Further workers (the tax windows' evaluations) bring gates of their own:
    // every change of an entry goes past them too while they are added.
    void addReaderGate(SnapshotGate& gate);
    void removeReaderGate(SnapshotGate& gate);
    // Puts `replacement` in the places of `current` and selects it.
    void replace(const EinnahmePtr& current, const EinnahmePtr& replacement);
    // Takes the entry at a shown row out of both lists, and puts one back.
    std::optional<EntryLists::Place> takeOut(std::size_t row);
    void putBack(const EntryLists::Place& place, const EinnahmePtr& entry);

signals:
    void aboutToChange();
    void changed(const saldo::gui::DocumentChange& change);

private:
    // Runs `change` between aboutToChange() and changed(`what`).
    void run(const DocumentChange& what, const std::function<void()>& change);
    // Removes the shown rows (ascending) block by block, each block through
    // `removeBlock(first, count)`, so that the table keeps its scroll position
    // and selection; many scattered blocks go at once through `removeAll`.
    void removeShownRows(const std::vector<std::size_t>& rows,
        const std::function<void(std::size_t first, std::size_t count)>& removeBlock,
        const std::function<void()>& removeAll);

    EntryLists lists_;
    EntryTableModel* model_ = nullptr;
    SnapshotGate saveGate_;
    SnapshotGate summaryGate_;
    std::vector<SnapshotGate*> readerGates_;
};

}  // namespace saldo::gui
