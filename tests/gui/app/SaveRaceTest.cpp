// Regression: the autosave checked the file for another program's change
// before its worker coded the entries, and took the file's stamp after its
// rename; a change made while the worker coded a large ledger was overwritten
// without a question.
#include "app/Document.h"
#include "gui/support/LedgerFixtures.h"
#include "gui/support/Recorders.h"
#include "gui/support/ScriptedDialogs.h"
#include "platform/UserDefaults.h"

#include <QDir>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace saldo::gui {
namespace {

using namespace testing;
using Choice = Dialogs::FileChangedChoice;

constexpr int kLarge = 100'000;

TEST(SaveRaceTest, AChangeWhileTheWorkerCodesIsAskedAboutAndOnlyTheAnswerReplacesTheFile)
{
    // The document holds a ledger large enough that coding it takes a good
    // tenth of a second, plus one entry; the other program writes 7 entries
    // right after the autosave checked the file and gave the entries to its
    // worker.
    const struct {
        Choice choice;
        std::size_t inFile; // entries in the file afterwards
        bool edited;
    } cases[] = { { Choice::Cancel, 7, true }, { Choice::Overwrite, kLarge + 1u, false }, { Choice::Reload, 7, false } };
    const QByteArray outside = encoded(sampleEntries(7));
    for (const auto& c : cases) {
        SCOPED_TRACE(static_cast<int>(c.choice));
        QTemporaryDir dir;
        InMemoryUserDefaults defaults;
        ScriptedDialogs dialogs;
        DiagnosticRecorder quiet;
        const QString path = dir.filePath(QStringLiteral("Kasse.saldo"));
        auto document = openedDocument(defaults, path, kLarge);
        document->addEntry();
        dialogs.fileChangedChoices = { c.choice };
        QMetaObject::invokeMethod(&document->autosaveTimer(), "timeout");
        ASSERT_TRUE(document->isSaving());
        ASSERT_TRUE(writeBytes(path, outside));
        document->finishBackgroundSave();
        EXPECT_EQ(dialogs.asked, QStringList { QStringLiteral("Kasse.saldo") });
        EXPECT_EQ(decodeFile(path).size(), c.inFile);
        EXPECT_EQ(document->isDocumentEdited(), c.edited);
        EXPECT_EQ(document->backupEinnahmen().size(), c.choice == Choice::Reload ? 7u : kLarge + 1u);
        // The bytes waited beside the file until the answer, and no longer.
        EXPECT_EQ(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden), QStringList { QStringLiteral("Kasse.saldo") });
    }
}

} // namespace
} // namespace saldo::gui
