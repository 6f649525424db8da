#pragma once

#include <QTimer>
#include <QWidget>

class QPlainTextEdit;

namespace saldo {
class CalcEngine;
}

namespace saldo::gui {

// The summary panel: the evaluation report of the entries the entry list shows,
// as read-only text in a fixed-pitch font. It listens to nothing; a repeating
// five-second timer recomputes the report with the shared engine and replaces
// the whole text. The first refresh happens as soon as the panel is set up.
class SummaryViewController : public QWidget {
    Q_OBJECT
public:
    static constexpr int kRefreshIntervalMs = 5000;

    explicit SummaryViewController(QWidget* parent = nullptr);
    ~SummaryViewController() override;

    QPlainTextEdit* resultTextView() const { return resultTextView_; }
    const QTimer& timer() const { return timer_; }

    // Starts the refresh timer and refreshes once at once; a second call does
    // nothing. Runs when the panel is first shown, that is after the document
    // has handed its entries to the entry list.
    void viewDidLoad();

public slots:
    // Finds the entry list through the split views (inner, then outer, then its
    // first pane), evaluates its shown entries and replaces the text. Does
    // nothing when any link of that path is missing.
    void updateLabels();

protected:
    void showEvent(QShowEvent* event) override;

private:
    QPlainTextEdit* resultTextView_ = nullptr;
    CalcEngine& calcEngine_;
    QTimer timer_;
    bool timerStarted_ = false;
};

}  // namespace saldo::gui
