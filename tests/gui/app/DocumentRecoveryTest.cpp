// Untitled documents survive a crash: their recovery copies in the autosave
// folder, and what the next start does with the copies it finds.
#include "app/AutosaveStore.h"
#include "app/Document.h"
#include "app/DocumentController.h"
#include "app/DocumentWindow.h"
#include "entrylist/ViewController.h"
#include "gui/support/LedgerFixtures.h"
#include "gui/support/ScriptedDialogs.h"
#include "platform/UserDefaults.h"

#include <QCoreApplication>
#include <QDir>
#include <QLockFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

namespace saldo::gui {
namespace {

using testing::decodeFile;
using testing::encoded;
using testing::sampleEntries;
using testing::ScriptedDialogs;

class DocumentRecoveryTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(dir.isValid());
        folder = dir.filePath(QStringLiteral("Autosave"));
        AutosaveStore::setFolder(folder);
    }
    void TearDown() override
    {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        AutosaveStore::setFolder(QString());
    }

    // An untitled document with its window, "Neu" plus `added` entries, and
    // its recovery copy written by the autosave.
    std::unique_ptr<Document> untitledWithCopy(int added)
    {
        auto document = std::make_unique<Document>(defaults);
        document->makeWindowControllers();
        for (int i = 0; i < added; ++i) {
            document->addEntry();
            document->backupEinnahmen().back()->setName("Beleg " + std::to_string(i));
        }
        EXPECT_TRUE(document->autosaveTimer().isActive());
        QMetaObject::invokeMethod(&document->autosaveTimer(), "timeout");
        document->finishBackgroundSave();
        return document;
    }

    // Leaves a copy of `count` entries behind as a program that crashed
    // does: written, and its lock held by a process that no longer runs.
    QString copyLeftByACrash(int count)
    {
        EXPECT_TRUE(QDir().mkpath(folder));
        const QString path = QDir(folder).filePath(QStringLiteral("Unbenannt-abgestuerzt-%1.saldo").arg(count));
        const QByteArray bytes = encoded(sampleEntries(count));
        const pid_t child = ::fork();
        if (child == 0) {
            QLockFile lock(path + QStringLiteral(".lock"));
            const bool ok = lock.tryLock(0) && testing::writeBytes(path, bytes);
            ::_exit(ok ? 0 : 1); // no destructors: the lock file stays
        }
        int status = 0;
        EXPECT_EQ(::waitpid(child, &status, 0), child);
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
        EXPECT_TRUE(QFile::exists(path + QStringLiteral(".lock")));
        return path;
    }

    InMemoryUserDefaults defaults;
    QTemporaryDir dir;
    QString folder;
    ScriptedDialogs dialogs;
};

TEST_F(DocumentRecoveryTest, AChangedUntitledDocumentKeepsACopyUntilSavedUnderAName)
{
    auto document = untitledWithCopy(2);
    ASSERT_EQ(AutosaveStore::files().size(), 1);
    const QString copy = AutosaveStore::files().front();
    EXPECT_EQ(copy, document->recoveryFilePath());
    EXPECT_EQ(QFileInfo(copy).absolutePath(), QFileInfo(folder).absoluteFilePath());
    EXPECT_EQ(decodeFile(copy).size(), 3u);
    EXPECT_TRUE(document->isDocumentEdited()); // a copy is not a save
    EXPECT_TRUE(document->isUntitled());

    // Later changes go into the same copy.
    document->addEntry();
    QMetaObject::invokeMethod(&document->autosaveTimer(), "timeout");
    document->finishBackgroundSave();
    EXPECT_EQ(AutosaveStore::files(), QStringList { copy });
    EXPECT_EQ(decodeFile(copy).size(), 4u);

    ASSERT_TRUE(document->saveTo(dir.filePath(QStringLiteral("Kasse.saldo"))));
    EXPECT_TRUE(AutosaveStore::files().isEmpty());
    EXPECT_FALSE(QFile::exists(copy + QStringLiteral(".lock")));
    EXPECT_EQ(decodeFile(dir.filePath(QStringLiteral("Kasse.saldo"))).size(), 4u);
}

TEST_F(DocumentRecoveryTest, ClosingWithoutSavingRemovesTheCopyAndCancellingKeepsIt)
{
    auto document = untitledWithCopy(1);
    dialogs.saveChoices = { Dialogs::SaveChoice::Cancel, Dialogs::SaveChoice::DontSave };
    EXPECT_FALSE(document->canClose());
    EXPECT_EQ(AutosaveStore::files().size(), 1);
    EXPECT_TRUE(document->canClose());
    EXPECT_TRUE(AutosaveStore::files().isEmpty());
}

TEST_F(DocumentRecoveryTest, TheNextStartOffersEachCopyLeftByACrash)
{
    const QString kept = copyLeftByACrash(4);
    const QString dropped = copyLeftByACrash(2);
    // A copy of an untitled document that is open right now belongs to this
    // running program: never offered, never deleted.
    auto running = untitledWithCopy(1);
    const QString live = running->recoveryFilePath();

    DocumentController controller(defaults);
    dialogs.restoreAnswers = { true, false };
    controller.startUp({});
    ASSERT_EQ(dialogs.asked.size(), 2);
    for (const QString& question : dialogs.asked)
        EXPECT_TRUE(
            question.startsWith(QStringLiteral("Saldo wurde beendet, ohne ein unbenanntes Dokument zu sichern")));
    EXPECT_TRUE(QFile::exists(live));

    // One restored window and no extra new document; the discarded copy is gone.
    ASSERT_EQ(controller.documents().size(), 1u);
    Document* restored = controller.documents().front();
    const bool keptFirst = dialogs.asked[0].contains(QStringLiteral("4 Eintraege"));
    const QString restoredCopy = keptFirst ? kept : dropped;
    const QString discardedCopy = keptFirst ? dropped : kept;
    EXPECT_TRUE(restored->isUntitled());
    EXPECT_TRUE(restored->isDocumentEdited());
    EXPECT_TRUE(restored->windowController()->isWindowModified());
    EXPECT_EQ(restored->recoveryFilePath(), restoredCopy);
    EXPECT_EQ(restored->backupEinnahmen().size(), keptFirst ? 4u : 2u);
    EXPECT_EQ(restored->backupEinnahmen()[1]->name(), "Posten 2");
    EXPECT_FALSE(QFile::exists(discardedCopy));
    EXPECT_TRUE(QFile::exists(restoredCopy));

    // The restored document keeps its copy up to date, under the same name.
    restored->addEntry();
    QMetaObject::invokeMethod(&restored->autosaveTimer(), "timeout");
    restored->finishBackgroundSave();
    EXPECT_EQ(decodeFile(restoredCopy).size(), keptFirst ? 5u : 3u);

    // A second start while both are running finds nothing to offer.
    DocumentController second(defaults);
    EXPECT_EQ(second.restoreAutosavedDocuments(), 0);
    EXPECT_EQ(dialogs.asked.size(), 2);
}

} // namespace
} // namespace saldo::gui
