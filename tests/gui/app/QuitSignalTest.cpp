// Regression: SIGTERM, SIGINT and SIGHUP ended the program at once, so a
// logout, a shutdown or a kill lost the edits of the last seconds before the
// autosave, and an untitled ledger's recovery copy too.
#include "app/AutosaveStore.h"
#include "app/Document.h"
#include "app/DocumentController.h"
#include "gui/support/LedgerFixtures.h"
#include "gui/support/ScriptedDialogs.h"
#include "platform/UserDefaults.h"

#include <QApplication>
#include <QDir>
#include <QTemporaryDir>
#include <QTimer>
#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <spawn.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

extern char** environ;

namespace saldo::gui {
namespace {

using namespace testing;

constexpr const char* kFolderVariable = "SALDO_QUIT_TEST_FOLDER";

// The program as it runs: the document controller with the signals
// installed, a named ledger and an untitled document, each with an edit the
// autosave has not yet saved, and a SIGTERM half a second later. Runs only as
// the child of the test below, and ends by the signal, never here.
TEST(QuitSignalTest, ChildWithUnsavedEdits)
{
    const char* folder = std::getenv(kFolderVariable);
    if (!folder)
        GTEST_SKIP() << "runs as the child of SigtermHalfASecondAfterAnEditKeepsIt";
    const QDir dir(QString::fromLocal8Bit(folder));
    AutosaveStore::setFolder(dir.filePath(QStringLiteral("Autosave")));
    ScriptedDialogs dialogs;
    InMemoryUserDefaults defaults;
    DocumentController controller(defaults);
    controller.quitOnSignals();
    Document* named = controller.openDocument(dir.filePath(QStringLiteral("Kasse.saldo")));
    ASSERT_NE(named, nullptr);
    named->addEntry();
    controller.newDocument()->addEntry();
    QTimer::singleShot(500, [] { ::kill(::getpid(), SIGTERM); });
    QApplication::exec();
    ADD_FAILURE() << "the program went on after the signal";
}

TEST(QuitSignalTest, SigtermHalfASecondAfterAnEditKeepsIt)
{
    QTemporaryDir dir;
    const QString ledger = dir.filePath(QStringLiteral("Kasse.saldo"));
    ASSERT_TRUE(writeBytes(ledger, encoded(sampleEntries(3))));
    // This test program again, as the child above.
    ::setenv(kFolderVariable, dir.path().toLocal8Bit().constData(), 1);
    char self[] = "/proc/self/exe";
    char filter[] = "--gtest_filter=QuitSignalTest.ChildWithUnsavedEdits";
    char brief[] = "--gtest_brief=1";
    char* argv[] = { self, filter, brief, nullptr };
    pid_t child = -1;
    const int spawned = ::posix_spawn(&child, self, nullptr, nullptr, argv, environ);
    ::unsetenv(kFolderVariable);
    ASSERT_EQ(spawned, 0);
    // The child saves and ends at once; a hung one is ended after 30 s.
    int status = -1;
    for (int polls = 0; ::waitpid(child, &status, WNOHANG) == 0; ++polls) {
        if (polls == 3000)
            ::kill(child, SIGKILL);
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }

    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
    EXPECT_EQ(decodeFile(ledger).size(), 4u);
    const QDir autosave(dir.filePath(QStringLiteral("Autosave")));
    const QStringList copies = autosave.entryList({ QStringLiteral("Unbenannt-*.saldo") }, QDir::Files);
    ASSERT_EQ(copies.size(), 1);
    // The starting entry "Neu" and the one added.
    EXPECT_EQ(decodeFile(autosave.filePath(copies[0])).size(), 2u);
}

} // namespace
} // namespace saldo::gui
