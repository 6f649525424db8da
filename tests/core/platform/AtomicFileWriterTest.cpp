// Writing a file the user named: a regular file is replaced whole or not at
// all, links stay links, devices and pipes are never replaced by a file, and
// every failure says what kind it was and leaves no temporary file. Reading
// a file another program made: only a regular one, never waiting on a pipe.
#include "platform/AtomicFileWriter.h"
#include "platform/SmallFile.h"

#include "core/support/TestSupport.h"
#include "core/support/Unprivileged.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <functional>
#include <optional>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <thread>
#include <unistd.h>

namespace saldo {
namespace {

namespace fs = std::filesystem;
using Kind = FileWriteError::Kind;
using namespace testing;

// The kind a write fails with, or nothing when it succeeds.
std::optional<Kind> failureOf(const fs::path& path, std::string_view bytes, std::string* message = nullptr)
{
    try {
        AtomicFileWriter::write(path.string(), bytes);
    } catch (const FileWriteError& e) {
        if (message)
            *message = e.what();
        return e.kind();
    }
    return std::nullopt;
}

mode_t modeOf(const fs::path& path)
{
    struct stat info { };
    EXPECT_EQ(::stat(path.c_str(), &info), 0) << path;
    return info.st_mode;
}

using AtomicFileWriterTest = testing::TempDirTest;

TEST_F(AtomicFileWriterTest, ReplacesRegularFilesKeepingPermissionsOwnersAndLinksButNoReadOnlyOne)
{
    // A new file gets what the umask leaves of rw-rw-rw-.
    const fs::path file = dir / "Kasse.saldo";
    const mode_t umask = ::umask(027);
    EXPECT_EQ(failureOf(file, "eins"), std::nullopt);
    ::umask(umask);
    EXPECT_EQ(modeOf(file) & 07777, 0640u);

    // A replaced one keeps its permissions, and its owner when the superuser writes it.
    ASSERT_EQ(::chmod(file.c_str(), 0604), 0);
    const bool root = ::geteuid() == 0;
    if (root) {
        ASSERT_EQ(::chown(file.c_str(), testing::Unprivileged::kNobody, testing::Unprivileged::kNobody), 0);
    }
    EXPECT_EQ(failureOf(file, "zwei, laenger"), std::nullopt);
    struct stat info { };
    ASSERT_EQ(::stat(file.c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 07777, 0604u);
    EXPECT_EQ(info.st_uid, root ? testing::Unprivileged::kNobody : ::geteuid());

    // Links stay links: a chain of a relative and an absolute link, and a
    // link to a name that is not there yet, which is made.
    fs::create_directory(dir / "Ablage");
    fs::create_symlink("../Kasse.saldo", dir / "Ablage" / "relativ");
    fs::create_symlink(dir / "Ablage" / "relativ", dir / "kette");
    EXPECT_EQ(failureOf(dir / "kette", "drei"), std::nullopt);
    EXPECT_EQ(readFile(file), "drei");
    fs::create_symlink("Neu.saldo", dir / "Ablage" / "offen");
    EXPECT_EQ(failureOf(dir / "Ablage" / "offen", "vier"), std::nullopt);
    EXPECT_TRUE(fs::is_symlink(dir / "Ablage" / "offen"));
    EXPECT_EQ(readFile(dir / "Ablage" / "Neu.saldo"), "vier");

    // No temporary file is left anywhere.
    EXPECT_EQ(namesIn(dir), (std::vector<std::string> { "Ablage", "Kasse.saldo", "kette" }));
    EXPECT_EQ(namesIn(dir / "Ablage"), (std::vector<std::string> { "Neu.saldo", "offen", "relativ" }));

    // Permissions that let nobody write: the superuser could, but is refused
    // like everybody else. The name's control characters stay on one line.
    const fs::path locked = dir / "Zeile\neins\tzwei";
    std::ofstream(locked) << "alt";
    fs::permissions(locked, fs::perms::owner_read | fs::perms::group_read | fs::perms::others_read);
    std::string message;
    EXPECT_EQ(failureOf(locked, "neu", &message), Kind::ReadOnly);
    EXPECT_EQ(readFile(locked), "alt");
    EXPECT_EQ(message, (dir / "Zeile\\neins\\tzwei").string() + ": the file is read-only: Permission denied");
}

// Targets that are not regular files. Device nodes are made in the test's own
// folder, so that no mistake can ever replace a real device. Without the
// privilege to make them, links to the real ones do: an unprivileged writer
// cannot replace anything in /dev. A superuser that may not make device nodes
// skips these cases (empty path).
fs::path deviceNode(const fs::path& folder, const char* name, unsigned minor)
{
    const fs::path node = folder / name;
    if (::mknod(node.c_str(), S_IFCHR | 0666, makedev(1, minor)) == 0)
        return node;
    if (::geteuid() == 0)
        return {};
    fs::create_symlink(std::string("/dev/") + name, node);
    return node;
}

TEST_F(AtomicFileWriterTest, NonRegularTargetsAreWrittenThroughOrRefusedButNeverReplaced)
{
    ASSERT_EQ(::mkfifo((dir / "leer").c_str(), 0600), 0);
    fs::create_directory(dir / "Ziel");
    fs::create_symlink(dir / "Ziel", dir / "zum-Ordner");
    const struct {
        fs::path path;
        std::optional<Kind> failure;
        const char* reason; // the message after "PATH: "
        mode_t typeAfter; // what the name is afterwards, links followed
    } targets[] = {
        { deviceNode(dir, "null", 3), std::nullopt, "", S_IFCHR },
        { deviceNode(dir, "full", 7), Kind::WriteFailed, "cannot write: No space left on device", S_IFCHR },
        { dir / "leer", Kind::NotRegularFile, "cannot write to the pipe: no program reads from it", S_IFIFO },
        { dir / "zum-Ordner", Kind::NotRegularFile, "not a regular file: a directory", S_IFDIR },
    };
    for (const auto& target : targets) {
        SCOPED_TRACE(target.path);
        if (target.path.empty())
            continue;
        const bool wasLink = fs::is_symlink(target.path);
        std::string message;
        EXPECT_EQ(failureOf(target.path, "Inhalt", &message), target.failure) << message;
        if (target.failure) {
            EXPECT_EQ(message, target.path.string() + ": " + target.reason);
        }
        EXPECT_EQ(modeOf(target.path) & S_IFMT, target.typeAfter);
        EXPECT_EQ(fs::is_symlink(target.path), wasLink);
    }
    EXPECT_TRUE(fs::is_empty(dir / "Ziel"));

    // A pipe that a program reads from gets every byte.
    const fs::path pipe = dir / "Rohr";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    std::string received;
    std::thread reader([&] { received = readFile(pipe); });
    // Until the reader has opened its end, the pipe is refused; try again.
    const std::string bytes(200'000, 'x'); // more than the pipe holds at once
    std::optional<Kind> failure = Kind::NotRegularFile;
    for (int i = 0; i < 2000 && failure == Kind::NotRegularFile; ++i) {
        failure = failureOf(pipe, bytes);
        if (failure)
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    if (failure)
        std::ofstream(pipe) << ""; // lets the reader finish
    reader.join();
    EXPECT_EQ(failure, std::nullopt);
    EXPECT_EQ(received, bytes);
    EXPECT_EQ(modeOf(pipe) & S_IFMT, static_cast<mode_t>(S_IFIFO));
}

rlimit g_sizeLimit {};

TEST_F(AtomicFileWriterTest, FailuresSayTheirKindAndLeaveTheOldFileWholeAndNoTemporary)
{
    const fs::path file = dir / "Kasse.saldo";
    const std::string old(10'000, 'a'), replacement(20'000, 'b');
    // The cause is put in place and removed again as an unprivileged user.
    const auto expectFailure
        = [&](Kind kind, const std::function<fs::path()>& apply, const std::function<void()>& remove) {
              AtomicFileWriter::write(file.string(), old);
              std::string message;
              {
                  testing::Unprivileged nobody(dir);
                  EXPECT_EQ(failureOf(apply(), replacement, &message), kind) << message;
                  remove();
              }
              EXPECT_EQ(readFile(file), old);
              EXPECT_EQ(namesIn(dir), std::vector<std::string> { "Kasse.saldo" });
              // Once the cause is gone, the same write goes through.
              fs::permissions(file, fs::perms::owner_read | fs::perms::owner_write);
              EXPECT_EQ(failureOf(file, replacement), std::nullopt);
              fs::remove(file);
          };
    const auto readOnly = fs::perms::owner_read | fs::perms::owner_exec;
    expectFailure(
        Kind::ReadOnly, [&] { return fs::permissions(file, readOnly), file; }, [] {});
    expectFailure(
        Kind::CannotCreate, [&] { return fs::permissions(dir, readOnly), file; },
        [&] { fs::permissions(dir, fs::perms::owner_all); });
    expectFailure(
        Kind::CannotCreate, [&] { return dir / "fehlt" / "Kasse.saldo"; }, [] {});
    // A file-size limit makes writes fail as a full disk does, for every
    // user; its signal, left at its default, would end the process.
    expectFailure(
        Kind::WriteFailed,
        [&] {
            ::getrlimit(RLIMIT_FSIZE, &g_sizeLimit);
            rlimit small = g_sizeLimit;
            small.rlim_cur = old.size() / 2;
            ::setrlimit(RLIMIT_FSIZE, &small);
            return file;
        },
        [] { ::setrlimit(RLIMIT_FSIZE, &g_sizeLimit); });
}

// A named pipe given as a statement used to hold the program until some
// writer opened it, and a directory passed for a file too large to read.
TEST_F(AtomicFileWriterTest, SmallFilesAreReadWholeOnlyWhenRegularAndNeverWaitedFor)
{
    const auto file = [&](const char* name, std::size_t size) {
        std::ofstream(dir / name, std::ios::binary) << std::string(size, 'x');
        return (dir / name).string();
    };
    ASSERT_EQ(::mkfifo((dir / "pipe").c_str(), 0600), 0);
    using Fault = SmallFile::Fault;
    const std::tuple<std::string, std::optional<Fault>, int, std::string> rows[] = {
        { file("exact", 64), std::nullopt, 0, std::string(64, 'x') },
        { file("empty", 0), std::nullopt, 0, "" },
        { file("larger", 65), Fault::TooLarge, 0, "" },
        { (dir / "missing").string(), Fault::CannotOpen, ENOENT, "" },
        { dir.string(), Fault::NotRegular, 0, "" },
        { (dir / "pipe").string(), Fault::NotRegular, 0, "" },
        { "/dev/zero", Fault::NotRegular, 0, "" },
    };
    for (const auto& [path, fault, error, bytes] : rows) {
        const SmallFile::Outcome outcome = SmallFile::read(path, 64);
        EXPECT_EQ(outcome.fault, fault) << path;
        EXPECT_EQ(outcome.error, error) << path;
        EXPECT_EQ(outcome.bytes, bytes) << path;
    }
}

} // namespace
} // namespace saldo
