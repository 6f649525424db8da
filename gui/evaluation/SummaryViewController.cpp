#include "evaluation/SummaryViewController.h"

#include "entrylist/ViewController.h"
#include "evaluation/CalcEngine.h"
#include "evaluation/ReportTextView.h"

#include <QPlainTextEdit>
#include <QSplitter>
#include <QVBoxLayout>

namespace saldo::gui {

SummaryViewController::SummaryViewController(QWidget* parent)
    : QWidget(parent)
    , calcEngine_(sharedCalcEngine())
{
    resultTextView_ = new QPlainTextEdit(this);
    resultTextView_->setObjectName(QStringLiteral("resultTextView"));
    ReportTextView::style(resultTextView_);

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
