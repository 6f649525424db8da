#include "app/commands/ReplaceEntryCommand.h"

#include "app/DocumentEntries.h"

namespace saldo::gui {

ReplaceEntryCommand::ReplaceEntryCommand(DocumentEntries& entries, EinnahmePtr source, EinnahmePtr replacement)
    : QUndoCommand(QStringLiteral("Splitbuchung"))
    , entries_(entries)
    , source_(std::move(source))
    , replacement_(std::move(replacement))
{
}

void ReplaceEntryCommand::redo()
{
    entries_.replace(source_, replacement_);
}

void ReplaceEntryCommand::undo()
{
    entries_.replace(replacement_, source_);
}

}  // namespace saldo::gui
