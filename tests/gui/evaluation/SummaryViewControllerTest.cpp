// The summary panel: the report of the entries its document shows, as soon
// as the window opens and then at each tick of its five-second timer.
#include "app/Document.h"
#include "app/DocumentWindow.h"
#include "app/SplitViewController.h"
#include "entrylist/SearchOutcome.h"
#include "evaluation/CalcEngine.h"
#include "evaluation/SummaryViewController.h"
#include "gui/support/LedgerFixtures.h"
#include "gui/support/Recorders.h"
#include "platform/UserDefaults.h"

#include <QLabel>
#include <QPlainTextEdit>
#include <gtest/gtest.h>

namespace saldo::gui {
namespace {

QString reportOf(const EinnahmeList& entries)
{
    CalcEngine engine;
    engine.calculate(entries);
    return QString::fromStdString(engine.ergebnisString());
}

TEST(SummaryViewControllerTest, ShowsTheReportOfTheShownEntriesAtOnceAndThenAtEachTick)
{
    InMemoryUserDefaults defaults;
    auto document = testing::shownDocument(defaults, 10);
    SummaryViewController* summary = document->windowController()->splitViewController()->summaryViewController();
    const QString whole = reportOf(document->einnahmen());
    summary->finishRefresh(); // the first report, too, is worked out on a worker
    EXPECT_EQ(summary->resultTextView()->toPlainText(), whole);
    EXPECT_TRUE(summary->resultTextView()->isReadOnly());
    EXPECT_TRUE(summary->timer().isActive());
    EXPECT_EQ(summary->timer().interval(), 5000);
    EXPECT_FALSE(summary->timer().isSingleShot());

    // A search changes the shown entries; the panel follows at its next tick only.
    document->applySearch(SearchOutcome::decide("Name", "Posten 1"));
    ASSERT_EQ(document->einnahmen().size(), 2u);
    summary->viewDidLoad(); // already started: neither a second timer nor a refresh
    EXPECT_EQ(summary->resultTextView()->toPlainText(), whole);
    QMetaObject::invokeMethod(const_cast<QTimer*>(&summary->timer()), "timeout");
    summary->finishRefresh(); // the tick's evaluation runs on a worker
    EXPECT_EQ(summary->resultTextView()->toPlainText(), reportOf(document->einnahmen()));

    document->replaceAllEntries({});
    summary->updateLabels();
    EXPECT_TRUE(summary->resultTextView()->toPlainText().isEmpty());
}

TEST(SummaryViewControllerTest, ALineAboveTheReportSaysWhileTheIncomeIsOverTheLimit)
{
    InMemoryUserDefaults defaults;
    auto document = testing::shownDocument(defaults, 3); // income 119 + 357
    SummaryViewController* summary = document->windowController()->splitViewController()->summaryViewController();
    const QLabel* warning = summary->limitWarningLabel();
    EXPECT_TRUE(warning->isHidden());

    testing::SoundRecorder sounds;
    einnahmenLimit() = 400.0f;
    summary->updateLabels();
    EXPECT_EQ(sounds.lines, (std::vector<std::string> { "Ping" }));
    EXPECT_FALSE(warning->isHidden());
    EXPECT_EQ(warning->text(), QStringLiteral("Einnahmegrenze ueberschritten: € 476.00 von € 400.00"));
    EXPECT_EQ(summary->resultTextView()->toPlainText(), reportOf(document->einnahmen()));

    einnahmenLimit() = 476.0f;
    summary->updateLabels();
    EXPECT_TRUE(warning->isHidden());
    einnahmenLimit().reset();
}

} // namespace
} // namespace saldo::gui
