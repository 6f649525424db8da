#include "entrylist/DeleteEntriesCommand.h"

namespace saldo::gui {

DeleteEntriesCommand::DeleteEntriesCommand(QObject* owner, Target& target, std::vector<std::size_t> rows)
    : QUndoCommand(QStringLiteral("Loeschen"))
    , owner_(owner)
    , target_(target)
    , rows_(std::move(rows))
{
}

void DeleteEntriesCommand::redo()
{
    if (!owner_)
        return;
    if (!done_) {
        done_ = true;
        record_ = target_.deleteRows(rows_);
        rows_.clear();
        // Nothing deleted: the stack drops the step again.
        setObsolete(record_.empty());
        return;
    }
    target_.redoDeletion(record_);
}

void DeleteEntriesCommand::undo()
{
    if (!owner_ || record_.empty())
        return;
    target_.undoDeletion(record_);
}

} // namespace saldo::gui
