#include "evaluation/SummaryViewController.h"

#include "app/Document.h"
#include "evaluation/CalcEngine.h"
#include "evaluation/ReportTextView.h"
#include "model/SnapshotGate.h"
#include "platform/Sound.h"

#include <QLabel>
#include <QPlainTextEdit>
#include <QVBoxLayout>

namespace saldo::gui {

SummaryViewController::SummaryViewController(const Document& document, QWidget* parent)
    : QWidget(parent)
    , document_(document)
    , calcEngine_(std::make_unique<CalcEngine>())
{
    resultTextView_ = new QPlainTextEdit(this);
    resultTextView_->setObjectName(QStringLiteral("resultTextView"));
    ReportTextView::style(resultTextView_);

    limitWarning_ = new QLabel(this);
    limitWarning_->setObjectName(QStringLiteral("limitWarning"));
    limitWarning_->setTextFormat(Qt::PlainText);
    limitWarning_->setContentsMargins(6, 3, 6, 3);
    limitWarning_->setStyleSheet(QStringLiteral("QLabel { font-weight: bold; color: #a40000; }"));
    limitWarning_->hide();

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(limitWarning_);
    layout->addWidget(resultTextView_);

    timer_.setInterval(kRefreshIntervalMs);
    timer_.setSingleShot(false);
    connect(&timer_, &QTimer::timeout, this, &SummaryViewController::refresh);
}

SummaryViewController::~SummaryViewController()
{
    timer_.stop();
    if (running_.valid()) {
        running_.wait();
        document_.summaryGate().close();
    }
}

void SummaryViewController::viewDidLoad()
{
    if (timerStarted_)
        return;
    timerStarted_ = true;
    timer_.start();
    // The first report is worked out on the worker like every later one: the
    // window paints at once and the text follows when it is ready.
    refresh();
}

void SummaryViewController::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    viewDidLoad();
}

void SummaryViewController::updateLabels()
{
    finishRefresh(); // a refresh under way worked on an older snapshot
    refresh();
    finishRefresh();
}

void SummaryViewController::refresh()
{
    if (running_.valid())
        return;
    // Main thread: the snapshot (the shown list's entries, kept alive by it),
    // the gate opened before the worker reads, the income limit in force now.
    SnapshotGate& gate = document_.summaryGate();
    gate.open();
    running_ = std::async(std::launch::async,
        [this, snapshot = document_.einnahmen(), &gate, limit = einnahmenLimit()]() mutable {
            calcEngine_->calculateSnapshot(std::move(snapshot), gate, limit);
            QMetaObject::invokeMethod(this, &SummaryViewController::finishRefresh, Qt::QueuedConnection);
        });
}

void SummaryViewController::finishRefresh()
{
    if (!running_.valid())
        return;
    running_.get();
    document_.summaryGate().close();
    // An unchanged report is left as it stands: it stays scrolled where it
    // was, and the text is not laid out again for nothing.
    const std::string& text = calcEngine_->ergebnisString();
    if (text != shownText_) {
        shownText_ = text;
        resultTextView_->setPlainText(QString::fromStdString(shownText_));
    }
    // The engine noted the limit as it added the income up: no second pass.
    if (const auto& warning = calcEngine_->limitWarning()) {
        playSound("Ping");
        limitWarning_->setText(QString::fromStdString(warning->text()));
        limitWarning_->show();
    } else {
        limitWarning_->hide();
    }
}

}  // namespace saldo::gui
