#pragma once

#include <QDirIterator>
#include <QFile>
#include <QString>

#include <sys/fsuid.h>
#include <unistd.h>

namespace saldo::gui::testing {

// File permissions bind the superuser only through its file-system identity:
// while an object of this class lives, files are created and checked as the
// unprivileged user "nobody" (the folder is handed to it first), so that a
// read-only file or folder refuses writes as it does for any user. Nothing
// changes when the tests run unprivileged already.
class Unprivileged {
public:
    static constexpr uid_t kNobody = 65534;

    explicit Unprivileged(const QString& folder)
    {
        if (::geteuid() != 0)
            return;
        hand(folder);
        QDirIterator it(folder, QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden, QDirIterator::Subdirectories);
        while (it.hasNext())
            hand(it.next());
        ::setfsgid(kNobody);
        ::setfsuid(kNobody);
        active_ = true;
    }
    ~Unprivileged()
    {
        if (active_) {
            ::setfsuid(0);
            ::setfsgid(0);
        }
    }
    Unprivileged(const Unprivileged&) = delete;
    Unprivileged& operator=(const Unprivileged&) = delete;

private:
    static void hand(const QString& path)
    {
        const int ignored = ::chown(QFile::encodeName(path).constData(), kNobody, kNobody);
        (void)ignored;
    }

    bool active_ = false;
};

} // namespace saldo::gui::testing
