#include "app/commands/DuplicateEntryCommand.h"

#include "app/DocumentEntries.h"

namespace saldo::gui {

DuplicateEntryCommand::DuplicateEntryCommand(DocumentEntries& entries, std::size_t sourceRow)
    : QUndoCommand(QStringLiteral("Duplizieren"))
    , entries_(entries)
{
    if (sourceRow < entries.einnahmen().size()) {
        source_ = entries.einnahmen()[sourceRow];
        copy_ = source_->copy();
    }
}

void DuplicateEntryCommand::redo()
{
    if (!copy_) {
        setObsolete(true);
        return;
    }
    const auto sourceRow = entries_.lists().rowOf(source_.get());
    entries_.insertCopy(sourceRow ? *sourceRow + 1 : entries_.einnahmen().size(), copy_);
}

void DuplicateEntryCommand::undo()
{
    if (copy_)
        entries_.remove({copy_});
}

}  // namespace saldo::gui
