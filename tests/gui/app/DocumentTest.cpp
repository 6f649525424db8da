// The document's file and window: saving in place (atomic, permissions kept,
// the complete list under a search), the autosave delay, closing, and the
// window's menus reaching the verbs and the undo stack.
#include "app/Document.h"
#include "app/DocumentWindow.h"
#include "app/SplitViewController.h"
#include "app/WindowActions.h"
#include "editors/DetailViewController.h"
#include "entrylist/ViewController.h"
#include "entrylist/SearchOutcome.h"
#include "gui/support/LedgerFixtures.h"
#include "gui/support/Recorders.h"
#include "gui/support/ScriptedDialogs.h"
#include "platform/UserDefaults.h"

#include <QAction>
#include <QApplication>
#include <QLineEdit>
#include <QTableView>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>
#include <QUndoStack>
#include <gtest/gtest.h>

namespace saldo::gui {
namespace {

using namespace testing;

class DocumentTest : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(dir.isValid()); }

    std::unique_ptr<Document> openedDocument(int count)
    {
        return testing::openedDocument(defaults, dir.filePath(QStringLiteral("Kasse.saldo")), count);
    }

    InMemoryUserDefaults defaults;
    QTemporaryDir dir;
    ScriptedDialogs dialogs;
    DiagnosticRecorder diagnostics;
};

TEST_F(DocumentTest, SavingWritesTheCompleteListInPlaceKeepingPermissionsAndSaysSoOnce)
{
    auto document = openedDocument(10);
    ASSERT_TRUE(QFile::setPermissions(document->filePath(), QFile::ReadOwner | QFile::WriteOwner));
    const QFile::Permissions permissions = QFile::permissions(document->filePath());
    document->addEntry();
    document->applySearch(SearchOutcome::decide("Name", "Posten 1"));
    ASSERT_EQ(document->einnahmen().size(), 2u); // "Posten 1" and "Posten 10"
    diagnostics.lines.clear();

    ASSERT_TRUE(document->save());
    EXPECT_EQ(diagnostics.lines, std::vector<std::string> { "data saved" });
    EXPECT_EQ(namesOf(decodeFile(document->filePath())), namesOf(document->backupEinnahmen()));
    EXPECT_EQ(document->backupEinnahmen().size(), 11u);
    EXPECT_FALSE(document->isDocumentEdited());
    EXPECT_EQ(QFile::permissions(document->filePath()), permissions);
}

TEST_F(DocumentTest, AChangeIsSavedAfterTheAutosaveDelayAndEachChangeRestartsIt)
{
    auto document = openedDocument(2);
    QTimer& timer = document->autosaveTimer();
    EXPECT_EQ(timer.interval(), 3000);
    EXPECT_TRUE(timer.isSingleShot());
    EXPECT_FALSE(timer.isActive());

    document->addEntry();
    EXPECT_TRUE(document->windowController()->isWindowModified());
    ASSERT_TRUE(timer.isActive());
    EXPECT_EQ(decodeFile(document->filePath()).size(), 2u); // nothing written before the delay
    QTest::qWait(30);
    const int remainingBefore = timer.remainingTime();
    document->editCell(0, EntryColumn::Name, CellEdit::Text { "Posten eins" });
    EXPECT_GT(timer.remainingTime(), remainingBefore);

    // The entries are written on a worker. A change made meanwhile is not in
    // the file, and the next save writes it.
    const auto names = [&] {
        std::vector<std::string> names;
        for (const auto& entry : decodeFile(document->filePath()))
            names.push_back(entry->name());
        return names;
    };
    QMetaObject::invokeMethod(&timer, "timeout");
    EXPECT_TRUE(document->isSaving());
    document->editCell(0, EntryColumn::Name, CellEdit::Text { "Posten zwei" });
    document->finishBackgroundSave();
    EXPECT_EQ(names().size(), 3u);
    EXPECT_EQ(names()[0], "Posten eins");
    EXPECT_TRUE(document->windowController()->isWindowModified());
    ASSERT_TRUE(timer.isActive());

    QMetaObject::invokeMethod(&timer, "timeout");
    document->finishBackgroundSave();
    EXPECT_EQ(names()[0], "Posten zwei");
    EXPECT_FALSE(timer.isActive());
    EXPECT_FALSE(document->windowController()->isWindowModified());
}

TEST_F(DocumentTest, ClosingSavesAChangedDocumentAndAsksForAnUntitledOne)
{
    auto document = openedDocument(3);
    document->windowController()->show();
    document->addEntry();
    EXPECT_TRUE(document->windowController()->close());
    EXPECT_EQ(decodeFile(document->filePath()).size(), 4u);
    EXPECT_TRUE(dialogs.asked.isEmpty());

    Document untitled(defaults);
    untitled.makeWindowControllers();
    untitled.windowController()->show();
    untitled.addEntry();
    EXPECT_EQ(untitled.windowController()->windowTitle(), QStringLiteral("Unbenannt[*]"));
    dialogs.saveChoices = { Dialogs::SaveChoice::Cancel, Dialogs::SaveChoice::Save, Dialogs::SaveChoice::Save };
    EXPECT_FALSE(untitled.windowController()->close());
    // "Sichern…" asks for a name; a cancelled save panel keeps the window open.
    EXPECT_FALSE(untitled.windowController()->close());
    dialogs.saveFileNames = { dir.filePath(QStringLiteral("Neu")) };
    EXPECT_TRUE(untitled.windowController()->close());
    const QString saved = dir.filePath(QStringLiteral("Neu.saldo"));
    EXPECT_EQ(untitled.filePath(), QFileInfo(saved).canonicalFilePath());
    EXPECT_EQ(decodeFile(saved).size(), 2u); // "Neu" and the added entry
}

TEST_F(DocumentTest, TheEditMenuRunsTheVerbsAndNamesTheStepToUndo)
{
    auto document = shownDocument(defaults, 3);
    WindowActions* actions = document->windowController()->actions();
    EXPECT_FALSE(actions->undoAction()->isEnabled());
    actions->addEntryAction()->trigger();
    ASSERT_EQ(document->backupEinnahmen().size(), 4u);
    EXPECT_EQ(actions->undoAction()->text(), QStringLiteral("&Widerrufen Neuer Eintrag"));
    actions->duplicateAction()->trigger();
    EXPECT_EQ(document->backupEinnahmen().back()->name(), "Neu Kopie");
    actions->undoAction()->trigger();
    EXPECT_EQ(actions->redoAction()->text(), QStringLiteral("Wieder&holen Duplizieren"));
    EXPECT_EQ(document->backupEinnahmen().size(), 4u);

    // Ctrl+Z in a form field undoes the field's own typing first, then the
    // document's last step (the field used to keep the key to itself).
    QApplication::setActiveWindow(document->windowController());
    SplitViewController* split = document->windowController()->splitViewController();
    split->viewController()->tableView()->selectRow(0);
    DetailViewController* detail = split->detailViewController();
    detail->finishAnimationsForTesting();
    QLineEdit* name = detail->nameField();
    name->setFocus();
    ASSERT_TRUE(name->hasFocus());
    QTest::keyClicks(name, QStringLiteral("x"));
    QTest::keyClick(name, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(document->backupEinnahmen().size(), 4u);
    EXPECT_FALSE(name->isUndoAvailable());
    QTest::keyClick(name, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(document->backupEinnahmen().size(), 3u);
    QTest::keyRelease(name, Qt::Key_Control); // no Ctrl held for the tests after this one

    // Without a document controller the program-wide actions are off.
    EXPECT_FALSE(actions->newDocumentAction()->isEnabled());
    EXPECT_TRUE(actions->saveAction()->isEnabled());
}

} // namespace
} // namespace saldo::gui
