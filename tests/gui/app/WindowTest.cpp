// The document window: its menus reach the entry list and the undo stack, the
// title carries the modified marker.
#include "app/Document.h"
#include "app/DocumentWindow.h"
#include "app/SplitViewController.h"
#include "app/WindowActions.h"
#include "entrylist/ViewController.h"
#include "gui/support/LedgerFixtures.h"
#include "platform/UserDefaults.h"

#include <QAction>
#include <QUndoStack>
#include <gtest/gtest.h>

namespace saldo::gui {
namespace {

using testing::shownDocument;

TEST(WindowTest, EditMenuDrivesTheEntryListAndNamesTheUndoStep)
{
    InMemoryUserDefaults defaults;
    auto document = shownDocument(defaults, 3);
    WindowActions* actions = document->windowController()->actions();
    ViewController* list = document->entryList();

    actions->addEntryAction()->trigger();
    ASSERT_EQ(list->backupEinnahmen().size(), 4u);
    EXPECT_TRUE(document->windowController()->isWindowModified());

    EXPECT_FALSE(actions->undoAction()->isEnabled());
    document->undoManager()->push(new QUndoCommand(QStringLiteral("Loeschen")));
    EXPECT_TRUE(actions->undoAction()->isEnabled());
    EXPECT_EQ(actions->undoAction()->text(), QStringLiteral("Widerrufen Loeschen"));
    actions->undoAction()->trigger();
    EXPECT_EQ(actions->redoAction()->text(), QStringLiteral("Wiederholen Loeschen"));

    // Without a document controller the program-wide actions are off.
    EXPECT_FALSE(actions->newDocumentAction()->isEnabled());
    EXPECT_TRUE(actions->saveAction()->isEnabled());
}

}  // namespace
}  // namespace saldo::gui
