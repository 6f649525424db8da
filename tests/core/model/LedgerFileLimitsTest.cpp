// What a file is and how large it is are looked at before it is read: a
// 2 GB sparse file was read whole before it was found to be no property list,
// a 5 GB one with a valid trailer was accepted, and a pipe without a writer
// blocked the reader for ever. A refusal says its kind and, for a damaged
// file, the byte where the damage lies.
#include "model/LedgerFile.h"

#include "BplistBuilder.h"
#include "core/support/TestSupport.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <fstream>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace saldo {
namespace {

namespace fs = std::filesystem;
using Kind = LedgerFileError::Kind;

struct Refusal {
    Kind kind;
    std::string message;
    std::optional<std::uint64_t> byte;
};

Refusal refusalOf(const std::string& path, const LedgerReadLimits& limits = {})
{
    try {
        LedgerFile::read(path, limits);
    } catch (const LedgerFileError& e) {
        return { e.kind(), e.what(), e.byte() };
    }
    return { Kind::Damaged, "accepted", std::nullopt };
}

void sparseFile(const fs::path& path, const std::string& head, std::uint64_t size)
{
    std::ofstream(path, std::ios::binary) << head;
    ASSERT_EQ(::truncate(path.c_str(), static_cast<off_t>(size)), 0);
}

std::uint64_t bigEndianValue(const std::string& bytes)
{
    std::uint64_t value = 0;
    for (const char c : bytes)
        value = value << 8 | static_cast<unsigned char>(c);
    return value;
}

using LedgerFileLimitsTest = testing::TempDirTest;

TEST_F(LedgerFileLimitsTest, WhatTheFileIsAndItsSizeDecideBeforeItIsRead)
{
    const std::string ledger = LedgerFile::encode({ Einnahme::make("Miete", "", 100.0f, 19.0f) });
    sparseFile(dir / "gross.saldo", "bplist00", std::uint64_t(5) << 30);
    sparseFile(dir / "leer.saldo", "", std::uint64_t(2) << 30);
    ASSERT_EQ(::mkfifo((dir / "leitung").c_str(), 0600), 0);
    const LedgerReadLimits quick { std::uint64_t(4) << 30, 50 };
    const struct {
        fs::path path;
        Kind kind;
        const char* says;
    } cases[] = {
        { dir / "gross.saldo", Kind::TooLarge, "the file is larger than the 4 GiB a ledger may have (5368709120 bytes)" },
        { dir / "leer.saldo", Kind::NotALedger, "not a property list" },
        { dir, Kind::NotRegularFile, "not a regular file: a directory" },
        { dir / "leitung", Kind::CannotRead, "nothing arrived for 50 milliseconds" },
        { "/dev/zero", Kind::NotALedger, "not a property list" },
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.path);
        const Refusal refusal = refusalOf(c.path.string(), quick);
        EXPECT_EQ(refusal.kind, c.kind);
        EXPECT_EQ(refusal.message, c.path.string() + ": " + c.says);
    }

    // A pipe with a writer is read to its end.
    std::thread writer([&] {
        const int fd = ::open((dir / "leitung").c_str(), O_WRONLY);
        ASSERT_GE(fd, 0);
        EXPECT_EQ(::write(fd, ledger.data(), ledger.size()), static_cast<ssize_t>(ledger.size()));
        ::close(fd);
    });
    EXPECT_EQ(LedgerFile::read((dir / "leitung").string()).size(), 1u);
    writer.join();
}

TEST_F(LedgerFileLimitsTest, ARefusalSaysItsKindAndWhereTheDamageLies)
{
    test::BplistBuilder b;
    const std::size_t first = b.entry();
    const std::size_t second = b.entry({ { "art", std::nullopt } });
    const std::string missingKey = b.build(b.array({ first, second }));
    // The offset of the second entry's dictionary, from the offset table.
    const std::size_t table = static_cast<std::size_t>(bigEndianValue(missingKey.substr(missingKey.size() - 8)));
    const std::uint64_t secondAt = bigEndianValue(missingKey.substr(table + 2 * second, 2));
    std::string badTrailer = missingKey;
    badTrailer[badTrailer.size() - 26] = 9; // offset size
    const struct {
        std::string bytes;
        Kind kind;
        std::optional<std::uint64_t> byte;
    } cases[] = {
        { "kein Ledger", Kind::NotALedger, std::nullopt },
        { "bplist01", Kind::NotALedger, std::nullopt },
        { b.build(b.entry()), Kind::NotALedger, std::nullopt },
        { "<plist><dict/></plist>", Kind::NotALedger, std::nullopt },
        { missingKey, Kind::Damaged, secondAt },
        { badTrailer, Kind::Damaged, badTrailer.size() - 26 },
        { "<plist><array><dict><key>name</key></array></plist>", Kind::Damaged, 37 },
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.bytes.substr(0, 20));
        try {
            LedgerFile::decode(c.bytes);
            ADD_FAILURE() << "accepted";
        } catch (const LedgerFileError& e) {
            EXPECT_EQ(e.kind(), c.kind) << e.what();
            EXPECT_EQ(e.byte(), c.byte) << e.what();
        }
    }
}

} // namespace
} // namespace saldo
