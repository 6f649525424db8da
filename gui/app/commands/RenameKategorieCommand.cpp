#include "app/commands/RenameKategorieCommand.h"

#include "app/DocumentEntries.h"

namespace saldo::gui {

RenameKategorieCommand::RenameKategorieCommand(DocumentEntries& entries, EinnahmeList renamed, std::string kategorie)
    : QUndoCommand(QStringLiteral("Kategorie umbenennen"))
    , entries_(entries)
    , renamed_(std::move(renamed))
    , after_(std::move(kategorie))
{
    before_.reserve(renamed_.size());
    for (const EinnahmePtr& entry : renamed_)
        before_.push_back(entry->kategorie());
}

void RenameKategorieCommand::redo()
{
    entries_.changeEntries(renamed_, [this](Einnahme& entry, std::size_t) { entry.setKategorie(after_); });
}

void RenameKategorieCommand::undo()
{
    entries_.changeEntries(renamed_, [this](Einnahme& entry, std::size_t i) { entry.setKategorie(before_[i]); });
}

} // namespace saldo::gui
