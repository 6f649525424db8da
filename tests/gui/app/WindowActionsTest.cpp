// The document window's menus: a mnemonic on every menu and item, the
// shortcut list read from the actions, the help windows. And its size,
// splitters and column widths: fitted to the screen at first, kept on
// closing, restored and clamped in the next window.
#include "app/WindowActions.h"
#include "app/AboutDialog.h"
#include "app/AutosaveStore.h"
#include "app/Document.h"
#include "app/DocumentController.h"
#include "app/DocumentWindow.h"
#include "app/ShortcutList.h"
#include "app/ShortcutsDialog.h"
#include "app/SplitViewController.h"
#include "app/WindowLayout.h"
#include "entrylist/EntryColumn.h"
#include "entrylist/ViewController.h"
#include "gui/support/LedgerFixtures.h"
#include "gui/support/ScriptedDialogs.h"
#include "platform/SettingsUserDefaults.h"
#include "settings/WindowGeometry.h"

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QHeaderView>
#include <QMenu>
#include <QMenuBar>
#include <QScreen>
#include <QSplitter>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>
#include <QTreeWidget>
#include <gtest/gtest.h>

#include <set>

namespace saldo::gui {
namespace {

using namespace testing;

class WindowActionsTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        for (const QString& name : { QStringLiteral("Kasse.saldo"), QStringLiteral("Weiss & Partner.saldo") }) {
            ASSERT_TRUE(writeBytes(dir.filePath(name), encoded(sampleEntries(1))));
            controller.openDocument(dir.filePath(name));
        }
        window = controller.documents().back()->windowController();
        QApplication::setActiveWindow(window);
    }
    void TearDown() override
    {
        controller.closeAllDocuments();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    QMenu* menuTitled(const QString& title) const
    {
        for (QAction* entry : window->menuBar()->actions())
            if (entry->menu() && ShortcutList::plainTitle(entry->text()) == title)
                return entry->menu();
        return nullptr;
    }

    QTemporaryDir dir;
    InMemoryUserDefaults defaults;
    testing::ScriptedDialogs dialogs;
    DocumentController controller { defaults };
    DocumentWindow* window = nullptr;
};

// Each menu of the bar and each item of a menu (the recent files included) is
// reachable by Alt and one letter, none taken twice in the same menu.
TEST_F(WindowActionsTest, EveryMenuAndItemHasItsOwnMnemonic)
{
    window->actions()->fillRecentMenu();
    std::function<void(const QString&, const QList<QAction*>&)> check
        = [&](const QString& where, const QList<QAction*>& actions) {
              std::set<QKeySequence> taken;
              for (QAction* action : actions) {
                  if (action->isSeparator() || !action->isEnabled())
                      continue;
                  const QKeySequence key = QKeySequence::mnemonic(action->text());
                  EXPECT_FALSE(key.isEmpty()) << where.toStdString() << ": " << action->text().toStdString();
                  EXPECT_TRUE(taken.insert(key).second) << where.toStdString() << ": " << action->text().toStdString();
                  if (action->menu())
                      check(action->text(), action->menu()->actions());
              }
          };
    check(QStringLiteral("menu bar"), window->menuBar()->actions());
    EXPECT_EQ(window->actions()->recentMenu()->actions()[0]->text(), QStringLiteral("&1 Weiss && Partner.saldo"));

    // No label of the window takes the menus' keys.
    for (const auto& [key, title] : { std::pair { Qt::Key_A, "Ablage" }, std::pair { Qt::Key_B, "Bearbeiten" },
             std::pair { Qt::Key_E, "Eintrag" }, std::pair { Qt::Key_W, "Auswertung" },
             std::pair { Qt::Key_H, "Hilfe" } }) {
        QMenu* menu = menuTitled(QString::fromLatin1(title));
        ASSERT_NE(menu, nullptr) << title;
        QTest::keyClick(window, key, Qt::AltModifier);
        EXPECT_TRUE(menu->isVisible()) << title;
        menu->close();
    }
}

// The list is read from the actions when it is asked for: a changed shortcut
// shows at once, actions outside the menus (the search field's) are listed,
// and no two actions share a key.
TEST_F(WindowActionsTest, TheShortcutListIsReadFromTheWindowsActions)
{
    const auto rowFor = [this](const QString& command) -> std::optional<ShortcutList::Row> {
        for (const ShortcutList::Row& row : ShortcutList::of(*window))
            if (row.command == command)
                return row;
        return std::nullopt;
    };
    ASSERT_TRUE(rowFor(QStringLiteral("Oeffnen")));
    EXPECT_EQ(rowFor(QStringLiteral("Oeffnen"))->menu, QStringLiteral("Ablage"));
    EXPECT_EQ(rowFor(QStringLiteral("Loeschen"))->keys,
        QKeySequence(Qt::Key_Delete).toString(QKeySequence::NativeText) + QStringLiteral(", ")
            + QKeySequence(Qt::Key_Backspace).toString(QKeySequence::NativeText));
    EXPECT_EQ(rowFor(QStringLiteral("Suchen"))->menu, QString::fromLatin1(ShortcutList::kOtherGroup));

    window->actions()->duplicateAction()->setShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_J));
    EXPECT_EQ(rowFor(QStringLiteral("Duplizieren"))->keys,
        QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_J).toString(QKeySequence::NativeText));

    std::set<QString> keys;
    int rows = 0;
    for (const ShortcutList::Row& row : ShortcutList::of(*window)) {
        ++rows;
        for (const QString& key : row.keys.split(QStringLiteral(", ")))
            EXPECT_TRUE(keys.insert(key).second) << key.toStdString() << " twice, at " << row.command.toStdString();
    }

    window->actions()->shortcutsAction()->trigger();
    auto* shown = window->findChild<ShortcutsDialog*>();
    ASSERT_TRUE(shown && shown->isVisible());
    int listed = 0;
    for (int group = 0; group < shown->list()->topLevelItemCount(); ++group)
        listed += shown->list()->topLevelItem(group)->childCount();
    EXPECT_EQ(listed, rows);
}

TEST_F(WindowActionsTest, AboutNamesTheFoldersOfThisMachineAndOpensOnce)
{
    window->actions()->aboutAction()->trigger();
    window->actions()->aboutAction()->trigger();
    const auto shown = window->findChildren<AboutDialog*>();
    ASSERT_EQ(shown.size(), 1);
    const QString text = shown[0]->text();
    EXPECT_TRUE(text.contains(QStringLiteral("GPL-3.0-or-later")));
    for (const QString& path :
        { QFileInfo(dir.path()).canonicalFilePath(), SettingsUserDefaults::programFileName(), AutosaveStore::folder() })
        EXPECT_TRUE(text.contains(QDir::toNativeSeparators(path).toHtmlEscaped())) << path.toStdString();
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
        const auto document = shownDocument(defaults, 1);
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
    const auto document = shownDocument(defaults, 1);
    DocumentWindow& window = *document->windowController();
    EXPECT_EQ(window.size(), moved);
    EXPECT_EQ(splitters(window), sizes);
    EXPECT_EQ(columns(window)->sectionSize(EntryColumn::Name), 333);
    EXPECT_EQ(columns(window)->sectionSize(EntryColumn::Kategorie), available.width());

    // Kept on a bigger screen: the window is no larger than this one.
    WindowGeometry::writeNumbers(defaults, WindowLayout::kSizeKey, { 5000, 4000 });
    const auto big = shownDocument(defaults, 1);
    EXPECT_LE(big->windowController()->width(), available.width());
    EXPECT_LE(big->windowController()->height(), available.height());
}

} // namespace
} // namespace saldo::gui
