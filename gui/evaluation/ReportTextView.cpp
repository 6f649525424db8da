#include "evaluation/ReportTextView.h"

#include <QFontDatabase>
#include <QFontMetricsF>
#include <QPlainTextEdit>
#include <QTextDocument>
#include <QTextOption>

namespace saldo::gui {
namespace {
constexpr int kFirstTabStops[] = { 14, 19 };
constexpr int kTabStopCharacters = 12;
}  // namespace

void ReportTextView::style(QPlainTextEdit* view)
{
    view->setReadOnly(true);
    view->setUndoRedoEnabled(false);
    view->setLineWrapMode(QPlainTextEdit::NoWrap);
    const QFont fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    view->setFont(fixed);
    const qreal character = QFontMetricsF(fixed).horizontalAdvance(QLatin1Char(' '));
    QTextOption option = view->document()->defaultTextOption();
    QList<QTextOption::Tab> tabs;
    for (int stop : kFirstTabStops)
        tabs.append(QTextOption::Tab(character * stop, QTextOption::LeftTab));
    option.setTabs(tabs);
    option.setTabStopDistance(character * kTabStopCharacters);
    option.setWrapMode(QTextOption::NoWrap);
    view->document()->setDefaultTextOption(option);
}

}  // namespace saldo::gui
