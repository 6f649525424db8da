// saldo-cli ustva: the wiring from the command line to the VAT return, its
// two outputs and its exit statuses. The figures themselves are tested in
// tests/core/tax.
#include "model/LedgerFile.h"

#include "core/support/TestSupport.h"

#include <gtest/gtest.h>

namespace saldo {
namespace {

namespace fs = std::filesystem;

class UstvaCommandTest : public testing::TempDirTest {
protected:
    testing::CommandRun cli(const std::string& arguments, std::string* err = nullptr)
    {
        const fs::path errFile = dir / "stderr.txt";
        auto run = testing::runCommand(
            "TZ=Europe/Berlin " + std::string(SALDO_CLI_PATH) + " ustva " + arguments + " 2>" + errFile.string());
        if (err)
            *err = testing::readFile(errFile);
        return run;
    }

    // The worked example, 10 March 2025 at noon UTC, and an income at 0 %
    // without a flag that cannot be placed.
    std::string ledger()
    {
        const auto make = [](const char* name, const char* kategorie, const char* art, float brutto, float rate) {
            Einnahme::Stored s;
            s.name = name;
            s.kategorie = kategorie;
            s.art = art;
            s.brutto = brutto;
            s.steuersatz = rate;
            s.datum = 763300800.0;
            return Einnahme::restore(std::move(s));
        };
        const fs::path file = dir / "März.saldo";
        LedgerFile::write(file.string(),
            { make("Verkauf", "8400 Erlöse 19% Gesch. ", kArtEinnahme, 119.0f, 19.0f),
                make("Buch", "8300 Erlöse 7% Gesch. ", kArtEinnahme, 10.0f, 7.0f),
                make("Papier", "4930 Bürobedarf Gesch. ", kArtAusgabe, 59.5f, 19.0f),
                make("Logo Kopenhagen", "8315 Erlöse EG 19% Gesch. ", kArtEinnahme, 1800.0f, 0.0f) });
        return "'" + file.string() + "'";
    }
};

TEST_F(UstvaCommandTest, PrintsTheFormForPeopleAndForScripts)
{
    const std::string file = ledger();
    const auto tsv = cli(file + " 2025-Q1 --tsv");
    EXPECT_EQ(tsv.status, 0);
    EXPECT_EQ(tsv.out, "66\t9.50\n81\t100\n83\t10.13\n86\t9\noffen\t4\tsteuerfrei ohne Zuordnung\n");

    const auto flagFirst = cli("--tsv " + file + " 2025-03");
    EXPECT_EQ(flagFirst.status, 0);
    EXPECT_EQ(flagFirst.out, tsv.out);
    const auto text = cli(file + " 2025-03");
    EXPECT_EQ(text.status, 0);
    for (const char* expected :
        { "Umsatzsteuer-Voranmeldung Maerz 2025", "100", "19,00", "0,63", "9,50", "10,13",
            "Eintrag 4  steuerfrei ohne Zuordnung", "Umsatzsteuer laut Buchungen: 10,15", "Differenz zu Kz 83: -0,02" })
        EXPECT_NE(text.out.find(expected), std::string::npos) << expected << "\n" << text.out;
}

TEST_F(UstvaCommandTest, ExitStatuses)
{
    const std::string file = ledger();
    struct Case {
        std::string arguments;
        int status;
    };
    for (const Case& c : { Case { file + " 2025-13", 2 }, Case { file + " 2024-Q4", 2 }, Case { file, 2 },
             Case { file + " 2025 2026", 2 }, Case { "'" + (dir / "fehlt.saldo").string() + "' 2025", 1 },
             Case { "'" + (dir / "fehlt.saldo").string() + "' 2025-Q5", 2 } }) {
        std::string err;
        const auto run = cli(c.arguments, &err);
        EXPECT_EQ(run.status, c.status) << c.arguments;
        EXPECT_EQ(run.out, "") << c.arguments;
        EXPECT_EQ(err.rfind("saldo-cli: ", 0), 0u) << c.arguments;
        EXPECT_EQ(std::count(err.begin(), err.end(), '\n'), 1) << c.arguments;
    }
}

} // namespace
} // namespace saldo
