#include "platform/AtomicFileWriter.h"

#include <cerrno>
#include <csignal>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <pthread.h>
#include <sys/stat.h>
#include <unistd.h>

namespace saldo {
namespace {

using Kind = FileWriteError::Kind;

[[noreturn]] void fail(Kind kind, const std::string& path, const std::string& what, int error)
{
    throw FileWriteError::fromSystem(kind, path, what, error);
}

[[noreturn]] void refuse(const std::string& path, const char* what, const char* detail, int error = 0)
{
    throw FileWriteError(Kind::NotRegularFile, path, what, error, detail);
}

// The name a chain of symbolic links ends in; `path` itself when it is no
// link. The last name need not exist: a link to a missing file makes it.
std::string endOfLinks(const std::string& path)
{
    std::string current = path;
    for (int hops = 0;; ++hops) {
        struct stat info { };
        if (::lstat(current.c_str(), &info) != 0 || !S_ISLNK(info.st_mode))
            return current;
        if (hops == 40)
            fail(Kind::CannotCreate, path, "cannot follow the symbolic link", ELOOP);
        std::string target(static_cast<std::size_t>(info.st_size > 0 ? info.st_size : 255) + 1, '\0');
        const ssize_t length = ::readlink(current.c_str(), target.data(), target.size());
        if (length < 0)
            fail(Kind::CannotCreate, path, "cannot follow the symbolic link", errno);
        if (static_cast<std::size_t>(length) == target.size()) // grew meanwhile: read again
            continue;
        target.resize(static_cast<std::size_t>(length));
        current = target.front() == '/' ? target : TemporaryFile::folderOf(current) + "/" + target;
    }
}

// While it lives, the signals a write itself can raise on the calling thread
// do not end the process: a reader that went away makes a write to a pipe fail
// with EPIPE instead of SIGPIPE, and the file-size limit makes it fail with
// EFBIG instead of SIGXFSZ. Only the calling thread's signal mask changes, and
// such a signal it caused is taken off again.
class WriteSignalBlock {
public:
    WriteSignalBlock()
    {
        sigemptyset(&signals_);
        sigaddset(&signals_, SIGPIPE);
        sigaddset(&signals_, SIGXFSZ);
        sigpending(&wasPending_);
        ::pthread_sigmask(SIG_BLOCK, &signals_, &previous_);
    }
    ~WriteSignalBlock()
    {
        sigset_t pending;
        sigpending(&pending);
        for (const int signal : { SIGPIPE, SIGXFSZ }) {
            if (sigismember(&wasPending_, signal) == 1 || sigismember(&pending, signal) != 1)
                continue;
            sigset_t one;
            sigemptyset(&one);
            sigaddset(&one, signal);
            const timespec now {};
            while (::sigtimedwait(&one, nullptr, &now) < 0 && errno == EINTR) { }
        }
        ::pthread_sigmask(SIG_SETMASK, &previous_, nullptr);
    }
    WriteSignalBlock(const WriteSignalBlock&) = delete;
    WriteSignalBlock& operator=(const WriteSignalBlock&) = delete;

private:
    sigset_t signals_;
    sigset_t previous_;
    sigset_t wasPending_;
};

// Writes everything or fails with the first error; a write of nothing counts as a failure.
int writeAll(int fd, std::string_view bytes)
{
    WriteSignalBlock quiet;
    while (!bytes.empty()) {
        const ssize_t n = ::write(fd, bytes.data(), bytes.size());
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            return n < 0 ? errno : EIO;
        bytes.remove_prefix(static_cast<std::size_t>(n));
    }
    return 0;
}

AtomicFileWriter::Result replace(
    const std::string& path, const std::string& target, std::string_view bytes, const AtomicFileWriter::Options& options)
{
    struct stat old { };
    const bool exists = ::stat(target.c_str(), &old) == 0;
    // Renaming over a file needs only the folder's permission; a file the user
    // made read-only must not be replaced behind their back. (Asked with the
    // effective identity, which the writes below run under as well. The
    // superuser may write any file, so permissions that let nobody write it
    // are asked for as well.)
    if (exists && ::faccessat(AT_FDCWD, target.c_str(), W_OK, AT_EACCESS) != 0)
        fail(Kind::ReadOnly, path, "the file is read-only", errno);
    if (exists && (old.st_mode & 0222) == 0)
        fail(Kind::ReadOnly, path, "the file is read-only", EACCES);
    if (exists && options.holdsLedger && options.holdsLedger(target))
        throw FileWriteError(Kind::HoldsLedger, path, "holds a ledger", 0, "only the ledger's own save writes over it");

    // A new file gets what the umask leaves of rw-rw-rw-, as any new file does;
    // a replaced one its old permissions, before any byte is written.
    auto temporary = std::make_unique<TemporaryFile>(path, target, exists ? old.st_mode & 0777 : 0666);
    if (exists) {
        struct stat made { };
        if (::fstat(temporary->fd(), &made) == 0 && (made.st_uid != old.st_uid || made.st_gid != old.st_gid)) {
            // Keeps the owner when the superuser saves a user's file, and the
            // group where the user belongs to it.
            if (::fchown(temporary->fd(), old.st_uid, old.st_gid) != 0
                && ::fchown(temporary->fd(), static_cast<uid_t>(-1), old.st_gid) != 0) {
                // Neither: the file becomes the writer's, as a new file would.
            }
        }
        // After fchown, which clears set-user-ID and set-group-ID bits.
        if (::fchmod(temporary->fd(), old.st_mode & 07777) != 0)
            fail(Kind::CannotCreate, path, "cannot set the permissions", errno);
    }
    if (const int error = writeAll(temporary->fd(), bytes))
        fail(Kind::WriteFailed, path, "cannot write", error);
    if (::fsync(temporary->fd()) != 0)
        fail(Kind::WriteFailed, path, "cannot flush to disk", errno);
    AtomicFileWriter::Result result;
    if (options.mayReplace && !options.mayReplace()) {
        result.kept = std::move(temporary);
        return result;
    }
    result.file = temporary->renameOverTarget();
    return result;
}

void writeThrough(const std::string& path, bool pipe, std::string_view bytes)
{
    // Without O_NONBLOCK, opening a pipe waits for a reader, possibly forever.
    const int fd = ::open(path.c_str(), O_WRONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (fd < 0) {
        const int error = errno;
        if (error == ENXIO && pipe)
            refuse(path, "cannot write to the pipe", "no program reads from it", error);
        fail(error == EACCES || error == EPERM || error == EROFS ? Kind::ReadOnly : Kind::WriteFailed, path,
            "cannot open", error);
    }
    struct stat info { };
    int error = ::fstat(fd, &info) != 0 ? errno : 0;
    if (error == 0 && !S_ISCHR(info.st_mode) && !S_ISFIFO(info.st_mode)) {
        ::close(fd);
        refuse(path, "not a regular file", "it changed while being opened");
    }
    const int flags = ::fcntl(fd, F_GETFL);
    if (error == 0 && (flags < 0 || ::fcntl(fd, F_SETFL, flags & ~O_NONBLOCK) != 0))
        error = errno;
    if (error == 0)
        error = writeAll(fd, bytes);
    if (::close(fd) != 0 && error == 0)
        error = errno;
    if (error != 0)
        fail(Kind::WriteFailed, path, "cannot write", error);
}

} // namespace

AtomicFileWriter::Result AtomicFileWriter::write(const std::string& path, std::string_view bytes, const Options& options)
{
    struct stat info { };
    if (::stat(path.c_str(), &info) != 0) {
        const int error = errno;
        if (error != ENOENT)
            fail(Kind::CannotCreate, path, "cannot reach the file", error);
        // A new file, or one a symbolic link names that is not there yet.
        return replace(path, endOfLinks(path), bytes, options);
    }
    if (S_ISREG(info.st_mode))
        return replace(path, endOfLinks(path), bytes, options);
    if (S_ISCHR(info.st_mode) || S_ISFIFO(info.st_mode)) {
        writeThrough(path, S_ISFIFO(info.st_mode), bytes);
        return {};
    }
    if (S_ISDIR(info.st_mode))
        refuse(path, "not a regular file", "a directory");
    if (S_ISBLK(info.st_mode))
        refuse(path, "not a regular file", "a block device");
    refuse(path, "not a regular file", "a socket");
}

} // namespace saldo
