#pragma once

#include "model/Einnahme.h"

#include <QUndoCommand>

#include <cstddef>

namespace saldo::gui {

class DocumentEntries;

// "Duplizieren": puts a copy of the entry at a shown row right after it in
// the shown list and at the end of the complete list, and selects it. Undo
// takes the copy out; redo puts the same copy after its source again (at the
// end of the shown list when the source is not shown).
class DuplicateEntryCommand : public QUndoCommand {
public:
    DuplicateEntryCommand(DocumentEntries& entries, std::size_t sourceRow);

    void redo() override;
    void undo() override;

    const EinnahmePtr& copy() const { return copy_; }

private:
    DocumentEntries& entries_;
    EinnahmePtr source_;
    EinnahmePtr copy_;
};

}  // namespace saldo::gui
