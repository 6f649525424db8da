#pragma once

#include <stdexcept>
#include <string>

namespace saldo {

// A file the user named that could not be written. It carries what kind of
// failure it was, so that the desktop program can say it in its own words, the
// system's error number and detail, and an English one-line message for the
// command line ("PATH: the file is read-only: Permission denied", control
// characters of the path escaped so that it stays one line). Whatever the
// kind, an earlier file of that name is left as it was.
class FileWriteError : public std::runtime_error {
public:
    enum class Kind {
        // The file exists and may not be written or replaced (its permissions,
        // a folder that forbids replacing another user's file).
        ReadOnly,
        // No file can be made in the folder: it is missing, not a folder, not
        // writable, on a read-only file system, or the name is too long.
        CannotCreate,
        // Not every byte reached the disk or the device: a full disk, a quota,
        // a file-size limit, an input/output error, a device that refuses data.
        WriteFailed,
        // The name is a directory, a block device, a socket, or a pipe that no
        // program reads from: nothing is written and it stays as it is.
        NotRegularFile,
        // The file holds a readable ledger, and what is written is not that
        // ledger's own save (a printout, a table, an exported list).
        HoldsLedger,
    };

    // `systemError` is the errno value, 0 when the system reported none;
    // `detail` is the system's text for it or our own ("is a directory").
    FileWriteError(
        Kind kind, const std::string& path, const std::string& what, int systemError, const std::string& detail);
    // The same with the system's text for `systemError` as the detail.
    static FileWriteError fromSystem(Kind kind, const std::string& path, const std::string& what, int systemError);

    Kind kind() const { return kind_; }
    const std::string& path() const { return path_; }
    int systemError() const { return systemError_; }
    const std::string& detail() const { return detail_; }

private:
    Kind kind_;
    std::string path_;
    int systemError_;
    std::string detail_;
};

} // namespace saldo
