#pragma once
// File permissions bind the superuser only through its file-system identity:
// while an object of this class lives, files are created and checked as the
// unprivileged user "nobody" (the folder and everything in it are handed to it
// first), so that a read-only file or folder refuses writes as it does for any
// user. Nothing changes when the tests run unprivileged already.
#include <filesystem>
#include <sys/fsuid.h>
#include <unistd.h>

namespace saldo::testing {

class Unprivileged {
public:
    static constexpr uid_t kNobody = 65534;

    explicit Unprivileged(const std::filesystem::path& folder)
    {
        if (::geteuid() != 0)
            return;
        hand(folder);
        for (const auto& item : std::filesystem::recursive_directory_iterator(folder))
            hand(item.path());
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
    static void hand(const std::filesystem::path& path)
    {
        const int ignored = ::lchown(path.c_str(), kNobody, kNobody);
        (void)ignored;
    }

    bool active_ = false;
};

} // namespace saldo::testing
