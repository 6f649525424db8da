#pragma once

#include "entrylist/EntryLists.h"

#include <QUndoCommand>

#include <cstddef>
#include <optional>

namespace saldo::gui {

class DocumentEntries;

// "Serienbuchung": appends a series of copies to both lists, selects them all
// and takes their template (the entry at a shown row) out of both lists.
// Undo takes the copies out and puts the template back where it stood.
class AppendSeriesCommand : public QUndoCommand {
public:
    AppendSeriesCommand(DocumentEntries& entries, std::size_t templateRow, EinnahmeList copies);

    void redo() override;
    void undo() override;

private:
    DocumentEntries& entries_;
    EinnahmePtr template_;
    EinnahmeList copies_;
    std::optional<EntryLists::Place> place_;
};

}  // namespace saldo::gui
