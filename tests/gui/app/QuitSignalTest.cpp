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
#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <iostream>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

extern char** environ;

namespace saldo::gui {
namespace {

using namespace testing;

constexpr const char* kLedgerVariable = "SALDO_QUIT_TEST_LEDGER";
constexpr const char* kAutosaveVariable = "SALDO_QUIT_TEST_AUTOSAVE";

// The program as it runs: the document controller with the signals
// installed, a named ledger and an untitled document, each with an edit the
// autosave has not yet saved. Runs only as the child of the test below.
TEST(QuitSignalTest, ChildWithUnsavedEdits)
{
    const char* ledger = std::getenv(kLedgerVariable);
    if (!ledger)
        GTEST_SKIP() << "runs as the child of SigtermHalfASecondAfterAnEditKeepsIt";
    AutosaveStore::setFolder(QString::fromLocal8Bit(std::getenv(kAutosaveVariable)));
    ScriptedDialogs dialogs;
    InMemoryUserDefaults defaults;
    DocumentController controller(defaults);
    controller.quitOnSignals();
    Document* named = controller.openDocument(QString::fromLocal8Bit(ledger));
    ASSERT_NE(named, nullptr);
    named->addEntry();
    controller.newDocument()->addEntry();
    std::cout << "edited" << std::endl;
    QApplication::exec();
    ADD_FAILURE() << "the program went on after the signal";
}

// Starts this test program as the child above, its standard output piped to `output`.
pid_t startChild(const QString& ledger, const QString& autosave, int* output)
{
    int pipeFds[2];
    if (::pipe(pipeFds) != 0)
        return -1;
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, pipeFds[1], STDOUT_FILENO);
    ::setenv(kLedgerVariable, ledger.toLocal8Bit().constData(), 1);
    ::setenv(kAutosaveVariable, autosave.toLocal8Bit().constData(), 1);
    char self[] = "/proc/self/exe";
    char filter[] = "--gtest_filter=QuitSignalTest.ChildWithUnsavedEdits";
    char* argv[] = { self, filter, nullptr };
    pid_t child = -1;
    if (::posix_spawn(&child, self, &actions, nullptr, argv, environ) != 0)
        child = -1;
    ::unsetenv(kLedgerVariable);
    ::unsetenv(kAutosaveVariable);
    posix_spawn_file_actions_destroy(&actions);
    ::close(pipeFds[1]);
    *output = pipeFds[0];
    return child;
}

// True once the child wrote `line`; false when it ended or 30 s passed.
bool waitForLine(int fd, const std::string& line)
{
    std::string seen;
    for (int polls = 0; seen.find(line + "\n") == std::string::npos && polls < 300; ++polls) {
        pollfd ready { fd, POLLIN, 0 };
        char buffer[512];
        const ssize_t n = ::poll(&ready, 1, 100) > 0 ? ::read(fd, buffer, sizeof buffer) : 1;
        if (n <= 0)
            return false;
        if (ready.revents)
            seen.append(buffer, static_cast<std::size_t>(n));
    }
    return seen.find(line + "\n") != std::string::npos;
}

TEST(QuitSignalTest, SigtermHalfASecondAfterAnEditKeepsIt)
{
    QTemporaryDir dir;
    const QString ledger = dir.filePath(QStringLiteral("Kasse.saldo"));
    const QString autosave = dir.filePath(QStringLiteral("Autosave"));
    ASSERT_TRUE(writeBytes(ledger, encoded(sampleEntries(3))));
    int output = -1;
    const pid_t child = startChild(ledger, autosave, &output);
    ASSERT_GT(child, 0);
    const bool edited = waitForLine(output, "edited");
    if (edited)
        std::this_thread::sleep_for(std::chrono::milliseconds(500));
    ::kill(child, SIGTERM);
    // The child saves and ends at once; a hung one is ended after 30 s.
    int status = -1;
    for (int polls = 0; ::waitpid(child, &status, WNOHANG) == 0; ++polls) {
        if (polls == 3000)
            ::kill(child, SIGKILL);
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    ::close(output);
    ASSERT_TRUE(edited);

    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
    EXPECT_EQ(decodeFile(ledger).size(), 4u);
    const QStringList copies = QDir(autosave).entryList({ QStringLiteral("Unbenannt-*.saldo") }, QDir::Files);
    ASSERT_EQ(copies.size(), 1);
    // The starting entry "Neu" and the one added.
    EXPECT_EQ(decodeFile(QDir(autosave).filePath(copies[0])).size(), 2u);
}

} // namespace
} // namespace saldo::gui
