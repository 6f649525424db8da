#include "app/commands/DeleteEntriesCommand.h"

#include "app/DocumentEntries.h"

namespace saldo::gui {

DeleteEntriesCommand::DeleteEntriesCommand(DocumentEntries& entries, std::vector<std::size_t> rows)
    : QUndoCommand(QStringLiteral("Loeschen"))
    , entries_(entries)
    , rows_(std::move(rows))
{
}

void DeleteEntriesCommand::redo()
{
    if (!done_) {
        done_ = true;
        record_ = entries_.deleteRows(rows_);
        rows_.clear();
        setObsolete(record_.empty());
        return;
    }
    entries_.remove(record_.entries());
}

void DeleteEntriesCommand::undo()
{
    entries_.undoDeletion(record_);
}

}  // namespace saldo::gui
