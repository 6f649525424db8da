#include "platform/AtomicFileWriter.h"

#include <cerrno>
#include <csignal>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <pthread.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <unistd.h>

namespace saldo {
namespace {

using Kind = FileWriteError::Kind;

// strerror_r comes in two forms; both are safe to call from any thread.
[[maybe_unused]] const char* messageOf(int, const char* buffer)
{
    return buffer;
}
[[maybe_unused]] const char* messageOf(const char* message, const char*)
{
    return message;
}

std::string systemText(int error)
{
    char buffer[256] = {};
    return messageOf(::strerror_r(error, buffer, sizeof buffer), buffer);
}

[[noreturn]] void fail(Kind kind, const std::string& path, const std::string& what, int error)
{
    throw FileWriteError(kind, path, what, error, systemText(error));
}

[[noreturn]] void refuse(const std::string& path, const char* what, const char* detail, int error = 0)
{
    throw FileWriteError(Kind::NotRegularFile, path, what, error, detail);
}

std::string folderOf(const std::string& path)
{
    const std::size_t slash = path.rfind('/');
    return slash == std::string::npos ? "." : slash == 0 ? "/" : path.substr(0, slash);
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
        current = target.front() == '/' ? target : folderOf(current) + "/" + target;
    }
}

// Eight characters no other writer is likely to pick; O_EXCL settles any clash.
std::string randomSuffix(unsigned attempt)
{
    static constexpr char kAlphabet[] = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-_";
    unsigned char noise[8] = {};
    if (::getrandom(noise, sizeof noise, GRND_NONBLOCK) != static_cast<ssize_t>(sizeof noise)) {
        timespec now {};
        ::clock_gettime(CLOCK_MONOTONIC, &now);
        unsigned long long mix = static_cast<unsigned long long>(now.tv_nsec) * 0x9E3779B97F4A7C15ull
            ^ static_cast<unsigned long long>(::getpid()) << 20 ^ attempt;
        for (unsigned char& n : noise) {
            n = static_cast<unsigned char>(mix);
            mix = mix >> 8 | mix << 56;
        }
    }
    std::string suffix;
    for (const unsigned char n : noise)
        suffix += kAlphabet[n % 64];
    return suffix;
}

// A new temporary file beside the target, removed again unless the write went through.
class TemporaryFile {
public:
    TemporaryFile(const std::string& path, const std::string& target, mode_t createMode)
    {
        const std::string folder = folderOf(target);
        // A hidden name of at most 255 bytes, the longest a folder entry may have.
        const std::string base = target.substr(target.rfind('/') + 1, 200);
        for (unsigned attempt = 0; attempt < 100; ++attempt) {
            path_ = (folder == "/" ? "" : folder) + "/." + base + "." + randomSuffix(attempt);
            fd_ = ::open(path_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, createMode);
            if (fd_ >= 0 || errno != EEXIST)
                break;
        }
        if (fd_ < 0)
            fail(Kind::CannotCreate, path, "cannot create a file in " + folder, errno);
    }
    ~TemporaryFile()
    {
        if (fd_ >= 0)
            ::close(fd_);
        if (!renamed_)
            ::unlink(path_.c_str());
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    int fd() const { return fd_; }
    const std::string& path() const { return path_; }
    int close()
    {
        const int result = ::close(fd_);
        fd_ = -1;
        return result;
    }
    void renamed() { renamed_ = true; }

private:
    std::string path_;
    int fd_ = -1;
    bool renamed_ = false;
};

// Writes everything or fails with the first error; a write of nothing counts as a failure.
int writeAll(int fd, std::string_view bytes)
{
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

void replace(const std::string& path, const std::string& target, std::string_view bytes)
{
    struct stat old { };
    const bool exists = ::stat(target.c_str(), &old) == 0;
    // Renaming over a file needs only the folder's permission; a file the user
    // made read-only must not be replaced behind their back. (Asked with the
    // effective identity, which the writes below run under as well.)
    if (exists && ::faccessat(AT_FDCWD, target.c_str(), W_OK, AT_EACCESS) != 0)
        fail(Kind::ReadOnly, path, "the file is read-only", errno);

    // A new file gets what the umask leaves of rw-rw-rw-, as any new file does;
    // a replaced one its old permissions, before any byte is written.
    TemporaryFile temporary(path, target, exists ? old.st_mode & 0777 : 0666);
    if (exists) {
        struct stat made { };
        if (::fstat(temporary.fd(), &made) == 0 && (made.st_uid != old.st_uid || made.st_gid != old.st_gid)) {
            // Keeps the owner when the superuser saves a user's file, and the
            // group where the user belongs to it.
            if (::fchown(temporary.fd(), old.st_uid, old.st_gid) != 0
                && ::fchown(temporary.fd(), static_cast<uid_t>(-1), old.st_gid) != 0) {
                // Neither: the file becomes the writer's, as a new file would.
            }
        }
        // After fchown, which clears set-user-ID and set-group-ID bits.
        if (::fchmod(temporary.fd(), old.st_mode & 07777) != 0)
            fail(Kind::CannotCreate, path, "cannot set the permissions", errno);
    }
    if (const int error = writeAll(temporary.fd(), bytes))
        fail(Kind::WriteFailed, path, "cannot write", error);
    if (::fsync(temporary.fd()) != 0)
        fail(Kind::WriteFailed, path, "cannot flush to disk", errno);
    if (temporary.close() != 0)
        fail(Kind::WriteFailed, path, "cannot write", errno);
    if (::rename(temporary.path().c_str(), target.c_str()) != 0) {
        const int error = errno;
        const Kind kind = error == EACCES || error == EPERM || error == EROFS ? Kind::ReadOnly
            : error == EISDIR                                                 ? Kind::NotRegularFile
                                                                              : Kind::WriteFailed;
        fail(kind, path, "cannot replace the file", error);
    }
    temporary.renamed();
    // The rename itself reaches the disk with the folder. The file is already
    // complete under its name, so a failure here has nothing left to undo.
    const int folder = ::open(folderOf(target).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (folder >= 0) {
        ::fsync(folder);
        ::close(folder);
    }
}

// While it lives, a reader that went away makes a write to a pipe fail with
// EPIPE instead of ending the process with SIGPIPE. Only the calling thread's
// signal mask changes, and a SIGPIPE it caused is taken off again.
class PipeSignalBlock {
public:
    PipeSignalBlock()
    {
        sigemptyset(&pipe_);
        sigaddset(&pipe_, SIGPIPE);
        sigset_t pending;
        sigpending(&pending);
        wasPending_ = sigismember(&pending, SIGPIPE) == 1;
        ::pthread_sigmask(SIG_BLOCK, &pipe_, &previous_);
    }
    ~PipeSignalBlock()
    {
        sigset_t pending;
        sigpending(&pending);
        if (!wasPending_ && sigismember(&pending, SIGPIPE) == 1) {
            const timespec now {};
            while (::sigtimedwait(&pipe_, nullptr, &now) < 0 && errno == EINTR) { }
        }
        ::pthread_sigmask(SIG_SETMASK, &previous_, nullptr);
    }
    PipeSignalBlock(const PipeSignalBlock&) = delete;
    PipeSignalBlock& operator=(const PipeSignalBlock&) = delete;

private:
    sigset_t pipe_;
    sigset_t previous_;
    bool wasPending_ = false;
};

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
    if (error == 0) {
        PipeSignalBlock quiet;
        error = writeAll(fd, bytes);
    }
    if (::close(fd) != 0 && error == 0)
        error = errno;
    if (error != 0)
        fail(Kind::WriteFailed, path, "cannot write", error);
}

} // namespace

void AtomicFileWriter::write(const std::string& path, std::string_view bytes)
{
    struct stat info { };
    if (::stat(path.c_str(), &info) != 0) {
        const int error = errno;
        if (error != ENOENT)
            fail(Kind::CannotCreate, path, "cannot reach the file", error);
        // A new file, or one a symbolic link names that is not there yet.
        replace(path, endOfLinks(path), bytes);
    } else if (S_ISREG(info.st_mode)) {
        replace(path, endOfLinks(path), bytes);
    } else if (S_ISCHR(info.st_mode) || S_ISFIFO(info.st_mode)) {
        writeThrough(path, S_ISFIFO(info.st_mode), bytes);
    } else if (S_ISDIR(info.st_mode)) {
        refuse(path, "not a regular file", "a directory");
    } else if (S_ISBLK(info.st_mode)) {
        refuse(path, "not a regular file", "a block device");
    } else {
        refuse(path, "not a regular file", "a socket");
    }
}

} // namespace saldo
