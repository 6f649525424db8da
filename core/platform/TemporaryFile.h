#pragma once

#include <string>
#include <vector>

#include <sys/stat.h>

namespace saldo {

// The temporary file of one atomic write: made beside the file it is to
// replace, under a hidden name (".NAME.XXXXXXXX", the name cut to 200 bytes),
// and locked (flock) for as long as this object lives. The lock tells a
// program that looks at the folder later a save still under way from one a
// killed program left: the system lets go of a lock when its owner dies. The
// file is removed when this object goes, unless it was renamed over its
// target.
class TemporaryFile {
public:
    // `path` is the name the user gave (for errors), `target` the file the
    // temporary one is to replace (the end of any symbolic links), `mode`
    // its permissions. Throws FileWriteError when no file can be made.
    TemporaryFile(const std::string& path, const std::string& target, mode_t mode);
    ~TemporaryFile();
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    int fd() const { return fd_; }
    const std::string& path() const { return path_; }
    const std::string& target() const { return target_; }

    // Renames the file over its target and flushes the folder. Answers the
    // status of the file now under the target's name, taken from the open
    // file, so that a program that replaces the target right afterwards is
    // not mistaken for this write. Throws FileWriteError.
    struct stat renameOverTarget();

    // The temporary files beside `target` that no running program holds, last
    // written more than a second ago, oldest first.
    static std::vector<std::string> leftBeside(const std::string& target);

    // The folder a name lies in ("." for a bare name, "/" at the root).
    static std::string folderOf(const std::string& path);

private:
    std::string userPath_;
    std::string target_;
    std::string path_;
    int fd_ = -1;
    bool renamed_ = false;
};

} // namespace saldo
