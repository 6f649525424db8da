#pragma once

#include "model/Einnahme.h"

#include <QUndoCommand>

#include <string>
#include <vector>

namespace saldo::gui {

class DocumentEntries;

// "Kategorie umbenennen": the entries that carry a renamed category of the
// list (split bookings included) take its new text. Undo gives each entry
// back the very text it had.
class RenameKategorieCommand : public QUndoCommand {
public:
    RenameKategorieCommand(DocumentEntries& entries, EinnahmeList renamed, std::string kategorie);

    void redo() override;
    void undo() override;

private:
    DocumentEntries& entries_;
    EinnahmeList renamed_;
    std::vector<std::string> before_;
    std::string after_;
};

} // namespace saldo::gui
