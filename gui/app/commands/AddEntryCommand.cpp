#include "app/commands/AddEntryCommand.h"

#include "app/DocumentEntries.h"

namespace saldo::gui {

AddEntryCommand::AddEntryCommand(DocumentEntries& entries)
    : QUndoCommand(QStringLiteral("Neuer Eintrag"))
    , entries_(entries)
    , entry_(EntryLists::makeNewEntry())
{
}

void AddEntryCommand::redo()
{
    entries_.append({entry_}, true);
}

void AddEntryCommand::undo()
{
    entries_.remove({entry_});
}

}  // namespace saldo::gui
