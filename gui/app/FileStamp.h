#pragma once

#include <QString>

#include <cstdint>

struct stat;

namespace saldo::gui {

// What the file system says about a file at one moment: whether it exists,
// which file it is (device and inode), its size and its modification and status
// change times to the nanosecond. Two equal stamps mean nobody wrote, replaced
// or renamed the file in between; a different stamp only means somebody may
// have, so the document compares the bytes before it believes a change.
struct FileStamp {
    bool exists = false;
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    std::int64_t size = 0;
    std::int64_t modifiedNs = 0;
    std::int64_t changedNs = 0;

    // The stamp of the file at `path` now (follows symbolic links).
    static FileStamp of(const QString& path);
    // The stamp of a file whose status is at hand (from an open file).
    static FileStamp of(const struct stat& info);

    bool operator==(const FileStamp&) const = default;
};

} // namespace saldo::gui
