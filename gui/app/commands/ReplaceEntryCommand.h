#pragma once

#include "model/Einnahme.h"

#include <QUndoCommand>

namespace saldo::gui {

class DocumentEntries;

// "Splitbuchung": the split-booking editor's write-back. Puts the edited
// working copy in the places of its source entry in both lists and selects
// it; undo puts the source back in the copy's places.
class ReplaceEntryCommand : public QUndoCommand {
public:
    ReplaceEntryCommand(DocumentEntries& entries, EinnahmePtr source, EinnahmePtr replacement);

    void redo() override;
    void undo() override;

private:
    DocumentEntries& entries_;
    EinnahmePtr source_;
    EinnahmePtr replacement_;
};

}  // namespace saldo::gui
