#pragma once

#include <QTimer>
#include <QWidget>

#include <future>
#include <memory>
#include <string>

class QLabel;
class QPlainTextEdit;

namespace saldo {
class CalcEngine;
}

namespace saldo::gui {

class Document;

// The summary panel: the evaluation report of the entries the document shows
// (its shown list), as read-only text in a fixed-pitch font. It listens to
// nothing; a repeating five-second timer recomputes the report and replaces
// the whole text. The first refresh happens as soon as the panel is set up.
// While the shown income is over the income limit, one line above the report
// says so in words; the report text itself stays the engine's.
//
// A refresh evaluates on a worker thread, with an engine of the panel's own,
// over a snapshot of the shown list read through the document's summary gate:
// the window goes on while a million entries are added up. The text, the
// warning line and the "Ping" follow on the main thread when it is done.
class SummaryViewController : public QWidget {
    Q_OBJECT
public:
    static constexpr int kRefreshIntervalMs = 5000;

    explicit SummaryViewController(const Document& document, QWidget* parent = nullptr);
    ~SummaryViewController() override;

    QPlainTextEdit* resultTextView() const { return resultTextView_; }
    // "Einnahmegrenze ueberschritten: € X von € Y", hidden while the limit holds.
    QLabel* limitWarningLabel() const { return limitWarning_; }
    const QTimer& timer() const { return timer_; }

    // Starts the refresh timer and a first refresh at once (its text follows
    // when the worker is done); a second call does nothing. Runs when the
    // panel is first shown, that is after the document has handed its entries
    // to the entry list.
    void viewDidLoad();

public slots:
    // Evaluates the document's shown entries and replaces the text, waiting
    // for the evaluation.
    void updateLabels();
    // The timer's refresh: starts an evaluation unless one is running; its
    // result replaces the text when it is done.
    void refresh();
    // Waits for a running evaluation and shows its result; nothing when none runs.
    void finishRefresh();
    // Waits for a running evaluation without showing it (benchmarks).
    void waitForWorker() const
    {
        if (running_.valid())
            running_.wait();
    }

protected:
    void showEvent(QShowEvent* event) override;

private:
    const Document& document_;
    QPlainTextEdit* resultTextView_ = nullptr;
    QLabel* limitWarning_ = nullptr;
    std::unique_ptr<CalcEngine> calcEngine_;
    std::future<void> running_;
    std::string shownText_; // the report now in resultTextView_
    QTimer timer_;
    bool timerStarted_ = false;
};

}  // namespace saldo::gui
