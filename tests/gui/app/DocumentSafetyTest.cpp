// Saving when things go wrong: a save that cannot be written (read-only
// folder, read-only file, full disk) loses nothing, is reported once and
// succeeds by itself once the cause is gone; a file changed, deleted or moved
// by another program while it is open.
#include "app/Document.h"
#include "app/DocumentWindow.h"
#include "core/support/Unprivileged.h"
#include "entrylist/EntryTableModel.h"
#include "gui/support/LedgerFixtures.h"
#include "gui/support/Recorders.h"
#include "gui/support/ScriptedDialogs.h"
#include "platform/UserDefaults.h"

#include <QFile>
#include <QScopeGuard>
#include <QTemporaryDir>
#include <QUndoStack>
#include <gtest/gtest.h>

#include <csignal>
#include <functional>
#include <sys/resource.h>

namespace saldo::gui {
namespace {

using namespace testing;
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
        document.finishBackgroundSave();
    }

    InMemoryUserDefaults defaults;
    QTemporaryDir dir;
    QString path;
    ScriptedDialogs dialogs;
    DiagnosticRecorder quiet;
};

// A cause that makes every save fail while it is in place.
struct Cause {
    const char* name;
    std::function<void(const QString& dir, const QString& file)> apply, remove;
};

const auto kWritable = QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner;
rlimit g_previousLimit {};

TEST_F(DocumentSafetyTest, AFailedSaveIsReportedOnceAndTheNextAutosaveSucceedsOnceTheCauseIsGone)
{
    const Cause causes[] = {
        { "read-only folder",
            [](const QString& d, const QString&) { QFile::setPermissions(d, QFile::ReadOwner | QFile::ExeOwner); },
            [](const QString& d, const QString&) { QFile::setPermissions(d, kWritable); } },
        { "read-only file",
            [](const QString&, const QString& f) { QFile::setPermissions(f, QFile::ReadOwner | QFile::ReadGroup); },
            [](const QString&, const QString& f) { QFile::setPermissions(f, QFile::ReadOwner | QFile::WriteOwner); } },
        // A file-size limit makes writes fail as a full disk does, also for the superuser.
        { "full disk",
            [](const QString&, const QString& f) {
                getrlimit(RLIMIT_FSIZE, &g_previousLimit);
                std::signal(SIGXFSZ, SIG_IGN);
                rlimit small = g_previousLimit;
                small.rlim_cur = static_cast<rlim_t>(QFile(f).size() / 2);
                setrlimit(RLIMIT_FSIZE, &small);
            },
            [](const QString&, const QString&) {
                setrlimit(RLIMIT_FSIZE, &g_previousLimit);
                std::signal(SIGXFSZ, SIG_DFL);
            } },
    };
    for (const Cause& cause : causes) {
        SCOPED_TRACE(cause.name);
        dialogs.errors.clear();
        auto document = openedDocument(20);
        const QByteArray saved = readBytes(path);
        saldo::testing::Unprivileged unprivileged(dir.path().toStdString());
        cause.apply(dir.path(), path);
        // A failed check must not leave the cause behind for later ones.
        const auto removeCause = qScopeGuard([&] { cause.remove(dir.path(), path); });

        // Tried at every autosave while the cause stays, told once.
        document->addEntry();
        for (int i = 0; i < 3; ++i)
            autosaveNow(*document);
        EXPECT_EQ(readBytes(path), saved);
        EXPECT_TRUE(document->isDocumentEdited());
        ASSERT_EQ(dialogs.errors.size(), 1);
        EXPECT_TRUE(
            dialogs.errors[0].startsWith(QStringLiteral("Das Dokument „Kasse.saldo“ konnte nicht gesichert werden.")));

        cause.remove(dir.path(), path);
        autosaveNow(*document);
        EXPECT_FALSE(document->isDocumentEdited());
        EXPECT_FALSE(document->autosaveTimer().isActive());
        EXPECT_EQ(decodeFile(path).size(), 21u);

        // A new failure after that success is news again.
        cause.apply(dir.path(), path);
        document->addEntry();
        autosaveNow(*document);
        EXPECT_EQ(dialogs.errors.size(), 2);
        EXPECT_TRUE(document->isDocumentEdited());
    }
}

// --- the file changed by another program ------------------------------------

class OutsideChangeTest : public DocumentSafetyTest {
protected:
    // The document has 3 entries and one more added in the window (an undo
    // step); meanwhile another program writes 7 entries into the file.
    void SetUp() override
    {
        DocumentSafetyTest::SetUp();
        document = openedDocument(3);
        document->addEntry();
        outside = encoded(sampleEntries(7));
        ASSERT_TRUE(writeBytes(path, outside));
    }

    std::unique_ptr<Document> document;
    QByteArray outside;
};

TEST_F(OutsideChangeTest, ReloadShowsTheFileAndForgetsTheWindowsChanges)
{
    dialogs.fileChangedChoices = { Choice::Reload };
    autosaveNow(*document);
    EXPECT_EQ(dialogs.asked, QStringList { QStringLiteral("Kasse.saldo") });
    EXPECT_EQ(readBytes(path), outside); // nothing written
    EXPECT_EQ(namesOf(document->backupEinnahmen()), namesOf(sampleEntries(7)));
    EXPECT_EQ(document->model()->rowCount(), 7);
    EXPECT_EQ(document->undoManager()->count(), 0);
    EXPECT_FALSE(document->isDocumentEdited());

    // Edits after the reload are saved without a question.
    document->addEntry();
    autosaveNow(*document);
    EXPECT_EQ(dialogs.asked.size(), 1);
    EXPECT_EQ(decodeFile(path).size(), 8u);
}

TEST_F(OutsideChangeTest, CancelKeepsTheChangesAndAsksAgainOnlyWhenTheFileChangesOrTheUserSaves)
{
    dialogs.fileChangedChoices = { Choice::Cancel };
    autosaveNow(*document);
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
    document->addEntry();
    autosaveNow(*document);
    EXPECT_EQ(dialogs.asked.size(), 2);
    EXPECT_EQ(readBytes(path), again);

    // "Sichern" asks even about a change that was declined; overwriting saves.
    dialogs.fileChangedChoices = { Choice::Overwrite };
    EXPECT_TRUE(document->saveDocument());
    EXPECT_EQ(dialogs.asked.size(), 3);
    EXPECT_EQ(decodeFile(path).size(), 6u);
    EXPECT_FALSE(document->isDocumentEdited());
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
    dialogs.fileChangedChoices = { Choice::Reload };
    document->addEntry();
    ASSERT_TRUE(writeBytes(path, encoded(sampleEntries(4))));
    EXPECT_TRUE(document->canClose());
    EXPECT_EQ(dialogs.asked.last(), QStringLiteral("Kasse.saldo"));
    EXPECT_FALSE(document->isDocumentEdited());
}

// Neither the same bytes written again as a new file (as a backup tool
// restores it) nor a file deleted or moved away is an outside change: the
// autosave writes the file at its path again.
TEST_F(DocumentSafetyTest, SameBytesOrAMissingFileAreNoOutsideChange)
{
    auto document = openedDocument(3);
    const QString moved = dir.filePath(QStringLiteral("Archiv.saldo"));
    const std::function<void()> changes[] = {
        [&] {
            const QByteArray same = readBytes(path);
            QFile::remove(path);
            writeBytes(path, same);
        },
        [&] { QFile::remove(path); },
        [&] { QFile::rename(path, moved); },
    };
    for (const auto& change : changes) {
        change();
        document->addEntry();
        autosaveNow(*document);
        EXPECT_EQ(decodeFile(path).size(), document->backupEinnahmen().size());
    }
    EXPECT_EQ(decodeFile(moved).size(), 5u);
    EXPECT_TRUE(dialogs.asked.isEmpty());
    EXPECT_TRUE(dialogs.errors.isEmpty());
    EXPECT_FALSE(document->isDocumentEdited());
}

} // namespace
} // namespace saldo::gui
