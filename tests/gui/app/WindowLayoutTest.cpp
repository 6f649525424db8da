// The document window's size, splitters and column widths: fitted to the
// screen at first, kept on closing, restored and clamped in the next window.
#include "app/WindowLayout.h"
#include "app/Document.h"
#include "app/DocumentWindow.h"
#include "app/SplitViewController.h"
#include "entrylist/EntryColumn.h"
#include "entrylist/ViewController.h"
#include "settings/WindowGeometry.h"

#include <QGuiApplication>
#include <QHeaderView>
#include <QScreen>
#include <QSplitter>
#include <QTableView>
#include <gtest/gtest.h>

#include <memory>

namespace saldo::gui {
namespace {

class WindowLayoutTest : public ::testing::Test {
protected:
    std::unique_ptr<Document> shownWindow()
    {
        auto document = std::make_unique<Document>(defaults);
        document->makeWindowControllers();
        document->windowController()->show();
        return document;
    }
    static QSize available() { return QGuiApplication::primaryScreen()->availableGeometry().size(); }
    static QHeaderView* columns(const DocumentWindow& window)
    {
        return window.splitViewController()->viewController()->tableView()->horizontalHeader();
    }

    InMemoryUserDefaults defaults;
};

TEST_F(WindowLayoutTest, TheFirstWindowFitsNinetyPercentOfTheScreen)
{
    const auto document = shownWindow();
    const QSize size = document->windowController()->size();
    EXPECT_LE(size.width(), available().width() * 9 / 10);
    EXPECT_LE(size.height(), available().height() * 9 / 10);
    EXPECT_GT(size.width(), available().width() * 8 / 10);
}

TEST_F(WindowLayoutTest, TheLayoutOfAClosedWindowReturnsInTheNextClampedToTheScreen)
{
    const auto splitters = [](const DocumentWindow& window) {
        SplitViewController* split = window.splitViewController();
        return QList<QList<int>> { split->sizes(), split->innerSplitViewController()->sizes(),
            split->viewController()->tableSplitter()->sizes() };
    };
    QList<QList<int>> moved;
    {
        const auto document = shownWindow();
        DocumentWindow& window = *document->windowController();
        const auto before = splitters(window);
        window.resize(available().width() * 19 / 20, available().height() * 19 / 20);
        window.splitViewController()->setSizes({ 10, 10000 });
        window.splitViewController()->innerSplitViewController()->setSizes({ 10000, 10 });
        window.splitViewController()->viewController()->tableSplitter()->setSizes({ 10, 10000 });
        moved = splitters(window);
        for (int i = 0; i < 3; ++i)
            EXPECT_NE(moved[i], before[i]) << i;
        columns(window)->resizeSection(EntryColumn::Name, 333);
        columns(window)->resizeSection(EntryColumn::Kategorie, 50000);
        ASSERT_TRUE(window.close());
    }

    const auto document = shownWindow();
    DocumentWindow& window = *document->windowController();
    EXPECT_EQ(window.size(), QSize(available().width() * 19 / 20, available().height() * 19 / 20));
    EXPECT_EQ(splitters(window), moved);
    EXPECT_EQ(columns(window)->sectionSize(EntryColumn::Name), 333);
    EXPECT_EQ(columns(window)->sectionSize(EntryColumn::Kategorie), available().width());

    // Kept on a bigger screen: the window is no larger than this one.
    WindowGeometry::writeNumbers(defaults, WindowLayout::kSizeKey, { 5000, 4000 });
    const auto big = shownWindow();
    EXPECT_LE(big->windowController()->width(), available().width());
    EXPECT_LE(big->windowController()->height(), available().height());
}

} // namespace
} // namespace saldo::gui
