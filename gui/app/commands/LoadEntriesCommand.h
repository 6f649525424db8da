#pragma once

#include "model/Einnahme.h"

#include <QUndoCommand>

namespace saldo::gui {

class DocumentEntries;

// "Eintraege laden": a list read from a file takes the place of all entries,
// in both lists, and the selected row numbers stay selected. It keeps both
// lists as they were, so that undo brings back every entry, shown and
// hidden, in its place; redo loads the same entries again.
class LoadEntriesCommand : public QUndoCommand {
public:
    LoadEntriesCommand(DocumentEntries& entries, EinnahmeList loaded);

    void redo() override;
    void undo() override;

private:
    DocumentEntries& entries_;
    EinnahmeList loaded_;
    EinnahmeList einnahmenBefore_;
    EinnahmeList backupEinnahmenBefore_;
};

} // namespace saldo::gui
