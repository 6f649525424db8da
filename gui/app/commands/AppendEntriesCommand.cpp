#include "app/commands/AppendEntriesCommand.h"

#include "app/DocumentEntries.h"

namespace saldo::gui {

AppendEntriesCommand::AppendEntriesCommand(DocumentEntries& entries, EinnahmeList added, const QString& text)
    : QUndoCommand(text)
    , entries_(entries)
    , added_(std::move(added))
{
}

void AppendEntriesCommand::redo()
{
    entries_.append(added_, true);
}

void AppendEntriesCommand::undo()
{
    entries_.remove(added_);
}

}  // namespace saldo::gui
