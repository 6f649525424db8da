// The document: reading, the hand-over to the entry list, saving in place
// (atomic), autosave and closing.
#include "app/Document.h"
#include "app/DocumentWindow.h"
#include "app/SplitViewController.h"
#include "editors/DetailViewController.h"
#include "entrylist/ViewController.h"
#include "gui/entrylist/EntryListTestSupport.h"
#include "gui/support/LedgerFixtures.h"
#include "gui/support/ScriptedDialogs.h"
#include "model/LedgerFile.h"
#include "platform/UserDefaults.h"

#include <QFileInfo>
#include <QItemSelectionModel>
#include <QLineEdit>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>
#include <QUndoStack>
#include <gtest/gtest.h>

namespace saldo::gui {
namespace {

using testing::decodeFile;
using testing::encoded;
using testing::sampleEntries;
using testing::ScriptedDialogs;

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
    testing::DiagnosticRecorder diagnostics;
};

TEST_F(DocumentTest, OpenedFileReplacesTheStartingEntryWithItsOwnEntries)
{
    auto document = openedDocument(4);
    ViewController* list = document->entryList();
    ASSERT_TRUE(document->einnahmen());
    const EinnahmeList& snapshot = *document->einnahmen();
    ASSERT_EQ(snapshot.size(), 4u);
    // Both lists hold the very objects that were read: nothing copied, no "Neu".
    EXPECT_EQ(list->einnahmen(), snapshot);
    EXPECT_EQ(list->backupEinnahmen(), snapshot);
    EXPECT_EQ(list->tableView()->model()->rowCount(), 4);
    EXPECT_EQ(snapshot[2]->name(), "Posten 3");
    EXPECT_FALSE(document->isDocumentEdited());
    EXPECT_EQ(document->windowController()->windowTitle(), QStringLiteral("Kasse.saldo[*]"));

    // An empty root array: an empty table and no detail box.
    auto empty = openedDocument(0);
    empty->windowController()->show();
    EXPECT_TRUE(empty->entryList()->einnahmen().empty());
    EXPECT_TRUE(empty->entryList()->backupEinnahmen().empty());
    EXPECT_EQ(empty->entryList()->tableView()->model()->rowCount(), 0);
    EXPECT_EQ(empty->entryList()->selectedEinnahme(), nullptr);
    EXPECT_EQ(empty->windowController()->splitViewController()->detailViewController()->boxOpacity(), 0.0);
}

TEST_F(DocumentTest, NewDocumentKeepsItsStartingEntrySelected)
{
    Document document(defaults);
    EXPECT_FALSE(document.einnahmen());
    document.makeWindowControllers();
    document.windowController()->show();
    ViewController* list = document.entryList();
    ASSERT_EQ(list->einnahmen().size(), 1u);
    const EinnahmePtr& neu = list->einnahmen().front();
    EXPECT_EQ(neu->name(), "Neu"); // its values are the entry list's (tested with the model)
    const QModelIndexList rows = list->tableView()->selectionModel()->selectedRows();
    ASSERT_EQ(rows.size(), 1);
    EXPECT_EQ(rows.front().row(), 0);
    EXPECT_EQ(list->selectedEinnahme(), neu);
    EXPECT_EQ(document.windowController()->splitViewController()->detailViewController()->selectedEinnahme(), neu);
    EXPECT_EQ(document.windowController()->windowTitle(), QStringLiteral("Unbenannt[*]"));
}

TEST_F(DocumentTest, UnreadableDataFailsWithTheFixedErrorAndKeepsTheEntries)
{
    Document document(defaults);
    ASSERT_TRUE(document.readFromData(encoded(sampleEntries(2))));
    const EinnahmeList before = *document.einnahmen();

    for (const QByteArray& bad : { QByteArray("bplist00 kaputt"), QByteArray("<plist><dict/></plist>"),
             encoded(sampleEntries(3)).left(40), QByteArray() }) {
        EXPECT_FALSE(document.readFromData(bad));
        EXPECT_EQ(document.errorCode(), Document::kFileErrorCode);
        EXPECT_EQ(*document.einnahmen(), before);
    }
}

// The live list is saved, not the snapshot read at opening, and every entry
// of it, also under a search filter ("Posten 1" and "Posten 10" shown); the
// file keeps its permissions.
TEST_F(DocumentTest, SavingWritesTheCompleteListInPlaceAndSaysSoOnce)
{
    auto document = openedDocument(10);
    ASSERT_TRUE(QFile::setPermissions(document->filePath(), QFile::ReadOwner | QFile::WriteOwner));
    const QFile::Permissions permissions = QFile::permissions(document->filePath());
    ASSERT_FALSE(permissions & (QFile::ReadGroup | QFile::ReadOther)); // not what a new file gets
    ViewController* list = document->entryList();
    list->addEntry();
    auto* field = list->findChild<QLineEdit*>(QStringLiteral("searchField"));
    ASSERT_NE(field, nullptr);
    field->setText(QStringLiteral("Posten 1"));
    ASSERT_EQ(list->einnahmen().size(), 2u);
    ASSERT_EQ(list->backupEinnahmen().size(), 11u);
    diagnostics.lines.clear();

    ASSERT_TRUE(document->save());
    EXPECT_EQ(diagnostics.lines, std::vector<std::string> { "data saved" });
    const EinnahmeList written = decodeFile(document->filePath());
    ASSERT_EQ(written.size(), 11u);
    for (std::size_t i = 0; i < written.size(); ++i) {
        EXPECT_EQ(written[i]->name(), list->backupEinnahmen()[i]->name());
        EXPECT_EQ(written[i]->brutto(), list->backupEinnahmen()[i]->brutto());
    }
    EXPECT_FALSE(document->isDocumentEdited());
    EXPECT_EQ(QFile::permissions(document->filePath()), permissions);
}

TEST_F(DocumentTest, AChangeIsSavedAfterTheAutosaveDelayAndTheDelayRestarts)
{
    auto document = openedDocument(2);
    ViewController* list = document->entryList();
    QTimer& timer = document->autosaveTimer();
    EXPECT_EQ(timer.interval(), 3000);
    EXPECT_TRUE(timer.isSingleShot());
    EXPECT_FALSE(timer.isActive());

    list->addEntry();
    EXPECT_TRUE(document->isDocumentEdited());
    EXPECT_TRUE(document->windowController()->isWindowModified());
    ASSERT_TRUE(timer.isActive());
    EXPECT_EQ(decodeFile(document->filePath()).size(), 2u); // nothing written before the delay
    QTest::qWait(30);
    const int remainingBefore = timer.remainingTime();
    emit list->changeDone(); // a further change moves the save out again
    EXPECT_GT(timer.remainingTime(), remainingBefore);

    QMetaObject::invokeMethod(&timer, "timeout");
    EXPECT_EQ(decodeFile(document->filePath()).size(), 3u);
    EXPECT_FALSE(timer.isActive());
    EXPECT_FALSE(document->isDocumentEdited());
    EXPECT_FALSE(document->windowController()->isWindowModified());
    EXPECT_EQ(diagnostics.lines, std::vector<std::string> { "data saved" });
}

TEST_F(DocumentTest, UndoAndRedoMarkTheDocumentChanged)
{
    auto document = openedDocument(1);
    QUndoStack* stack = document->undoManager();
    stack->push(new QUndoCommand(QStringLiteral("Loeschen")));
    ASSERT_TRUE(document->save());
    stack->undo();
    EXPECT_TRUE(document->isDocumentEdited());
    EXPECT_TRUE(document->autosaveTimer().isActive());
    ASSERT_TRUE(document->save());
    stack->redo();
    EXPECT_TRUE(document->isDocumentEdited());
}

TEST_F(DocumentTest, ClosingSavesAChangedDocumentInPlace)
{
    auto document = openedDocument(3);
    document->windowController()->show();
    emit document->windowController()->splitViewController()->detailViewController()->changeDone();
    document->entryList()->addEntry();
    EXPECT_TRUE(document->windowController()->close());
    EXPECT_EQ(decodeFile(document->filePath()).size(), 4u);
    EXPECT_TRUE(dialogs.asked.isEmpty());
    EXPECT_FALSE(document->autosaveTimer().isActive());
}

TEST_F(DocumentTest, ClosingAChangedUntitledDocumentAsks)
{
    Document document(defaults);
    document.makeWindowControllers();
    document.windowController()->show();
    document.entryList()->addEntry();
    EXPECT_TRUE(document.autosaveTimer().isActive()); // its recovery copy is due

    dialogs.saveChoices = { Dialogs::SaveChoice::Cancel };
    EXPECT_FALSE(document.windowController()->close());
    EXPECT_TRUE(document.windowController()->isVisible());
    EXPECT_EQ(dialogs.asked, QStringList { QStringLiteral("Unbenannt") });

    // "Sichern…" asks for a name; a cancelled save panel keeps the window open.
    dialogs.saveChoices = { Dialogs::SaveChoice::Save };
    EXPECT_FALSE(document.windowController()->close());

    dialogs.saveChoices = { Dialogs::SaveChoice::Save };
    dialogs.saveFileNames = { dir.filePath(QStringLiteral("Kasse")) };
    EXPECT_TRUE(document.windowController()->close());
    const QString saved = dir.filePath(QStringLiteral("Kasse.saldo"));
    EXPECT_EQ(document.filePath(), QFileInfo(saved).canonicalFilePath());
    EXPECT_EQ(decodeFile(saved).size(), 2u); // "Neu" and the added entry
}

} // namespace
} // namespace saldo::gui
