#include "evaluation/SummaryViewController.h"

#include "entrylist/ViewController.h"
#include "evaluation/CalcEngine.h"

#include <QFontDatabase>
#include <QFontMetricsF>
#include <QPlainTextEdit>
#include <QSplitter>
#include <QTextDocument>
#include <QTextOption>
#include <QVBoxLayout>

namespace saldo::gui {

namespace {
// The report pads its labels to the amounts with one to three tabs, written
// for a proportional font, so no even tab width lines up every block. Stops at
// 14 and 19 characters and then every 12 put the amounts of the totals and of
// nearly every VAT-class and flag block in one column each.
constexpr int kFirstTabStops[] = { 14, 19 };
constexpr int kTabStopCharacters = 12;
}  // namespace

SummaryViewController::SummaryViewController(QWidget* parent)
    : QWidget(parent)
    , calcEngine_(sharedCalcEngine())
{
    resultTextView_ = new QPlainTextEdit(this);
    resultTextView_->setObjectName(QStringLiteral("resultTextView"));
    resultTextView_->setReadOnly(true);
    resultTextView_->setLineWrapMode(QPlainTextEdit::NoWrap);
    resultTextView_->setUndoRedoEnabled(false);
    const QFont fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    resultTextView_->setFont(fixed);
    const qreal character = QFontMetricsF(fixed).horizontalAdvance(QLatin1Char(' '));
    QTextOption option = resultTextView_->document()->defaultTextOption();
    QList<QTextOption::Tab> tabs;
    for (int stop : kFirstTabStops)
        tabs.append(QTextOption::Tab(character * stop, QTextOption::LeftTab));
    option.setTabs(tabs);
    option.setTabStopDistance(character * kTabStopCharacters);
    option.setWrapMode(QTextOption::NoWrap);
    resultTextView_->document()->setDefaultTextOption(option);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(resultTextView_);

    timer_.setInterval(kRefreshIntervalMs);
    timer_.setSingleShot(false);
    connect(&timer_, &QTimer::timeout, this, &SummaryViewController::updateLabels);
}

SummaryViewController::~SummaryViewController()
{
    timer_.stop();
}

void SummaryViewController::viewDidLoad()
{
    if (timerStarted_)
        return;
    timerStarted_ = true;
    timer_.start();
    updateLabels();
}

void SummaryViewController::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    viewDidLoad();
}

void SummaryViewController::updateLabels()
{
    auto* inner = qobject_cast<QSplitter*>(parentWidget());
    if (!inner)
        return;
    auto* outer = qobject_cast<QSplitter*>(inner->parentWidget());
    if (!outer || outer->count() == 0)
        return;
    auto* entryList = qobject_cast<ViewController*>(outer->widget(0));
    if (!entryList)
        return;
    calcEngine_.calculate(entryList->einnahmen());
    resultTextView_->setPlainText(QString::fromStdString(calcEngine_.ergebnisString()));
}

}  // namespace saldo::gui
