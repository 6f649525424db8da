#pragma once

#include "model/Einnahme.h"

#include <QUndoCommand>

namespace saldo::gui {

class DocumentEntries;

// One edit of an entry's fields (a table cell, the detail form): holds the
// entry and its field values before and after, and swaps them on undo and
// redo. What an edit changes is decided by the edit rules before the command
// is made; the command only puts values in place, so every editable field is
// covered without a command of its own.
class ChangeEntryCommand : public QUndoCommand {
public:
    ChangeEntryCommand(
        DocumentEntries& entries, EinnahmePtr entry, Einnahme::Stored before, Einnahme::Stored after,
        const QString& text = QStringLiteral("Eingabe"));

    void redo() override;
    void undo() override;

private:
    DocumentEntries& entries_;
    EinnahmePtr entry_;
    Einnahme::Stored before_;
    Einnahme::Stored after_;
};

}  // namespace saldo::gui
