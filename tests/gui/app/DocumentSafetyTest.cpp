// Saving when things go wrong: a save that cannot be written (read-only
// folder, read-only file, full disk) loses nothing, is reported once and
// succeeds by itself once the cause is gone; a file changed, deleted or moved
// by another program while it is open.
#include "app/Document.h"
#include "app/DocumentWindow.h"
#include "entrylist/EntryTableModel.h"
#include "entrylist/ViewController.h"
#include "gui/support/Recorders.h"
#include "gui/support/LedgerFixtures.h"
#include "gui/support/ScriptedDialogs.h"
#include "gui/support/Unprivileged.h"
#include "model/LedgerFile.h"
#include "platform/UserDefaults.h"

#include <QFile>
#include <QScopeGuard>
#include <QTableView>
#include <QTemporaryDir>
#include <QUndoStack>
#include <gtest/gtest.h>

#include <csignal>
#include <functional>
#include <ostream>
#include <sys/resource.h>

namespace saldo::gui {
namespace {

using testing::decodeFile;
using testing::encoded;
using testing::namesOf;
using testing::readBytes;
using testing::sampleEntries;
using testing::ScriptedDialogs;
using testing::Unprivileged;
using testing::writeBytes;
using Choice = Dialogs::FileChangedChoice;

class DocumentSafetyTest : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(dir.isValid()); }

    std::unique_ptr<Document> openedDocument(int count)
    {
        path = dir.filePath(QStringLiteral("Kasse.saldo"));
        return testing::openedDocument(defaults, path, count);
    }

    static void autosaveNow(Document& document)
    {
        ASSERT_TRUE(document.autosaveTimer().isActive()) << "no autosave is due";
        QMetaObject::invokeMethod(&document.autosaveTimer(), "timeout");
    }

    InMemoryUserDefaults defaults;
    QTemporaryDir dir;
    QString path;
    ScriptedDialogs dialogs;
    testing::DiagnosticRecorder quiet;
};

// A cause that makes every save fail while it is in place.
struct Cause {
    const char* name;
    std::function<void(const QString& dir, const QString& file)> apply;
    std::function<void(const QString& dir, const QString& file)> remove;
};

void PrintTo(const Cause& cause, std::ostream* out)
{
    *out << cause.name;
}

class SaveFailureTest : public DocumentSafetyTest, public ::testing::WithParamInterface<Cause> { };

TEST_P(SaveFailureTest, IsReportedOnceAndTheNextAutosaveSucceedsOnceTheCauseIsGone)
{
    auto document = openedDocument(1);
    Document* list = document.get();
    for (int i = 0; i < 20; ++i) {
        list->addEntry();
        list->backupEinnahmen().back()->setName("Beleg " + std::to_string(i));
    }
    ASSERT_TRUE(document->save());
    const QByteArray saved = readBytes(path);
    Unprivileged unprivileged(dir.path());

    GetParam().apply(dir.path(), path);
    // A failed check must not leave the cause behind for later tests.
    const auto removeCause = qScopeGuard([&] { GetParam().remove(dir.path(), path); });
    list->addEntry();
    autosaveNow(*document);
    EXPECT_EQ(readBytes(path), saved);
    EXPECT_TRUE(document->isDocumentEdited());
    ASSERT_EQ(dialogs.errors.size(), 1);
    EXPECT_TRUE(
        dialogs.errors[0].startsWith(QStringLiteral("Das Dokument „Kasse.saldo“ konnte nicht gesichert werden.")));

    // Nothing changes, the cause stays: tried again, but not told again.
    autosaveNow(*document);
    autosaveNow(*document);
    EXPECT_EQ(readBytes(path), saved);
    EXPECT_EQ(dialogs.errors.size(), 1);

    GetParam().remove(dir.path(), path);
    autosaveNow(*document);
    EXPECT_FALSE(document->isDocumentEdited());
    EXPECT_FALSE(document->autosaveTimer().isActive());
    EXPECT_EQ(namesOf(decodeFile(path)), namesOf(list->backupEinnahmen()));
    EXPECT_EQ(dialogs.errors.size(), 1);

    // A new failure after that success is news again.
    GetParam().apply(dir.path(), path);
    list->addEntry();
    autosaveNow(*document);
    EXPECT_EQ(dialogs.errors.size(), 2);
    EXPECT_TRUE(document->isDocumentEdited());
}

const auto kWritable = QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner;

// The file-size limit makes writes beyond it fail as a full disk does, also
// for the superuser.
rlimit g_previousLimit {};
void (*g_previousHandler)(int) = nullptr;

INSTANTIATE_TEST_SUITE_P(Causes, SaveFailureTest,
    ::testing::Values(
        Cause { "ReadOnlyFolder",
            [](const QString& d, const QString&) { QFile::setPermissions(d, QFile::ReadOwner | QFile::ExeOwner); },
            [](const QString& d, const QString&) { QFile::setPermissions(d, kWritable); } },
        Cause { "ReadOnlyFile",
            [](const QString&, const QString& f) { QFile::setPermissions(f, QFile::ReadOwner | QFile::ReadGroup); },
            [](const QString&, const QString& f) { QFile::setPermissions(f, QFile::ReadOwner | QFile::WriteOwner); } },
        Cause { "FullDisk",
            [](const QString&, const QString& f) {
                getrlimit(RLIMIT_FSIZE, &g_previousLimit);
                g_previousHandler = std::signal(SIGXFSZ, SIG_IGN);
                rlimit small = g_previousLimit;
                small.rlim_cur = static_cast<rlim_t>(QFile(f).size() / 2);
                setrlimit(RLIMIT_FSIZE, &small);
            },
            [](const QString&, const QString&) {
                setrlimit(RLIMIT_FSIZE, &g_previousLimit);
                std::signal(SIGXFSZ, g_previousHandler);
            } }),
    [](const ::testing::TestParamInfo<Cause>& info) { return std::string(info.param.name); });

// --- the file changed by another program ------------------------------------

class OutsideChangeTest : public DocumentSafetyTest {
protected:
    // The document has 3 entries and one more added in the window; meanwhile
    // another program writes 7 entries into the file.
    void SetUp() override
    {
        DocumentSafetyTest::SetUp();
        document = openedDocument(3);
        document->undoManager()->push(new QUndoCommand(QStringLiteral("Loeschen")));
        document->addEntry();
        outside = encoded(sampleEntries(7));
        ASSERT_TRUE(writeBytes(path, outside));
    }

    std::unique_ptr<Document> document;
    QByteArray outside;
};

TEST_F(OutsideChangeTest, OverwriteSavesTheWindowsEntries)
{
    dialogs.fileChangedChoices = { Choice::Overwrite };
    autosaveNow(*document);
    EXPECT_EQ(dialogs.asked, QStringList { QStringLiteral("Kasse.saldo") });
    EXPECT_EQ(decodeFile(path).size(), 4u);
    EXPECT_FALSE(document->isDocumentEdited());
}

TEST_F(OutsideChangeTest, ReloadShowsTheFileAndForgetsTheWindowsChanges)
{
    dialogs.fileChangedChoices = { Choice::Reload };
    autosaveNow(*document);
    EXPECT_EQ(dialogs.asked.size(), 1);
    EXPECT_EQ(readBytes(path), outside); // nothing written
    Document* list = document.get();
    EXPECT_EQ(namesOf(list->backupEinnahmen()), namesOf(sampleEntries(7)));
    EXPECT_EQ(list->einnahmen(), list->backupEinnahmen());
    EXPECT_EQ(list->model()->rowCount(), 7);
    EXPECT_EQ(document->undoManager()->count(), 0);
    EXPECT_FALSE(document->isDocumentEdited());
    EXPECT_FALSE(document->windowController()->isWindowModified());

    // Edits after the reload are saved without a question.
    list->addEntry();
    autosaveNow(*document);
    EXPECT_EQ(dialogs.asked.size(), 1);
    EXPECT_EQ(decodeFile(path).size(), 8u);
}

TEST_F(OutsideChangeTest, CancelKeepsTheChangesAndAsksAgainOnlyWhenTheFileChangesOrTheUserSaves)
{
    dialogs.fileChangedChoices = { Choice::Cancel };
    autosaveNow(*document);
    EXPECT_EQ(readBytes(path), outside);
    EXPECT_TRUE(document->isDocumentEdited());
    EXPECT_EQ(document->backupEinnahmen().size(), 4u);

    // Further changes and autosaves do not nag while the file stays as it is.
    document->addEntry();
    autosaveNow(*document);
    EXPECT_EQ(dialogs.asked.size(), 1);
    EXPECT_EQ(readBytes(path), outside);

    // The other program writes again: asked again.
    const QByteArray again = encoded(sampleEntries(2));
    ASSERT_TRUE(writeBytes(path, again));
    dialogs.fileChangedChoices = { Choice::Cancel };
    document->addEntry();
    autosaveNow(*document);
    EXPECT_EQ(dialogs.asked.size(), 2);
    EXPECT_EQ(readBytes(path), again);

    // "Sichern" asks even about a change that was declined.
    dialogs.fileChangedChoices = { Choice::Overwrite };
    EXPECT_TRUE(document->saveDocument());
    EXPECT_EQ(dialogs.asked.size(), 3);
    EXPECT_EQ(decodeFile(path).size(), 6u);
}

TEST_F(OutsideChangeTest, ClosingAfterADeclinedOverwriteOffersTheOtherWays)
{
    // Declined at closing: the window stays unless the user discards.
    dialogs.fileChangedChoices = { Choice::Cancel, Choice::Cancel };
    dialogs.saveChoices = { Dialogs::SaveChoice::Cancel, Dialogs::SaveChoice::DontSave };
    EXPECT_FALSE(document->canClose());
    EXPECT_TRUE(document->autosaveTimer().isActive());
    EXPECT_TRUE(document->canClose());
    EXPECT_EQ(readBytes(path), outside);

    // Reloading at closing leaves nothing to save.
    ScriptedDialogs more;
    more.fileChangedChoices = { Choice::Reload };
    document->addEntry();
    ASSERT_TRUE(writeBytes(path, encoded(sampleEntries(4))));
    EXPECT_TRUE(document->canClose());
    EXPECT_EQ(more.asked, QStringList { QStringLiteral("Kasse.saldo") });
}

// Neither the same bytes written again as a new file (as a backup tool
// restores it) nor a file deleted or moved away is an outside change: the
// autosave writes the file at its path again.
TEST_F(DocumentSafetyTest, SameBytesOrAMissingFileAreNoOutsideChange)
{
    auto document = openedDocument(3);
    const QByteArray before = readBytes(path);
    QFile::remove(path);
    ASSERT_TRUE(writeBytes(path, before));
    document->addEntry();
    autosaveNow(*document);
    EXPECT_EQ(decodeFile(path).size(), 4u);

    ASSERT_TRUE(QFile::remove(path));
    document->addEntry();
    autosaveNow(*document);
    EXPECT_EQ(decodeFile(path).size(), 5u);

    const QString moved = dir.filePath(QStringLiteral("Archiv.saldo"));
    ASSERT_TRUE(QFile::rename(path, moved));
    document->addEntry();
    autosaveNow(*document);
    EXPECT_EQ(decodeFile(path).size(), 6u);
    EXPECT_EQ(decodeFile(moved).size(), 5u);
    EXPECT_TRUE(dialogs.asked.isEmpty());
    EXPECT_TRUE(dialogs.errors.isEmpty());
    EXPECT_FALSE(document->isDocumentEdited());
}

} // namespace
} // namespace saldo::gui
