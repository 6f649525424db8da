// The summary panel: the report of the entries its document shows, as soon
// as the window opens and then at each tick of its five-second timer.
#include "app/Document.h"
#include "app/DocumentWindow.h"
#include "app/SplitViewController.h"
#include "entrylist/SearchOutcome.h"
#include "evaluation/CalcEngine.h"
#include "evaluation/SummaryViewController.h"
#include "gui/support/LedgerFixtures.h"
#include "platform/UserDefaults.h"

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
    EXPECT_EQ(summary->resultTextView()->toPlainText(), reportOf(document->einnahmen()));

    document->replaceAllEntries({});
    summary->updateLabels();
    EXPECT_TRUE(summary->resultTextView()->toPlainText().isEmpty());
}

} // namespace
} // namespace saldo::gui
