// Opening a ledger beside which a killed save left a complete, newer file:
// the work is offered as a recovery copy is, and what the user answers is done.
#include "app/Document.h"
#include "app/DocumentController.h"
#include "gui/support/LedgerFixtures.h"
#include "gui/support/Recorders.h"
#include "gui/support/ScriptedDialogs.h"
#include "platform/UserDefaults.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace saldo::gui {
namespace {

using namespace testing;

void writtenSecondsAgo(const QString& path, int seconds)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    ASSERT_TRUE(file.setFileTime(QDateTime::currentDateTime().addSecs(-seconds), QFileDevice::FileModificationTime));
}

TEST(InterruptedSaveTest, OpeningOffersTheNewerWorkAKilledSaveLeft)
{
    for (const bool restore : { true, false }) {
        SCOPED_TRACE(restore);
        QTemporaryDir dir;
        InMemoryUserDefaults defaults;
        ScriptedDialogs dialogs;
        DiagnosticRecorder quiet;
        const QString ledger = dir.filePath(QStringLiteral("Kasse.saldo"));
        const QString left = dir.filePath(QStringLiteral(".Kasse.saldo.Xy7-_0aB"));
        ASSERT_TRUE(writeBytes(ledger, encoded(sampleEntries(3))));
        ASSERT_TRUE(writeBytes(left, encoded(sampleEntries(5))));
        writtenSecondsAgo(ledger, 60);
        writtenSecondsAgo(left, 30);

        DocumentController controller(defaults);
        dialogs.restoreAnswers = { restore };
        Document* document = controller.openDocument(ledger);
        ASSERT_NE(document, nullptr);
        ASSERT_EQ(dialogs.asked.size(), 1);
        EXPECT_TRUE(dialogs.asked[0].startsWith(QStringLiteral("Saldo wurde beim Sichern von „Kasse.saldo“ "
                                                               "unterbrochen.")));
        EXPECT_TRUE(dialogs.asked[0].contains(QStringLiteral("5 Eintraege")));
        EXPECT_EQ(document->backupEinnahmen().size(), restore ? 5u : 3u);
        EXPECT_EQ(document->isDocumentEdited(), restore);
        EXPECT_EQ(QFile::exists(left), restore);
        if (!restore)
            continue;
        // The restored work reaches the file with the next save, and the leftover goes.
        QMetaObject::invokeMethod(&document->autosaveTimer(), "timeout");
        document->finishBackgroundSave();
        EXPECT_EQ(decodeFile(ledger).size(), 5u);
        EXPECT_EQ(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden), QStringList { QStringLiteral("Kasse.saldo") });
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
}

} // namespace
} // namespace saldo::gui
