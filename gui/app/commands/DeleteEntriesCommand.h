#pragma once

#include "entrylist/DeletionRecord.h"

#include <QUndoCommand>

#include <cstddef>
#include <vector>

namespace saldo::gui {

class DocumentEntries;

// "Loeschen": deletes the entries at the given shown rows. It holds the undo
// record, the deleted entry objects themselves, highest row first. Undo
// appends the record's entries at the end of both lists, in record order, and
// selects them; every later redo removes exactly those objects again,
// wherever they stand. A deletion of nothing leaves no step.
class DeleteEntriesCommand : public QUndoCommand {
public:
    DeleteEntriesCommand(DocumentEntries& entries, std::vector<std::size_t> rows);

    void redo() override;
    void undo() override;

    const DeletionRecord& record() const { return record_; }

private:
    DocumentEntries& entries_;
    std::vector<std::size_t> rows_;
    DeletionRecord record_;
    bool done_ = false;
};

}  // namespace saldo::gui
