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

std::unique_ptr<Document> shownWindow(UserDefaults& defaults)
{
    auto document = std::make_unique<Document>(defaults);
    document->makeWindowControllers();
    document->windowController()->show();
    return document;
}

QList<QList<int>> splitters(const DocumentWindow& window)
{
    SplitViewController* split = window.splitViewController();
    return { split->sizes(), split->innerSplitViewController()->sizes(),
        split->viewController()->tableSplitter()->sizes() };
}

QHeaderView* columns(const DocumentWindow& window)
{
    return window.splitViewController()->viewController()->tableView()->horizontalHeader();
}

TEST(WindowLayoutTest, TheFirstWindowFitsTheScreenAndTheLayoutOfAClosedWindowReturnsClamped)
{
    InMemoryUserDefaults defaults;
    const QSize available = QGuiApplication::primaryScreen()->availableGeometry().size();
    const QSize moved(available.width() * 19 / 20, available.height() * 19 / 20);
    QList<QList<int>> sizes;
    {
        const auto document = shownWindow(defaults);
        DocumentWindow& window = *document->windowController();
        EXPECT_LE(window.width(), available.width() * 9 / 10);
        EXPECT_GT(window.width(), available.width() * 8 / 10);
        EXPECT_LE(window.height(), available.height() * 9 / 10);
        const auto before = splitters(window);
        window.resize(moved);
        window.splitViewController()->setSizes({ 10, 10000 });
        window.splitViewController()->innerSplitViewController()->setSizes({ 10000, 10 });
        window.splitViewController()->viewController()->tableSplitter()->setSizes({ 10, 10000 });
        sizes = splitters(window);
        for (int i = 0; i < 3; ++i)
            EXPECT_NE(sizes[i], before[i]) << i;
        columns(window)->resizeSection(EntryColumn::Name, 333);
        columns(window)->resizeSection(EntryColumn::Kategorie, 50000);
        ASSERT_TRUE(window.close());
    }
    const auto document = shownWindow(defaults);
    DocumentWindow& window = *document->windowController();
    EXPECT_EQ(window.size(), moved);
    EXPECT_EQ(splitters(window), sizes);
    EXPECT_EQ(columns(window)->sectionSize(EntryColumn::Name), 333);
    EXPECT_EQ(columns(window)->sectionSize(EntryColumn::Kategorie), available.width());

    // Kept on a bigger screen: the window is no larger than this one.
    WindowGeometry::writeNumbers(defaults, WindowLayout::kSizeKey, { 5000, 4000 });
    const auto big = shownWindow(defaults);
    EXPECT_LE(big->windowController()->width(), available.width());
    EXPECT_LE(big->windowController()->height(), available.height());
}

} // namespace
} // namespace saldo::gui
