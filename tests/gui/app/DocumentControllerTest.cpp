// The document controller: each file open once, unreadable files refused with
// one message, the work a killed save left offered, recent files, closing
// everything on quit.
#include "app/DocumentController.h"
#include "app/Document.h"
#include "app/DocumentWindow.h"
#include "app/WindowActions.h"
#include "entrylist/ViewController.h"
#include "gui/support/LedgerFixtures.h"
#include "gui/support/ScriptedDialogs.h"
#include "model/Kategorien.h"
#include "platform/UserDefaults.h"

#include <QAction>
#include <QApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace saldo::gui {
namespace {

using namespace testing;

class DocumentControllerTest : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(dir.isValid()); }
    void TearDown() override { QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); }

    QString ledger(const QString& name, int count)
    {
        const QString path = dir.filePath(name);
        EXPECT_TRUE(writeBytes(path, encoded(sampleEntries(count))));
        return path;
    }

    InMemoryUserDefaults defaults;
    QTemporaryDir dir;
    ScriptedDialogs dialogs;
    DocumentController controller { defaults };
};

TEST_F(DocumentControllerTest, AFileIsOpenedOnceWhateverItsPathIsCalled)
{
    const QString path = ledger(QStringLiteral("Kasse.saldo"), 2);
    ASSERT_TRUE(QDir(dir.path()).mkdir(QStringLiteral("unter")));
    ASSERT_TRUE(QFile::link(path, dir.filePath(QStringLiteral("Verweis.saldo"))));

    Document* first = controller.openDocument(path);
    ASSERT_NE(first, nullptr);
    EXPECT_TRUE(first->windowController()->isVisible());
    EXPECT_EQ(controller.openDocument(dir.path() + QStringLiteral("/unter/../Kasse.saldo")), first);
    EXPECT_EQ(controller.openDocument(dir.filePath(QStringLiteral("Verweis.saldo"))), first);
    EXPECT_EQ(controller.documents().size(), 1u);

    EXPECT_NE(controller.openDocument(ledger(QStringLiteral("Bank.saldo"), 3)), first);
    EXPECT_EQ(controller.documents().size(), 2u);
}

// Unreadable files and missing ones (what the readers refuse is theirs to
// test): each is refused with the one message naming it, opens no window and
// enters no recent list, and the program goes on (a later good file still opens).
TEST_F(DocumentControllerTest, UnreadableFilesAreRefusedOneByOneAndTheProgramGoesOn)
{
    const QString plain = dir.filePath(QStringLiteral("Kaputt.saldo"));
    const QString cut = dir.filePath(QStringLiteral("Halb.saldo"));
    ASSERT_TRUE(writeBytes(plain, QByteArray("bplist00\x01\x02 kein Ledger")));
    ASSERT_TRUE(writeBytes(cut, encoded(sampleEntries(3)).chopped(20)));
    const QStringList files = { plain, dir.filePath(QStringLiteral("Fehlt.saldo")), cut };

    const auto windowsBefore = QApplication::topLevelWidgets().size();
    for (const QString& path : files) {
        const auto errorsBefore = dialogs.errors.size();
        EXPECT_EQ(controller.openDocument(path), nullptr) << path.toStdString();
        ASSERT_EQ(dialogs.errors.size(), errorsBefore + 1) << path.toStdString();
        EXPECT_TRUE(dialogs.errors.back().startsWith(
            QStringLiteral("Das Dokument „%1“ konnte nicht geoeffnet werden.").arg(QFileInfo(path).fileName())));
    }
    EXPECT_EQ(dialogs.errors[0],
        QStringLiteral("Das Dokument „Kaputt.saldo“ konnte nicht geoeffnet werden.\n"
                       "Die Datei ist keine lesbare Saldo-Datei (beschaedigt bei Byte 22)."));
    EXPECT_TRUE(controller.documents().empty());
    EXPECT_EQ(QApplication::topLevelWidgets().size(), windowsBefore);
    EXPECT_TRUE(controller.recentDocumentPaths().isEmpty());
    EXPECT_NE(controller.openDocument(ledger(QStringLiteral("Gut.saldo"), 2)), nullptr);
}

// Opening a ledger beside which a killed save left a complete, newer file:
// the work is offered as a recovery copy is, and what the user answers is
// done. (Which leftovers are offered is the core's rule.)
TEST_F(DocumentControllerTest, OpeningOffersTheNewerWorkAKilledSaveLeft)
{
    for (const bool restore : { true, false }) {
        SCOPED_TRACE(restore);
        const QString name = restore ? QStringLiteral("Kasse.saldo") : QStringLiteral("Bank.saldo");
        const QString path = ledger(name, 3);
        const QString left = dir.filePath(QLatin1Char('.') + name + QStringLiteral(".Xy7-_0aB"));
        ASSERT_TRUE(writeBytes(left, encoded(sampleEntries(5))));
        for (const auto& [file, secondsAgo] : { std::pair { path, 60 }, std::pair { left, 30 } }) {
            QFile written(file);
            ASSERT_TRUE(written.open(QIODevice::ReadWrite));
            written.setFileTime(QDateTime::currentDateTime().addSecs(-secondsAgo), QFileDevice::FileModificationTime);
        }
        dialogs.asked.clear();
        dialogs.restoreAnswers = { restore };
        Document* document = controller.openDocument(path);
        ASSERT_NE(document, nullptr);
        ASSERT_EQ(dialogs.asked.size(), 1);
        EXPECT_TRUE(dialogs.asked[0].startsWith(
            QStringLiteral("Saldo wurde beim Sichern von „%1“ unterbrochen.").arg(name)));
        EXPECT_TRUE(dialogs.asked[0].contains(QStringLiteral("5 Eintraege")));
        EXPECT_EQ(document->backupEinnahmen().size(), restore ? 5u : 3u);
        EXPECT_EQ(document->isDocumentEdited(), restore);
        EXPECT_EQ(QFile::exists(left), restore);
        // The restored work reaches the file with the next save, and the leftover goes.
        QMetaObject::invokeMethod(&document->autosaveTimer(), "timeout");
        document->finishBackgroundSave();
        EXPECT_EQ(decodeFile(path).size(), restore ? 5u : 3u);
        EXPECT_TRUE(QDir(dir.path()).entryList({ QStringLiteral(".*.saldo.*") }, QDir::Files | QDir::Hidden).isEmpty());
    }
}

TEST_F(DocumentControllerTest, RecentFilesAreKeptNewestFirstAndApartFromTheCategories)
{
    QStringList opened;
    for (int i = 0; i < DocumentController::kMaxRecentDocuments + 2; ++i)
        opened << controller.openDocument(ledger(QStringLiteral("Jahr%1.saldo").arg(2000 + i), 1))->filePath();
    controller.openDocument(opened[5]); // already open: moves to the front

    const QStringList recent = controller.recentDocumentPaths();
    ASSERT_EQ(recent.size(), DocumentController::kMaxRecentDocuments);
    EXPECT_EQ(recent[0], opened[5]);
    EXPECT_EQ(recent[1], opened.last());
    EXPECT_FALSE(recent.contains(opened[0]));
    // The category list beside it is untouched.
    EXPECT_EQ(defaults.stringArray(Kategorien::kKey), Kategorien::defaultKategorien());

    // A file that has become unreadable leaves the list when it fails to open.
    ASSERT_TRUE(QFile::remove(opened.last()));
    controller.documentForPath(opened.last())->windowController()->close();
    EXPECT_EQ(controller.openDocument(opened.last()), nullptr);
    EXPECT_EQ(controller.recentDocumentPaths().size(), DocumentController::kMaxRecentDocuments - 1);

    controller.clearRecentDocuments();
    EXPECT_TRUE(controller.recentDocumentPaths().isEmpty());

    // 100,000 recent files (another program's list) took 18 s to show: ten are kept.
    defaults.setStringArray(DocumentController::kRecentDocumentsKey, std::vector<std::string>(100'000, "/tmp/x.saldo"));
    EXPECT_EQ(controller.recentDocumentPaths().size(), DocumentController::kMaxRecentDocuments);
}

// A ledger saved under a name joins the recent list like an opened one, and
// the panels start in the folder of the newest. New and opened ledgers take
// the controller's autosave delay.
TEST_F(DocumentControllerTest, LedgersSavedUnderANameAreRecentAndThePanelsStartBesideThem)
{
    ASSERT_TRUE(QDir(dir.path()).mkdir(QStringLiteral("neu")));
    const QString untitled = QFileInfo(dir.path()).canonicalFilePath() + QStringLiteral("/neu/Erstes.saldo");
    controller.setAutosavingDelay(1.5); // for new and opened ledgers alike
    Document* fresh = controller.newDocument();
    EXPECT_EQ(fresh->autosaveTimer().interval(), 1500);
    dialogs.saveFileNames = { untitled };
    ASSERT_TRUE(fresh->saveDocument());
    EXPECT_EQ(controller.recentDocumentPaths(), QStringList { untitled });

    Document* opened = controller.openDocument(ledger(QStringLiteral("Kasse.saldo"), 1));
    EXPECT_EQ(opened->autosaveTimer().interval(), 1500);
    const QString copy = QFileInfo(dir.path()).canonicalFilePath() + QStringLiteral("/neu/Kopie.saldo");
    dialogs.saveFileNames = { copy };
    ASSERT_TRUE(opened->windowController()->actions()->saveAsAction()->isEnabled());
    opened->windowController()->actions()->saveAsAction()->trigger();
    EXPECT_EQ(opened->filePath(), copy);
    EXPECT_EQ(controller.recentDocumentPaths().front(), copy);

    controller.openDocumentWithDialog(nullptr);
    EXPECT_EQ(dialogs.openDirectories, QStringList { QFileInfo(copy).absolutePath() });
}

TEST_F(DocumentControllerTest, QuittingAsksForEachChangedUntitledDocumentAndStopsAtCancel)
{
    Document* a = controller.newDocument();
    Document* b = controller.newDocument();
    Document* saved = controller.openDocument(ledger(QStringLiteral("Kasse.saldo"), 1));
    a->addEntry();
    b->addEntry();
    saved->addEntry();

    dialogs.saveChoices = { Dialogs::SaveChoice::DontSave, Dialogs::SaveChoice::Cancel };
    EXPECT_FALSE(controller.closeAllDocuments());
    EXPECT_EQ(dialogs.asked.size(), 2);
    EXPECT_EQ(controller.documents().size(), 2u); // b refused; the file was never reached

    dialogs.saveChoices = { Dialogs::SaveChoice::DontSave };
    EXPECT_TRUE(controller.closeAllDocuments());
    EXPECT_TRUE(controller.documents().empty());
    EXPECT_EQ(testing::decodeFile(dir.filePath(QStringLiteral("Kasse.saldo"))).size(), 2u);
}

} // namespace
} // namespace saldo::gui
