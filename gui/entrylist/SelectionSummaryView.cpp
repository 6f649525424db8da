#include "entrylist/SelectionSummaryView.h"

#include "entrylist/SelectionSummary.h"

#include <QFontDatabase>
#include <QFontMetricsF>
#include <QTextDocument>
#include <QTextOption>

namespace saldo::gui {
namespace {
// The engine pads its labels to the amounts with one to three tabs; the same
// stops as the summary panel's (14 and 19 characters, then every 12) line the
// amounts up in one column.
constexpr int kFirstTabStops[] = { 14, 19 };
constexpr int kTabStopCharacters = 12;
} // namespace

SelectionSummaryView::SelectionSummaryView(QWidget* parent)
    : QPlainTextEdit(parent)
{
    setObjectName(QStringLiteral("selectedEntriesView"));
    setReadOnly(true);
    setUndoRedoEnabled(false);
    setLineWrapMode(QPlainTextEdit::NoWrap);
    const QFont fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    setFont(fixed);
    const qreal character = QFontMetricsF(fixed).horizontalAdvance(QLatin1Char(' '));
    QTextOption option = document()->defaultTextOption();
    QList<QTextOption::Tab> tabs;
    for (int stop : kFirstTabStops)
        tabs.append(QTextOption::Tab(character * stop, QTextOption::LeftTab));
    option.setTabs(tabs);
    option.setTabStopDistance(character * kTabStopCharacters);
    option.setWrapMode(QTextOption::NoWrap);
    document()->setDefaultTextOption(option);
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
