#include "entrylist/SelectionSummaryView.h"

#include "entrylist/SelectionSummary.h"
#include "evaluation/ReportTextView.h"

namespace saldo::gui {

SelectionSummaryView::SelectionSummaryView(QWidget* parent)
    : QPlainTextEdit(parent)
{
    setObjectName(QStringLiteral("selectedEntriesView"));
    ReportTextView::style(this);
}

void SelectionSummaryView::showSelection(const EinnahmeList& einnahmen, const std::vector<std::size_t>& rows)
{
    if (rows.empty()) {
        clear();
        return;
    }
    setPlainText(QString::fromStdString(SelectionSummary::text(einnahmen, rows)));
}

} // namespace saldo::gui
