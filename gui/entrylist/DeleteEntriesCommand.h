#pragma once

#include "entrylist/DeletionRecord.h"

#include <QPointer>
#include <QUndoCommand>

#include <cstddef>
#include <vector>

namespace saldo::gui {

// One deletion of entries on the document's undo stack, named "Loeschen". It
// holds the undo record: the deleted entry objects themselves. Pushing it runs
// its first redo, which deletes the given rows; undo appends the record's
// entries at the end of both lists, in record order, and selects them; every
// later redo removes exactly those objects again, wherever they stand. The
// work on the lists and the table is the target's; the command does nothing
// once the target's owner is gone.
class DeleteEntriesCommand : public QUndoCommand {
public:
    class Target {
    public:
        virtual DeletionRecord deleteRows(const std::vector<std::size_t>& rows) = 0;
        virtual void undoDeletion(const DeletionRecord& record) = 0;
        virtual void redoDeletion(const DeletionRecord& record) = 0;

    protected:
        ~Target() = default;
    };

    DeleteEntriesCommand(QObject* owner, Target& target, std::vector<std::size_t> rows);

    void redo() override;
    void undo() override;

    const DeletionRecord& record() const { return record_; }

private:
    QPointer<QObject> owner_;
    Target& target_;
    std::vector<std::size_t> rows_;
    DeletionRecord record_;
    bool done_ = false;
};

} // namespace saldo::gui
