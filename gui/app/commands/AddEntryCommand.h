#pragma once

#include "model/Einnahme.h"

#include <QUndoCommand>

namespace saldo::gui {

class DocumentEntries;

// "Neuer Eintrag": appends a new entry to both lists and selects it alone;
// undo takes that entry out again, redo appends it once more.
class AddEntryCommand : public QUndoCommand {
public:
    explicit AddEntryCommand(DocumentEntries& entries);

    void redo() override;
    void undo() override;

    const EinnahmePtr& entry() const { return entry_; }

private:
    DocumentEntries& entries_;
    EinnahmePtr entry_;
};

}  // namespace saldo::gui
