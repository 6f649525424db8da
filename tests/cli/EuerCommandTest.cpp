// saldo-cli euer: the command's wiring and exit statuses (the form's rules are
// tested in tests/core/tax).
#include "model/LedgerFile.h"
#include "platform/Calendar.h"

#include "core/support/TestSupport.h"

#include <gtest/gtest.h>

namespace saldo {
namespace {

class EuerCommandTest : public testing::TempDirTest {
protected:
    void SetUp() override
    {
        TempDirTest::SetUp();
        Einnahme::Stored s;
        s.art = kArtEinnahme;
        s.kategorie = "8400 Erlöse 19% Gesch. ";
        s.brutto = 119.0f;
        s.steuersatz = 19.0f;
        s.datum = *Calendar::localMidnight(2025, 5, 1);
        Einnahme::Stored bad = s;
        bad.steuersatz = -7.0f;
        ledger = (dir / "klein.saldo").string();
        LedgerFile::write(ledger, { Einnahme::restore(s), Einnahme::restore(bad) });
    }

    testing::CommandRun cli(const std::string& arguments)
    {
        return testing::runCommand(
            "TZ=Europe/Berlin " + std::string(SALDO_CLI_PATH) + " " + arguments + " 2>" + (dir / "err").string());
    }
    std::string err() { return testing::readFile(dir / "err"); }

    std::string ledger;
};

TEST_F(EuerCommandTest, PrintsTheFormForAPersonOrAScript)
{
    testing::CommandRun run = cli("euer " + ledger + " 2025 --tsv");
    EXPECT_EQ(run.status, 0) << err();
    EXPECT_EQ(run.out.substr(0, run.out.find('\n')), "15\t112\t100.00");
    EXPECT_NE(run.out.find("\noffen\t2\tSteuersatz ungueltig\n"), std::string::npos) << run.out;

    run = cli("euer --kleinunternehmer " + ledger + " 2025 --tsv");
    EXPECT_EQ(run.status, 0) << err();
    EXPECT_EQ(run.out.substr(0, run.out.find('\n')), "12\t111\t238.00");

    run = cli("euer " + ledger + " 2025");
    EXPECT_EQ(run.status, 0) << err();
    EXPECT_EQ(run.out.rfind("Anlage EÜR 2025 — klein.saldo\n", 0), 0u) << run.out;
}

TEST_F(EuerCommandTest, ExitStatuses)
{
    struct Case {
        std::string arguments;
        int status;
        const char* message;
    };
    for (const Case& c : {
             Case {
                 "euer " + ledger + " 2026", 2, "Fuer das Jahr 2026 kennt Saldo die Zeilen der Anlage EÜR noch nicht" },
             Case { "euer " + ledger + " 25", 2, "not a four-digit year" },
             Case { "euer " + ledger, 2, "takes a LEDGER and a YEAR" },
             Case { "euer " + ledger + " 2025 --csv", 2, "unknown option" },
             Case { "euer " + (dir / "fehlt.saldo").string() + " 2025", 1, "No such file or directory" },
         }) {
        const testing::CommandRun run = cli(c.arguments);
        EXPECT_EQ(run.status, c.status) << c.arguments;
        EXPECT_EQ(run.out, "") << c.arguments;
        const std::string message = err();
        EXPECT_NE(message.find(c.message), std::string::npos) << message;
        EXPECT_EQ(std::count(message.begin(), message.end(), '\n'), 1) << message;
    }
}

} // namespace
} // namespace saldo
