// Temporary files of saves that were killed: 9 of them (873 MB) sat beside a
// ledger after a series of kills, never removed. Only those no running
// program holds go, and the newest complete one newer than the ledger is kept
// for the user.
#include "model/InterruptedSaves.h"

#include "model/LedgerFile.h"
#include "platform/TemporaryFile.h"
#include "core/support/TestSupport.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <algorithm>
#include <fstream>
#include <sys/stat.h>

namespace saldo {
namespace {

namespace fs = std::filesystem;

EinnahmeList entries(int count)
{
    EinnahmeList list;
    for (int i = 0; i < count; ++i)
        list.push_back(Einnahme::make("Beleg " + std::to_string(i), "", 10.0f, 19.0f));
    return list;
}

// Access and modification times `secondsAgo` seconds ago.
struct Ago {
    explicit Ago(int secondsAgo)
    {
        ::clock_gettime(CLOCK_REALTIME, &times[0]);
        times[0] = { times[0].tv_sec - secondsAgo, 0 };
        times[1] = times[0];
    }
    timespec times[2];
};

// Writes `bytes` to `path`, last written `secondsAgo` seconds ago.
void leave(const fs::path& path, const std::string& bytes, int secondsAgo)
{
    std::ofstream(path, std::ios::binary) << bytes;
    ASSERT_EQ(::utimensat(AT_FDCWD, path.c_str(), Ago(secondsAgo).times, 0), 0);
}



using InterruptedSavesTest = testing::TempDirTest;

TEST_F(InterruptedSavesTest, LeftoversGoButTheNewestCompleteOneNewerThanTheLedgerIsOffered)
{
    const fs::path ledger = dir / "Kasse.saldo";
    const std::string complete = LedgerFile::encode(entries(5));
    leave(ledger, LedgerFile::encode(entries(3)), 60);
    leave(dir / ".Kasse.saldo.aaaaaaaa", LedgerFile::encode(entries(4)), 120); // older than the ledger
    leave(dir / ".Kasse.saldo.bbbbbbbb", complete, 30); // newer and complete: offered
    leave(dir / ".Kasse.saldo.cccccccc", complete.substr(0, complete.size() / 2), 10); // cut short
    leave(dir / ".Kasse.saldo.notours", complete, 30); // not a name a save gives
    leave(dir / ".Andere.saldo.dddddddd", complete, 30); // another ledger's
    // A save under way for a while (its lock held by this process).
    TemporaryFile live((dir / "Kasse.saldo").string(), ledger.string(), 0600);
    ASSERT_EQ(::futimens(live.fd(), Ago(20).times), 0);

    const std::optional<InterruptedSaves::Found> found = InterruptedSaves::sweep(ledger.string(), true);
    ASSERT_TRUE(found);
    EXPECT_EQ(found->path, (dir / ".Kasse.saldo.bbbbbbbb").string());
    EXPECT_EQ(found->entries.size(), 5u);
    std::vector<std::string> left { ".Andere.saldo.dddddddd", ".Kasse.saldo.bbbbbbbb", ".Kasse.saldo.notours",
        fs::path(live.path()).filename().string(), "Kasse.saldo" };
    std::sort(left.begin(), left.end());
    EXPECT_EQ(testing::namesIn(dir), left);

    // After a save, the offered one goes too; the live one stays.
    EXPECT_FALSE(InterruptedSaves::sweep(ledger.string(), false));
    EXPECT_FALSE(fs::exists(dir / ".Kasse.saldo.bbbbbbbb"));
    EXPECT_TRUE(fs::exists(live.path()));
}

} // namespace
} // namespace saldo
