// Round trips through our own writer and reader and through Python's
// plistlib, and the whole-file helpers.
#include "model/LedgerFile.h"

#include "core/support/TestSupport.h"
#include "platform/FileWriteError.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <limits>
#include <tuple>

namespace saldo {
namespace {

namespace fs = std::filesystem;

EinnahmePtr entry(std::string name, float brutto, float steuersatz, double datum)
{
    Einnahme::Stored s;
    s.name = std::move(name);
    s.kategorie = "4210 Miete Miete ";
    s.art = kArtAusgabe;
    s.brutto = brutto;
    s.steuersatz = steuersatz;
    s.datum = datum;
    return Einnahme::restore(std::move(s));
}

// Field by field, floats and dates by their bits, children recursively.
void expectSameLists(const EinnahmeList& a, const EinnahmeList& b)
{
    const auto fields = [](const Einnahme& e) {
        return std::tuple(e.name(), e.kategorie(), e.art(), e.innergemeinschaftlicherErwerb(), e.isNonEU(),
            std::bit_cast<std::uint32_t>(e.brutto()), std::bit_cast<std::uint32_t>(e.steuersatz()),
            std::bit_cast<std::uint64_t>(e.datum()), e.rechnungsnummer(), e.steuernummer(), e.leistungsart());
    };
    ASSERT_EQ(a.size(), b.size());
    for (std::size_t i = 0; i < a.size(); ++i) {
        SCOPED_TRACE(i);
        ASSERT_EQ(fields(*a[i]), fields(*b[i]));
        expectSameLists(a[i]->childTransactions(), b[i]->childTransactions());
    }
}

// The message a call fails with, or "" when it does not fail.
template <typename F> std::string errorOf(F&& call)
{
    try {
        call();
    } catch (const LedgerFileError& e) {
        return e.what();
    }
    return "";
}

TEST(LedgerFileTest, RoundTripKeepsEveryFieldToTheLastBit)
{
    EinnahmeList entries;
    // Three levels of split bookings.
    auto top = entry("Bürobedarf Müller & Söhne", 119.0f, 19.0f, 730'000'000.123456789);
    auto child = entry("Papier", 59.5f, 19.0f, 730'000'000.5);
    auto grandchild = entry("Druckerpapier A4, 5 Pakete", 23.8f, 19.0f, -0.0);
    child->setChildTransactions({ grandchild });
    top->setChildTransactions({ child, entry("Toner", 59.5f, 19.0f, 1.0e-300) });
    entries.push_back(top);
    // Values the setters would refuse are kept as they are.
    Einnahme::Stored odd = entry("", -5.0f, -7.0f, std::nextafter(86400.0, 0.0))->stored();
    odd.art = "einnahme";
    odd.innergemeinschaftlicherErwerb = odd.isNonEU = true;
    odd.rechnungsnummer = "RE-2024-0001";
    odd.steuernummer = "12/345/67890";
    odd.leistungsart = std::string("mit\0Null", 8);
    entries.push_back(Einnahme::restore(odd));
    // Not-a-number payloads, infinities, subnormals, negative zero.
    entries.push_back(entry("NaN", std::bit_cast<float>(0x7FC12345u), std::bit_cast<float>(0xFF812345u),
        std::bit_cast<double>(0x7FF8000000ABCDEFull)));
    entries.push_back(
        entry("Grenzwerte", std::numeric_limits<float>::denorm_min(), -0.0f, -std::numeric_limits<double>::infinity()));
    // Strings beyond the short length form, in UTF-16, with characters beyond 16 bits.
    entries.push_back(entry("Gebühr 😀 für Überweisung nach Köln", 2.5f, 0.0f, 1.0));

    const std::string bytes = LedgerFile::encode(entries);
    expectSameLists(entries, LedgerFile::decode(bytes));
    EXPECT_EQ(LedgerFile::encode(LedgerFile::decode(bytes)), bytes);
}

// The most sharing the writer produces: every text field of every entry and
// split booking holds the same long non-ASCII text (one UTF-16 object in the
// file), and the amounts, rates and flags are the same everywhere; only each
// entry's dictionary, date and child list are its own.
EinnahmeList mostShared(std::size_t count, std::size_t length)
{
    const std::string unit = "Notiz zur Prüfung: ";
    std::string text;
    while (text.size() < length)
        text += unit;
    Einnahme::Stored s;
    s.name = s.kategorie = s.art = s.rechnungsnummer = s.steuernummer = s.leistungsart = text;
    s.brutto = 119.0f;
    s.steuersatz = 19.0f;
    s.datum = 760'000'000.0;
    EinnahmeList entries;
    entries.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        Einnahme::Stored e = s;
        if (i % 16 == 1)
            e.childTransactions = { Einnahme::restore(s), Einnahme::restore(s) };
        entries.push_back(Einnahme::restore(std::move(e)));
    }
    return entries;
}

// Regression: the writer shares equal texts between entries, and the reader
// charged every reference to a shared text as if it were decoded again. A
// ledger of a few thousand entries with one long repeated note was written
// without complaint and then refused as a file that would expand too far.
TEST(LedgerFileTest, LedgersWithTheMostSharingTheWriterMakesReadBackBitForBit)
{
    // A few sizes from one entry to 200,000; the text is long enough at each
    // size that reading it once per reference would cost far more than the
    // file's size allows.
    const struct {
        std::size_t count;
        std::size_t length;
    } cases[] = { { 1, 60'000 }, { 2'589, 400 }, { 20'000, 283 }, { 200'000, 100 } };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::to_string(c.count) + " entries");
        const std::string bytes = LedgerFile::encode(mostShared(c.count, c.length));
        EXPECT_EQ(errorOf([&] { EXPECT_EQ(LedgerFile::encode(LedgerFile::decode(bytes)), bytes); }), "");
    }
}

TEST(LedgerFileTest, WriterRefusesWhatNoReaderWouldAccept)
{
    auto bad = entry(std::string("Caf\xE9", 4), 1.0f, 19.0f, 0.0); // Latin-1, not UTF-8
    auto parent = entry("Eltern", 1.0f, 19.0f, 0.0);
    parent->setChildTransactions({ entry("ok", 1.0f, 19.0f, 0.0), bad });
    EXPECT_EQ(errorOf([&] {
        LedgerFile::encode({ entry("erster", 1.0f, 19.0f, 0.0), parent });
    }),
        "entry 2 (child 2): name is not valid UTF-8 text");

    // 513 entry levels are the most a reader accepts; one more is refused.
    auto chain = [](int levels) {
        auto head = entry("Ebene", 1.0f, 19.0f, 0.0);
        for (int i = 1; i < levels; ++i) {
            auto parent = entry("Ebene", 1.0f, 19.0f, 0.0);
            parent->setChildTransactions({ head });
            head = parent;
        }
        return EinnahmeList { head };
    };
    EXPECT_EQ(LedgerFile::decode(LedgerFile::encode(chain(513))).size(), 1u);
    EXPECT_THROW(LedgerFile::encode(chain(514)), LedgerFileError);

    // An entry that holds itself as split booking ends at the cap, not in a crash.
    auto loop = entry("Schleife", 1.0f, 19.0f, 0.0);
    loop->setChildTransactions({ loop });
    EXPECT_THROW(LedgerFile::encode({ loop }), LedgerFileError);
    loop->setChildTransactions({});
}

using LedgerFileWriteTest = testing::TempDirTest;
using testing::readFile;

TEST_F(LedgerFileWriteTest, EntriesThatCannotBeEncodedLeaveTheFileAloneAndErrorsNameTheFile)
{
    const fs::path file = dir / "Buchungen.saldo";
    LedgerFile::write(file.string(), { entry("alt", 1.0f, 19.0f, 1.0) });
    const std::string before = readFile(file);

    EXPECT_THROW(LedgerFile::write(file.string(), { entry(std::string("\xFF"), 1.0f, 19.0f, 1.0) }), LedgerFileError);
    EXPECT_EQ(readFile(file), before);
    EXPECT_EQ(std::distance(fs::directory_iterator(dir), fs::directory_iterator()), 1);

    // Reading names the file.
    const fs::path missing = dir / "gibt-es-nicht.saldo";
    EXPECT_EQ(errorOf([&] { LedgerFile::read(missing.string()); }), missing.string() + ": No such file or directory");
    const fs::path text = dir / "notiz.txt";
    std::ofstream(text) << "kein Ledger";
    EXPECT_EQ(errorOf([&] { LedgerFile::read(text.string()); }), text.string() + ": not a property list");
}

// saldo --print-pdf LEDGER LEDGER wrote the printout over the ledger, and the
// export panels did the same when the user picked a ledger's file.
TEST_F(LedgerFileWriteTest, OnlyALedgersOwnSaveWritesOverIt)
{
    const fs::path ledger = dir / "Kasse.saldo", other = dir / "Notiz.txt";
    LedgerFile::write(ledger.string(), { entry("Miete", 1.0f, 19.0f, 1.0) });
    std::ofstream(other) << "kein Ledger";
    const std::string before = readFile(ledger);
    try {
        LedgerFile::writeBesideLedgers(ledger.string(), "%PDF-1.4");
        ADD_FAILURE() << "written over the ledger";
    } catch (const FileWriteError& e) {
        EXPECT_EQ(e.kind(), FileWriteError::Kind::HoldsLedger);
    }
    EXPECT_EQ(readFile(ledger), before);
    EXPECT_EQ(std::distance(fs::directory_iterator(dir), fs::directory_iterator()), 2);
    LedgerFile::writeBesideLedgers(other.string(), "%PDF-1.4");
    EXPECT_EQ(readFile(other), "%PDF-1.4");
    // A ledger written as a ledger (convert, a save) replaces one.
    LedgerFile::write(ledger.string(), {});
    EXPECT_TRUE(LedgerFile::read(ledger.string()).empty());
}

// plistlib loads what we write and dumps it again, binary and XML; both read
// back as the entries we wrote. A misreading of the format that our writer
// and reader share shows up here.
TEST_F(LedgerFileWriteTest, WhatPlistlibMakesOfOurFileReadsBackToTheLastBit)
{
    if (std::system("python3 -c 'import plistlib' 2>/dev/null") != 0)
        GTEST_SKIP() << "python3 with plistlib is not installed";
    // Texts in both encodings, extreme floats, both flags, dates before the
    // reference date (whole seconds: plistlib's XML has no fractions), split
    // bookings and enough entries for two-byte references.
    Einnahme::Stored s = entry("Gebühr für Überweisung 😀 & <mehr>", 0.1f, 19.0f, 730'000'000.0)->stored();
    s.isNonEU = true;
    s.rechnungsnummer = std::string(40, '7');
    s.childTransactions = { entry("Kind", -0.0f, std::numeric_limits<float>::denorm_min(), -86'400.0) };
    EinnahmeList entries = { Einnahme::restore(s) };
    s.art = kArtEinnahme;
    s.isNonEU = false;
    s.innergemeinschaftlicherErwerb = true;
    s.brutto = std::numeric_limits<float>::max();
    for (int i = 0; i < 300; ++i)
        entries.push_back(Einnahme::restore(s));

    const fs::path ours = dir / "ours.saldo", script = dir / "script.py";
    LedgerFile::write(ours.string(), entries);
    std::ofstream(script) << "import plistlib, sys\n"
                             "entries = plistlib.load(open(sys.argv[1], 'rb'))\n"
                             "open(sys.argv[2], 'wb').write(plistlib.dumps(entries, fmt=plistlib.FMT_BINARY))\n"
                             "open(sys.argv[3], 'wb').write(plistlib.dumps(entries, fmt=plistlib.FMT_XML))\n";
    const auto run = testing::runCommand("python3 " + script.string() + " " + ours.string() + " "
        + (dir / "theirs.plist").string() + " " + (dir / "theirs.xml").string() + " 2>&1");
    ASSERT_EQ(run.status, 0) << run.out;
    expectSameLists(entries, LedgerFile::read((dir / "theirs.plist").string()));
    expectSameLists(entries, LedgerFile::read((dir / "theirs.xml").string()));
}

} // namespace
} // namespace saldo
