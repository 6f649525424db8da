// A save killed at any moment must leave either the old or the new complete
// file behind, never a mixture, a truncated file or no file at all. (What a
// worker codes through the snapshot gate is tested in SnapshotGateTest.)
#include "core/support/TestSupport.h"
#include "model/LedgerFile.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <signal.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace saldo {
namespace {

EinnahmeList makeLedger(int count, const std::string& prefix)
{
    EinnahmeList entries;
    entries.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
        Einnahme::Stored s;
        s.name = prefix + " Rechnung " + std::to_string(i);
        s.kategorie = i % 2 ? "8400 Erl\xC3\xB6se 19% Gesch. "
                            : "4930 B\xC3\xBC"
                              "robedarf Gesch. ";
        s.art = i % 3 ? "Einnahme" : "Ausgabe";
        s.brutto = static_cast<float>(i) * 1.25f + 0.5f;
        s.steuersatz = 19.0f;
        s.datum = 700'000'000.0 + i * 3600.5;
        s.rechnungsnummer = "RE-" + std::to_string(i);
        entries.push_back(Einnahme::restore(std::move(s)));
    }
    return entries;
}

TEST(AtomicSaveCrashTest, KilledSavesLeaveOneOfTheTwoCompleteFiles)
{
    const auto dir = std::filesystem::temp_directory_path() / ("saldo-crash-" + std::to_string(::getpid()));
    std::filesystem::create_directories(dir);
    const auto path = dir / "Ledger.saldo";

    const EinnahmeList large = makeLedger(20000, "Gross");
    const EinnahmeList small = makeLedger(3, "Klein");
    const std::string largeBytes = LedgerFile::encode(large);
    const std::string smallBytes = LedgerFile::encode(small);
    ASSERT_NE(largeBytes, smallBytes);
    LedgerFile::write(path.string(), small);

    // The child announces each save on a pipe before it begins; the parent kills
    // it a random moment after the start of a random one of its first saves, so
    // the kills fall into every phase of a save, whatever the disk's speed.
    std::mt19937 rng(20261123u);
    std::uniform_int_distribution<int> saveNumber(1, 4);
    std::uniform_int_distribution<int> delayMicros(0, 5000);
    constexpr int kKills = 200;
    int sawLarge = 0;
    int sawSmall = 0;
    for (int round = 0; round < kKills; ++round) {
        int announce[2];
        ASSERT_EQ(::pipe(announce), 0);
        const pid_t child = ::fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            // Save the two contents in turn until killed.
            ::close(announce[0]);
            for (unsigned n = 0;; ++n) {
                const char marker = 's';
                if (::write(announce[1], &marker, 1) != 1)
                    ::_exit(4);
                try {
                    LedgerFile::write(path.string(), n % 2 ? small : large);
                } catch (...) {
                    ::_exit(3);
                }
            }
        }
        ::close(announce[1]);
        const int waitFor = saveNumber(rng);
        for (int started = 0; started < waitFor;) {
            char marker;
            const ssize_t got = ::read(announce[0], &marker, 1);
            if (got == 1)
                ++started;
            else if (got == 0 || errno != EINTR)
                break;
        }
        // Half of the kills come at once, before the announced save can finish.
        if (rng() % 2 == 0)
            std::this_thread::sleep_for(std::chrono::microseconds(delayMicros(rng)));
        ASSERT_EQ(::kill(child, SIGKILL), 0);
        int status = 0;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        ::close(announce[0]);
        ASSERT_TRUE(WIFSIGNALED(status)) << "the saving child stopped by itself in round " << round;

        const std::string bytes = testing::readFile(path);
        if (bytes == largeBytes)
            ++sawLarge;
        else if (bytes == smallBytes)
            ++sawSmall;
        else
            FAIL() << "round " << round << ": the file holds " << bytes.size() << " bytes, neither content";
        // And it reads back as a ledger.
        EXPECT_NO_THROW(LedgerFile::decode(bytes));
    }
    // Both contents were seen, so the kills really fell on different moments.
    EXPECT_GT(sawLarge, 0);
    EXPECT_GT(sawSmall, 0);
    std::filesystem::remove_all(dir);
}

} // namespace
} // namespace saldo
