// Reading a statement, profile or rules file: a named pipe used to hold the
// program until some writer opened it, and a directory passed for a file too
// large to read. Every outcome in one table.
#include "platform/SmallFile.h"

#include "core/support/TestSupport.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <fstream>
#include <sys/stat.h>

namespace saldo {
namespace {

using Fault = SmallFile::Fault;

class SmallFileTest : public testing::TempDirTest { };

TEST_F(SmallFileTest, ReadsARegularFileWholeAndRefusesEverythingElseWithoutWaiting)
{
    const auto write = [&](const char* name, std::size_t bytes) {
        std::ofstream(dir / name, std::ios::binary) << std::string(bytes, 'x');
        return (dir / name).string();
    };
    ASSERT_EQ(::mkfifo((dir / "pipe").c_str(), 0600), 0);
    struct Row {
        std::string path;
        std::optional<Fault> fault;
        int error;
        std::size_t size;
    } rows[] = {
        { write("exact", 64), std::nullopt, 0, 64 },
        { write("empty", 0), std::nullopt, 0, 0 },
        { write("larger", 65), Fault::TooLarge, 0, 0 },
        { (dir / "missing").string(), Fault::CannotOpen, ENOENT, 0 },
        { dir.string(), Fault::NotRegular, 0, 0 },
        { (dir / "pipe").string(), Fault::NotRegular, 0, 0 },
        { "/dev/zero", Fault::NotRegular, 0, 0 },
    };
    for (const Row& row : rows) {
        const SmallFile::Outcome outcome = SmallFile::read(row.path, 64);
        EXPECT_EQ(outcome.fault, row.fault) << row.path;
        EXPECT_EQ(outcome.error, row.error) << row.path;
        EXPECT_EQ(outcome.bytes, row.fault ? "" : std::string(row.size, 'x')) << row.path;
    }
}

} // namespace
} // namespace saldo
