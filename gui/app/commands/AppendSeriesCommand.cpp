#include "app/commands/AppendSeriesCommand.h"

#include "app/DocumentEntries.h"

namespace saldo::gui {

AppendSeriesCommand::AppendSeriesCommand(DocumentEntries& entries, std::size_t templateRow, EinnahmeList copies)
    : QUndoCommand(QStringLiteral("Serienbuchung"))
    , entries_(entries)
    , copies_(std::move(copies))
{
    if (templateRow < entries.einnahmen().size())
        template_ = entries.einnahmen()[templateRow];
}

void AppendSeriesCommand::redo()
{
    if (!template_ || copies_.empty()) {
        setObsolete(true);
        return;
    }
    entries_.append(copies_, true);
    const auto row = entries_.lists().rowOf(template_.get());
    if (row)
        place_ = entries_.takeOut(*row);
}

void AppendSeriesCommand::undo()
{
    entries_.remove(copies_);
    if (place_)
        entries_.putBack(*place_, template_);
}

}  // namespace saldo::gui
