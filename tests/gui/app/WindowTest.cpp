// The document window: its menus reach the entry list and the undo stack, the
// title carries the modified marker, the selection reaches the detail panel
// through the split views, and the status images are in the resources.
#include "app/Document.h"
#include "app/DocumentWindow.h"
#include "app/SplitViewController.h"
#include "app/WindowActions.h"
#include "editors/DetailViewController.h"
#include "entrylist/ViewController.h"
#include "gui/support/LedgerFixtures.h"
#include "platform/UserDefaults.h"

#include <QAction>
#include <QImage>
#include <QItemSelectionModel>
#include <QTableView>
#include <QUndoStack>
#include <gtest/gtest.h>

namespace saldo::gui {
namespace {

std::unique_ptr<Document> shownDocument(UserDefaults& defaults, int count)
{
    auto document = std::make_unique<Document>(defaults);
    EXPECT_TRUE(document->readFromData(testing::encoded(testing::sampleEntries(count))));
    document->makeWindowControllers();
    document->windowController()->show();
    return document;
}

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

TEST(WindowTest, TheSelectionReachesTheDetailPanel)
{
    InMemoryUserDefaults defaults;
    auto document = shownDocument(defaults, 4);
    ViewController* list = document->entryList();
    DetailViewController* detail = document->windowController()->splitViewController()->detailViewController();
    QItemSelectionModel* selection = list->tableView()->selectionModel();
    const QAbstractItemModel* model = list->tableView()->model();
    const auto rows = QItemSelectionModel::Rows;

    selection->select(model->index(2, 0), QItemSelectionModel::ClearAndSelect | rows);
    EXPECT_EQ(list->selectedEinnahme(), list->einnahmen()[2]);
    EXPECT_EQ(detail->selectedEinnahme(), list->einnahmen()[2]);

    selection->select(model->index(3, 0), QItemSelectionModel::Select | rows);
    EXPECT_EQ(list->selectedEinnahme(), nullptr);
    EXPECT_EQ(detail->selectedEinnahme(), nullptr);

    selection->select(model->index(1, 0), QItemSelectionModel::ClearAndSelect | rows);
    EXPECT_EQ(detail->selectedEinnahme(), list->einnahmen()[1]);
    selection->clearSelection();
    EXPECT_EQ(detail->selectedEinnahme(), nullptr);
    EXPECT_EQ(detail->boxOpacity(), 0.0);
}

TEST(WindowTest, TheStatusCirclesAreResources)
{
    for (const char* name : { ":/images/greenCircle.png", ":/images/redCircle.png" }) {
        const QImage image(QString::fromLatin1(name));
        ASSERT_FALSE(image.isNull()) << name;
        EXPECT_EQ(image.size(), QSize(16, 16));
    }
    // Green and red are told apart by their centres.
    const QColor green = QImage(QStringLiteral(":/images/greenCircle.png")).pixelColor(8, 8);
    const QColor red = QImage(QStringLiteral(":/images/redCircle.png")).pixelColor(8, 8);
    EXPECT_GT(green.green(), green.red());
    EXPECT_GT(red.red(), red.green());
}

}  // namespace
}  // namespace saldo::gui
