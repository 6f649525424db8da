#include "app/commands/ChangeEntryCommand.h"

#include "app/DocumentEntries.h"

namespace saldo::gui {

ChangeEntryCommand::ChangeEntryCommand(
    DocumentEntries& entries, EinnahmePtr entry, Einnahme::Stored before, Einnahme::Stored after, const QString& text)
    : QUndoCommand(text)
    , entries_(entries)
    , entry_(std::move(entry))
    , before_(std::move(before))
    , after_(std::move(after))
{
}

void ChangeEntryCommand::redo()
{
    entries_.setFields(entry_, after_);
}

void ChangeEntryCommand::undo()
{
    entries_.setFields(entry_, before_);
}

}  // namespace saldo::gui
