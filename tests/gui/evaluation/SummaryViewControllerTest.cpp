// The summary panel: shows the report of the entries the entry list shows,
// right away and then every five seconds, each window its own.
#include "evaluation/SummaryViewController.h"
#include "app/Document.h"
#include "app/DocumentWindow.h"
#include "app/SplitViewController.h"
#include "entrylist/ViewController.h"
#include "evaluation/CalcEngine.h"
#include "gui/support/LedgerFixtures.h"
#include "platform/UserDefaults.h"

#include <QLineEdit>
#include <QPlainTextEdit>
#include <QSplitter>
#include <gtest/gtest.h>

namespace saldo::gui {
namespace {

using testing::shownDocument;

QString reportOf(const EinnahmeList& entries)
{
    CalcEngine engine;
    engine.calculate(entries);
    return QString::fromStdString(engine.ergebnisString());
}

SummaryViewController* summaryOf(Document& document)
{
    return document.windowController()->splitViewController()->summaryViewController();
}

TEST(SummaryViewControllerTest, ShowsTheReportOfTheShownEntriesAsSoonAsTheWindowOpens)
{
    InMemoryUserDefaults defaults;
    auto document = shownDocument(defaults, 6);
    SummaryViewController* summary = summaryOf(*document);
    const QString expected = reportOf(document->entryList()->einnahmen());
    ASSERT_FALSE(expected.isEmpty());
    EXPECT_EQ(summary->resultTextView()->toPlainText(), expected);
    EXPECT_TRUE(summary->resultTextView()->isReadOnly());

    EXPECT_TRUE(summary->timer().isActive());
    EXPECT_EQ(summary->timer().interval(), 5000);
    EXPECT_FALSE(summary->timer().isSingleShot());
}

TEST(SummaryViewControllerTest, ChangesReachThePanelAtTheNextTickOnly)
{
    InMemoryUserDefaults defaults;
    auto document = shownDocument(defaults, 2);
    SummaryViewController* summary = summaryOf(*document);
    const QString before = summary->resultTextView()->toPlainText();

    document->entryList()->addEntry();
    document->entryList()->einnahmen().back()->setBrutto(1000.0f);
    summary->viewDidLoad();  // already started: neither a second timer nor a refresh
    EXPECT_EQ(summary->resultTextView()->toPlainText(), before);

    QMetaObject::invokeMethod(const_cast<QTimer*>(&summary->timer()), "timeout");
    EXPECT_EQ(summary->resultTextView()->toPlainText(), reportOf(document->entryList()->einnahmen()));
    EXPECT_NE(summary->resultTextView()->toPlainText(), before);
}

TEST(SummaryViewControllerTest, UnderASearchFilterTheReportCoversTheShownEntriesOnly)
{
    InMemoryUserDefaults defaults;
    auto document = shownDocument(defaults, 10);
    ViewController* list = document->entryList();
    auto* field = list->findChild<QLineEdit*>(QStringLiteral("searchField"));
    ASSERT_NE(field, nullptr);
    SummaryViewController* summary = summaryOf(*document);
    const QString whole = summary->resultTextView()->toPlainText();

    field->setText(QStringLiteral("Posten 1"));
    ASSERT_EQ(list->einnahmen().size(), 2u);
    summary->updateLabels();
    EXPECT_EQ(summary->resultTextView()->toPlainText(), reportOf(list->einnahmen()));
    EXPECT_NE(summary->resultTextView()->toPlainText(), whole);

    field->clear();
    summary->updateLabels();
    EXPECT_EQ(summary->resultTextView()->toPlainText(), whole);
}

TEST(SummaryViewControllerTest, AnEmptyLedgerGivesAnEmptyPanel)
{
    InMemoryUserDefaults defaults;
    auto document = shownDocument(defaults, 0);
    EXPECT_TRUE(summaryOf(*document)->resultTextView()->toPlainText().isEmpty());
}

TEST(SummaryViewControllerTest, EachWindowShowsItsOwnDocument)
{
    InMemoryUserDefaults defaults;
    auto small = shownDocument(defaults, 1);
    auto large = shownDocument(defaults, 9);
    summaryOf(*small)->updateLabels();
    summaryOf(*large)->updateLabels();
    EXPECT_EQ(summaryOf(*small)->resultTextView()->toPlainText(), reportOf(small->entryList()->einnahmen()));
    EXPECT_EQ(summaryOf(*large)->resultTextView()->toPlainText(), reportOf(large->entryList()->einnahmen()));
    EXPECT_NE(summaryOf(*small)->resultTextView()->toPlainText(), summaryOf(*large)->resultTextView()->toPlainText());
}

TEST(SummaryViewControllerTest, APanelOutsideTheWindowLayoutKeepsItsText)
{
    // No parent at all; then a split view whose first pane is not the entry list.
    SummaryViewController alone;
    alone.resultTextView()->setPlainText(QStringLiteral("alt"));
    alone.updateLabels();
    EXPECT_EQ(alone.resultTextView()->toPlainText(), QStringLiteral("alt"));

    QSplitter outer;
    outer.addWidget(new QWidget);
    auto* inner = new QSplitter;
    auto* summary = new SummaryViewController;
    inner->addWidget(summary);
    outer.addWidget(inner);
    summary->resultTextView()->setPlainText(QStringLiteral("alt"));
    summary->updateLabels();
    EXPECT_EQ(summary->resultTextView()->toPlainText(), QStringLiteral("alt"));
}

}  // namespace
}  // namespace saldo::gui
