// The command-line tool as a user runs it: exit status, standard output and
// the one line on standard error.
#include "exchange/CsvExport.h"
#include "model/LedgerFile.h"

#include "core/support/TestSupport.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/wait.h>

namespace saldo {
namespace {

namespace fs = std::filesystem;

struct CliRun {
    int status = -1;
    std::string out;
    std::string err;
};

using testing::readFile;

class SaldoCliTest : public testing::TempDirTest {
protected:
    CliRun cli(const std::string& arguments)
    {
        const fs::path err = dir / "stderr.txt";
        const auto [status, out]
            = testing::runCommand(std::string(SALDO_CLI_PATH) + " " + arguments + " 2>" + err.string());
        return { status, out, readFile(err) };
    }
};

EinnahmeList sampleEntries()
{
    Einnahme::Stored s;
    s.name = "Miete \"Büro\"";
    s.kategorie = "4210 Miete Miete ";
    s.art = kArtAusgabe;
    s.brutto = 119.0f;
    s.steuersatz = 19.0f;
    // 2024-03-01 09:30:00 UTC: 8460 days and 9.5 hours after the reference date.
    s.datum = 8460.0 * 86400 + 9.5 * 3600;
    s.rechnungsnummer = "R-1";
    Einnahme::Stored c;
    c.name = "Anteil";
    c.kategorie = "";
    c.art = kArtEinnahme;
    c.innergemeinschaftlicherErwerb = true;
    c.brutto = 10.0f;
    c.steuersatz = 7.0f;
    c.datum = -0.25;
    c.leistungsart = "Tab\there";
    s.childTransactions = { Einnahme::restore(c) };
    return { Einnahme::restore(s) };
}

TEST_F(SaldoCliTest, UsageErrorsExitWithTwo)
{
    const CliRun help = cli("--help");
    EXPECT_EQ(help.status, 0);
    for (const char* command : { "dump FILE", "check FILE", "convert IN OUT", "report FILE", "csv FILE" })
        EXPECT_NE(help.out.find(command), std::string::npos) << command;

    for (const char* arguments : { "", "drucken x", "dump", "dump a b", "convert nur-eins", "csv" }) {
        SCOPED_TRACE(arguments);
        const CliRun run = cli(arguments);
        EXPECT_EQ(run.status, 2);
        EXPECT_EQ(run.out, "");
        EXPECT_EQ(run.err.rfind("saldo-cli: ", 0), 0u);
        EXPECT_EQ(std::count(run.err.begin(), run.err.end(), '\n'), 1);
    }
}

TEST_F(SaldoCliTest, UnreadableFilesExitWithOneAndNameFileAndReason)
{
    const fs::path missing = dir / "fehlt.saldo";
    CliRun run = cli("dump " + missing.string());
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.err, "saldo-cli: " + missing.string() + ": No such file or directory\n");

    const fs::path corrupt = dir / "kaputt.saldo";
    std::string bytes = LedgerFile::encode(sampleEntries());
    bytes[bytes.size() - 25] = 0; // object reference size
    std::ofstream(corrupt, std::ios::binary) << bytes;
    for (const char* command : { "dump ", "check ", "report ", "csv " }) {
        run = cli(command + corrupt.string());
        EXPECT_EQ(run.status, 1) << command;
        EXPECT_EQ(run.out, "") << command;
        EXPECT_EQ(run.err,
            "saldo-cli: " + corrupt.string() + ": object reference size 0 in the trailer is out of range (1 to 8)\n")
            << command;
    }
    const fs::path out = dir / "neu.saldo";
    run = cli("convert " + corrupt.string() + " " + out.string());
    EXPECT_EQ(run.status, 1);
    EXPECT_FALSE(fs::exists(out));
}

TEST_F(SaldoCliTest, DumpWritesOneLinePerEntryWithSplitBookingsIndented)
{
    const fs::path file = dir / "klein.saldo";
    LedgerFile::write(file.string(), sampleEntries());
    const CliRun run = cli("dump " + file.string());
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.err, "");
    // Berlin is an hour ahead of UTC in March; 119 / 1.19 in single precision is 99.99999.
    EXPECT_EQ(run.out,
        "name=\"Miete \\\"Büro\\\"\" kategorie=\"4210 Miete Miete \" art=\"Ausgabe\" "
        "innergemeinschaftlicherErwerb=false isNonEU=false brutto=119 steuersatz=19 netto=99.99999 "
        "datum=2024-03-01T10:30:00+01:00 (730978200) rechnungsnummer=\"R-1\" steuernummer=\"\" leistungsart=\"\" "
        "childTransactions=1\n"
        "  name=\"Anteil\" kategorie=\"\" art=\"Einnahme\" innergemeinschaftlicherErwerb=true isNonEU=false "
        "brutto=10 steuersatz=7 netto=9.345794 datum=2001-01-01T00:59:59+01:00 (-0.25) rechnungsnummer=\"\" "
        "steuernummer=\"\" leistungsart=\"Tab\\there\" childTransactions=0\n");

    const CliRun check = cli("check " + file.string());
    EXPECT_EQ(check.status, 0);
    EXPECT_EQ(check.out, file.string() + ": 1 entries, 1 split bookings\n");
}

TEST_F(SaldoCliTest, ConvertTurnsXmlIntoTheBinaryLedgerFormat)
{
    const fs::path xml = dir / "liste.plist";
    std::ofstream(xml) << R"(<?xml version="1.0" encoding="UTF-8"?>
<plist version="1.0"><array><dict>
<key>name</key><string>Beratung M&#xFC;ller</string><key>kategorie</key><string>8400 Erlöse</string>
<key>art</key><string>Einnahme</string><key>innergemeinschaftlicherErwerb</key><false/>
<key>isNonEU</key><true/><key>brutto</key><real>0.1</real><key>steuersatz</key><integer>19</integer>
<key>datum</key><date>2024-12-31T23:00:00Z</date><key>rechnungsnummer</key><string>RE 9</string>
<key>steuernummer</key><string/><key>leistungsart</key><string>Beratung</string>
<key>childTransactions</key><array/><key>netto</key><real>0.08</real>
</dict></array></plist>
)";
    const fs::path out = dir / "liste.saldo";
    const CliRun run = cli("convert " + xml.string() + " " + out.string());
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.out + run.err, "");
    // The reader's own tests check the values; here the file must be exactly
    // what the writer makes of the XML's entries.
    const EinnahmeList entries = LedgerFile::read(xml.string());
    ASSERT_EQ(entries.size(), 1u);
    EXPECT_EQ(entries[0]->name(), "Beratung Müller");
    EXPECT_EQ(readFile(out), LedgerFile::encode(entries));
}

TEST_F(SaldoCliTest, CsvPrintsTheSpreadsheetTable)
{
    const fs::path file = dir / "klein.saldo";
    LedgerFile::write(file.string(), sampleEntries());
    const CliRun run = cli("csv " + file.string());
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(run.out, CsvExport::encode(LedgerFile::read(file.string())));
}

// Run as the superuser, convert once replaced /dev/full with a regular file and
// reported success. The device here is a node of our own in the test's folder
// (a link to the real one where the test may not make nodes: then it cannot
// replace anything in /dev either).
TEST_F(SaldoCliTest, ConvertNeverReplacesADeviceAPipeOrADirectory)
{
    const fs::path in = dir / "in.saldo";
    LedgerFile::write(in.string(), sampleEntries());
    const fs::path full = dir / "full";
    if (::mknod(full.c_str(), S_IFCHR | 0666, makedev(1, 7)) != 0) {
        if (::geteuid() == 0)
            GTEST_SKIP() << "the superuser may not make device nodes here";
        fs::create_symlink("/dev/full", full);
    }
    const fs::path pipe = dir / "rohr";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    fs::create_directory(dir / "Ordner");

    const struct {
        fs::path out;
        std::string reason;
        fs::file_type typeAfter;
    } cases[] = {
        { full, "cannot write: No space left on device", fs::file_type::character },
        { pipe, "cannot write to the pipe: no program reads from it", fs::file_type::fifo },
        { dir / "Ordner", "not a regular file: a directory", fs::file_type::directory },
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.out);
        const CliRun run = cli("convert " + in.string() + " " + c.out.string());
        EXPECT_EQ(run.status, 1);
        EXPECT_EQ(run.out, "");
        EXPECT_EQ(run.err, "saldo-cli: " + c.out.string() + ": " + c.reason + "\n");
        EXPECT_EQ(fs::status(c.out).type(), c.typeAfter);
    }
}

} // namespace
} // namespace saldo
