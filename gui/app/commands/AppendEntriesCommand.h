#pragma once

#include "model/Einnahme.h"

#include <QUndoCommand>

namespace saldo::gui {

class DocumentEntries;

// Appends entries made elsewhere (a statement's proposals taken over) to both
// lists under the given name ("Kontoauszug") and selects them; undo takes
// exactly these entries out again.
class AppendEntriesCommand : public QUndoCommand {
public:
    AppendEntriesCommand(DocumentEntries& entries, EinnahmeList added, const QString& text);

    void redo() override;
    void undo() override;

private:
    DocumentEntries& entries_;
    EinnahmeList added_;
};

}  // namespace saldo::gui
