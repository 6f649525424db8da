#include "platform/TemporaryFile.h"

#include "platform/FileWriteError.h"

#include <algorithm>
#include <cerrno>
#include <ctime>
#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/random.h>
#include <unistd.h>

namespace saldo {

namespace {

using Kind = FileWriteError::Kind;

constexpr char kAlphabet[] = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-_";
constexpr std::size_t kSuffixLength = 8;
constexpr std::size_t kLongestBase = 200;

// Eight characters no other writer is likely to pick; O_EXCL settles any clash.
std::string randomSuffix(unsigned attempt)
{
    unsigned char noise[kSuffixLength] = {};
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

std::string baseOf(const std::string& target)
{
    return target.substr(target.rfind('/') + 1, kLongestBase);
}

std::string inFolder(const std::string& folder, const std::string& name)
{
    return (folder == "/" ? "" : folder) + "/" + name;
}

} // namespace

std::string TemporaryFile::folderOf(const std::string& path)
{
    const std::size_t slash = path.rfind('/');
    return slash == std::string::npos ? "." : slash == 0 ? "/" : path.substr(0, slash);
}

TemporaryFile::TemporaryFile(const std::string& path, const std::string& target, mode_t mode)
    : userPath_(path)
    , target_(target)
{
    const std::string folder = folderOf(target);
    // A hidden name of at most 255 bytes, the longest a folder entry may have.
    const std::string base = baseOf(target);
    for (unsigned attempt = 0; attempt < 100; ++attempt) {
        path_ = inFolder(folder, "." + base + "." + randomSuffix(attempt));
        fd_ = ::open(path_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
        if (fd_ >= 0 || errno != EEXIST)
            break;
    }
    if (fd_ < 0)
        throw FileWriteError::fromSystem(Kind::CannotCreate, path, "cannot create a file in " + folder, errno);
    // Held until this object goes (a file system without locks leaves it unlocked).
    ::flock(fd_, LOCK_EX | LOCK_NB);
}

TemporaryFile::~TemporaryFile()
{
    // Removed while still locked, so that nobody takes it for a leftover meanwhile.
    if (!renamed_)
        ::unlink(path_.c_str());
    if (fd_ >= 0)
        ::close(fd_);
}

struct stat TemporaryFile::renameOverTarget()
{
    if (::rename(path_.c_str(), target_.c_str()) != 0) {
        const int error = errno;
        const Kind kind = error == EACCES || error == EPERM || error == EROFS ? Kind::ReadOnly
            : error == EISDIR                                                 ? Kind::NotRegularFile
                                                                              : Kind::WriteFailed;
        throw FileWriteError::fromSystem(kind, userPath_, "cannot replace the file", error);
    }
    renamed_ = true;
    struct stat written { };
    ::fstat(fd_, &written);
    // The rename itself reaches the disk with the folder. The file is already
    // complete under its name, so a failure here has nothing left to undo.
    const int folder = ::open(folderOf(target_).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (folder >= 0) {
        ::fsync(folder);
        ::close(folder);
    }
    return written;
}

std::vector<std::string> TemporaryFile::leftBeside(const std::string& target)
{
    const std::string folder = folderOf(target);
    // Built piece by piece: GCC 12 warns falsely about "." + a temporary string.
    std::string prefix(1, '.');
    prefix += baseOf(target);
    prefix += '.';
    std::vector<std::pair<timespec, std::string>> found;
    DIR* dir = ::opendir(folder.c_str());
    if (!dir)
        return {};
    timespec now {};
    ::clock_gettime(CLOCK_REALTIME, &now);
    while (const dirent* entry = ::readdir(dir)) {
        const std::string name = entry->d_name;
        if (name.size() != prefix.size() + kSuffixLength || name.compare(0, prefix.size(), prefix) != 0
            || name.find_first_not_of(kAlphabet, prefix.size()) != std::string::npos)
            continue;
        const std::string path = inFolder(folder, name);
        const int fd = ::open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
        if (fd < 0)
            continue;
        struct stat info { };
        // Not one a save made a moment ago and is about to lock, nor one it holds now.
        const bool left = ::fstat(fd, &info) == 0 && S_ISREG(info.st_mode) && info.st_mtim.tv_sec + 1 < now.tv_sec
            && ::flock(fd, LOCK_EX | LOCK_NB) == 0;
        ::close(fd);
        if (left)
            found.emplace_back(info.st_mtim, path);
    }
    ::closedir(dir);
    std::sort(found.begin(), found.end(), [](const auto& a, const auto& b) {
        return a.first.tv_sec != b.first.tv_sec ? a.first.tv_sec < b.first.tv_sec : a.first.tv_nsec < b.first.tv_nsec;
    });
    std::vector<std::string> paths;
    for (auto& [when, path] : found)
        paths.push_back(std::move(path));
    return paths;
}

} // namespace saldo
