#include "app/FileStamp.h"

#include <QFile>

#include <sys/stat.h>

namespace saldo::gui {

FileStamp FileStamp::of(const QString& path)
{
    struct stat info { };
    if (::stat(QFile::encodeName(path).constData(), &info) != 0)
        return FileStamp();
    return of(info);
}

FileStamp FileStamp::of(const struct stat& info)
{
    FileStamp stamp;
    stamp.exists = true;
    stamp.device = static_cast<std::uint64_t>(info.st_dev);
    stamp.inode = static_cast<std::uint64_t>(info.st_ino);
    stamp.size = static_cast<std::int64_t>(info.st_size);
    stamp.modifiedNs = static_cast<std::int64_t>(info.st_mtim.tv_sec) * 1'000'000'000 + info.st_mtim.tv_nsec;
    stamp.changedNs = static_cast<std::int64_t>(info.st_ctim.tv_sec) * 1'000'000'000 + info.st_ctim.tv_nsec;
    return stamp;
}

} // namespace saldo::gui
