#include "app/commands/LoadEntriesCommand.h"

#include "app/DocumentEntries.h"

namespace saldo::gui {

LoadEntriesCommand::LoadEntriesCommand(DocumentEntries& entries, EinnahmeList loaded)
    : QUndoCommand(QStringLiteral("Eintraege laden"))
    , entries_(entries)
    , loaded_(std::move(loaded))
    , einnahmenBefore_(entries.einnahmen())
    , backupEinnahmenBefore_(entries.backupEinnahmen())
{
}

void LoadEntriesCommand::redo()
{
    entries_.setEntries(loaded_, DocumentChange::Selection::KeepRows);
}

void LoadEntriesCommand::undo()
{
    entries_.setLists(einnahmenBefore_, backupEinnahmenBefore_);
}

} // namespace saldo::gui
