// saldo-cli bank: the proposals with their status on standard output, the
// new ones appended to a ledger once and only once, and the exit statuses.
#include "core/bank/StatementFixtures.h"
#include "core/support/TestSupport.h"
#include "model/LedgerFile.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

namespace saldo::testing {
namespace {

namespace fs = std::filesystem;

class BankCommandTest : public TempDirTest {
protected:
    CommandRun bank(const std::string& arguments)
    {
        return runCommand(std::string(SALDO_CLI_PATH) + " bank " + arguments + " 2>/dev/null");
    }
    std::string write(const std::string& name, const std::string& bytes)
    {
        const fs::path path = dir / name;
        std::ofstream(path, std::ios::binary) << bytes;
        return path.string();
    }
};

TEST_F(BankCommandTest, ProposesAppendsOnceAndExitsAsDocumented)
{
    CamtEntry rent;
    rent.amount = "1190.00";
    rent.indicator = "DBIT";
    rent.details = camtDetail("08", "Cdtr", "Hausverwaltung", "DE11", { "Miete" });
    CamtEntry fee = rent;
    fee.amount = "5.00";
    fee.details = camtDetail("08", "Cdtr", "Bank", "DE22", { "Kontogebuehr" });
    const std::string statement = write("auszug.xml", camt("08", { { rent, fee } }));
    const std::string rules = write("regeln.ini", "[Miete]\nPartner = hausverwaltung\nKategorie = \"4210 Miete Gesch. \"\n");
    const std::string ledger = (dir / "l.saldo").string();
    LedgerFile::write(ledger, { Einnahme::make("Vorher", "", 1.0f, 19.0f) });

    const CommandRun first = bank(statement + " --rules " + rules + " --into " + ledger);
    EXPECT_EQ(first.status, 0);
    EXPECT_NE(first.out.find(";4210 Miete Gesch. ;1190,00;"), std::string::npos) << first.out;
    EXPECT_NE(first.out.find(";Non EU;Hinweis;Status;Regel\r\n"), std::string::npos);
    EXPECT_NE(first.out.find(";neu;Miete\r\n"), std::string::npos);
    EXPECT_EQ(LedgerFile::read(ledger).size(), 3u);

    const CommandRun again = bank(statement + " --into " + ledger);
    EXPECT_EQ(again.status, 0);
    EXPECT_EQ(again.out.find(";neu;"), std::string::npos) << again.out;
    EXPECT_NE(again.out.find(";schon im Ledger;"), std::string::npos);
    EXPECT_EQ(LedgerFile::read(ledger).size(), 3u);

    for (const std::string& args : { std::string(), statement + " --rules", statement + " --farbe rot",
             statement + " extra.xml", statement + " --ledger a --into b", statement + " --profile Unbekannt" })
        EXPECT_EQ(bank(args).status, 2) << args;
    const std::string broken = write("kaputt.xml", camt("08", { { rent } }).substr(0, 200));
    const std::string badRules = write("kaputt.ini", "[A]\nMuster = (\n");
    for (const std::string& args : { broken, statement + " --rules " + badRules, statement + " --ledger fehlt.saldo",
             write("text.csv", "a;b\n1;2\n") })
        EXPECT_EQ(bank(args).status, 1) << args;
    EXPECT_EQ(LedgerFile::read(ledger).size(), 3u);
}

} // namespace
} // namespace saldo::testing
