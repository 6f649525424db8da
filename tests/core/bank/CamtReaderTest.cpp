// camt.053 of each version read into bookings, ZIPs of them, and the
// hostile-input table every statement reader must refuse whole.
#include "StatementFixtures.h"

#include "bank/CamtReader.h"
#include "bank/StatementError.h"
#include "bank/StatementReader.h"

#include <gtest/gtest.h>

namespace saldo::testing {
namespace {

// The same five entries in the shape of each version: a credit with the
// debtor, a reversed debit, a pending entry, a batch of two and an
// information-only entry booked with a time.
std::string statementOf(const std::string& v)
{
    CamtEntry credit;
    credit.amount = "1234.50";
    credit.details = camtDetail(v, "Dbtr", "M&#252;ller &amp; S&#246;hne", "DE89370400440532013000",
        { "Rechnung 2025-17", "  vom 01.11." }, "E2E-4711");
    CamtEntry reversed;
    reversed.amount = "59.90";
    reversed.indicator = "DBIT";
    reversed.extra = "<RvslInd>true</RvslInd><AcctSvcrRef>BANKREF-1</AcctSvcrRef>";
    reversed.details = camtDetail(v, "Cdtr", "Stadtwerke", "DE11", { "Abschlag" });
    CamtEntry pending;
    pending.status = "PDNG";
    pending.indicator = "DBIT";
    pending.details = camtDetail(v, "Cdtr", "Vermieter", "DE22", { "Miete" });
    CamtEntry batch;
    batch.amount = "30.00";
    batch.indicator = "DBIT";
    batch.details = camtDetail(v, "Cdtr", "Post", "DE33", { "Porto" }, "A", "10.00")
        + camtDetail(v, "Cdtr", "Druckerei", "DE44", { "Flyer" }, "B", "20.00");
    CamtEntry info;
    info.status = "INFO";
    info.bookingDate = "<DtTm>2025-11-05T23:30:00+01:00</DtTm>";
    return camt(v, { { credit, reversed, pending, batch, info } });
}

TEST(CamtReaderTest, EveryVersionGivesTheSameBookings)
{
    for (const std::string version : { "02", "04", "08" }) {
        SCOPED_TRACE(version);
        const Statement s = CamtReader::read(statementOf(version));
        EXPECT_EQ(s.format, "camt.053.001." + version);
        ASSERT_EQ(s.bookings.size(), 6u);
        const BankBooking& credit = s.bookings[0];
        EXPECT_EQ(credit.cents, 123450);
        EXPECT_EQ(credit.bookingDate, (BankDate { 2025, 11, 3 }));
        EXPECT_EQ(credit.valueDate, (BankDate { 2025, 11, 4 }));
        EXPECT_EQ(credit.partner, "Müller & Söhne");
        EXPECT_EQ(credit.iban, "DE89370400440532013000");
        EXPECT_EQ(credit.text, "Rechnung 2025-17 vom 01.11.");
        EXPECT_EQ(credit.reference, "E2E-4711");
        // A reversed debit is money in; NOTPROVIDED leaves the bank's reference.
        EXPECT_EQ(s.bookings[1].cents, 5990);
        EXPECT_EQ(s.bookings[1].reference, "BANKREF-1");
        EXPECT_EQ(s.bookings[2].status, BankBooking::Status::Pending);
        EXPECT_EQ(s.bookings[2].cents, -10000);
        // The batch: one booking per detail with its own amount.
        EXPECT_EQ(s.bookings[3].cents, -1000);
        EXPECT_EQ(s.bookings[3].partner, "Post");
        EXPECT_EQ(s.bookings[4].cents, -2000);
        EXPECT_EQ(s.bookings[4].text, "Flyer");
        EXPECT_EQ(s.bookings[5].status, BankBooking::Status::Info);
        EXPECT_EQ(s.bookings[5].bookingDate, (BankDate { 2025, 11, 5 }));
    }
}

TEST(CamtReaderTest, PrefixedElementsAndStatementsOfAZipCountOn)
{
    const std::string prefixed = "<c:Document xmlns:c=\"urn:iso:std:iso:20022:tech:xsd:camt.053.001.08\"><c:BkToCstmrStmt>"
                                 "<c:Stmt><c:Ntry><c:Amt Ccy=\"EUR\">5</c:Amt><c:CdtDbtInd>DBIT</c:CdtDbtInd><c:Sts><c:Cd>BOOK"
                                 "</c:Cd></c:Sts><c:BookgDt><c:Dt>2025-01-31</c:Dt></c:BookgDt></c:Ntry></c:Stmt>"
                                 "</c:BkToCstmrStmt></c:Document>";
    EXPECT_EQ(CamtReader::read(prefixed).bookings.at(0).cents, -500);

    CamtEntry one;
    const std::string twoStatements = camt("08", { { one }, { one } });
    const std::string bytes = zip({ { "a.xml", twoStatements }, { "liesmich.txt", "x" }, { "b.XML", camt("02", { { one } }), false } });
    const std::optional<Statement> s = StatementReader::read(bytes, {}, nullptr);
    ASSERT_TRUE(s);
    ASSERT_EQ(s->bookings.size(), 3u);
    EXPECT_EQ(s->bookings[0].statement, 0);
    EXPECT_EQ(s->bookings[1].statement, 1);
    EXPECT_EQ(s->bookings[2].statement, 2);
    EXPECT_EQ(s->statementCount, 3);
}

void expectRefused(const std::string& bytes, const std::string& reason)
{
    try {
        StatementReader::read(bytes, {}, nullptr);
        ADD_FAILURE() << "read, expected: " << reason;
    } catch (const StatementError& e) {
        EXPECT_NE(std::string(e.what()).find(reason), std::string::npos) << e.what();
    }
}

TEST(CamtReaderTest, RefusesHostileAndBrokenFilesWhole)
{
    CamtEntry one;
    const std::string good = camt("08", { { one } });
    const std::string body = good.substr(good.find("<Document"));
    std::string deep = "<Document xmlns=\"urn:iso:std:iso:20022:tech:xsd:camt.053.001.08\"><BkToCstmrStmt>", closing;
    for (int i = 0; i < 100000; ++i)
        deep += "<a>", closing += "</a>";
    CamtEntry dollars;
    dollars.currency = "USD";
    CamtEntry noStatus;
    noStatus.status = "";
    CamtEntry badDate;
    badDate.bookingDate = "<Dt>2025-02-30</Dt>";
    CamtEntry negative;
    negative.amount = "-5.00";
    const std::string bomb(10u << 20, 'A');
    const std::pair<std::string, std::string> cases[] = {
        { "<!DOCTYPE d [<!ENTITY x SYSTEM \"file:///etc/passwd\">]>" + body, "DOCTYPE" },
        { "<!DOCTYPE Document>" + body, "DOCTYPE" },
        { deep + closing + "</BkToCstmrStmt></Document>", "tiefer verschachtelt" },
        { deep + "x</a></BkToCstmrStmt></Document>", "vollstaendiges XML" },
        { good.substr(0, good.size() / 2), "vollstaendiges XML" },
        { "<plist><array/></plist>", "kein Kontoauszug im Format camt.053" },
        { std::string(good).replace(good.find("053.001.08"), 10, "052.001.08"), "camt.053" },
        { camt("08", { { dollars } }), "in USD gefuehrt" },
        { camt("08", { { one } }, "CHF"), "in CHF gefuehrt" },
        { camt("08", { { noStatus } }), "keinen Status" },
        { camt("08", { { badDate } }), "ungueltiges Buchungsdatum" },
        { camt("08", { { negative } }), "ungueltigen Betrag" },
        { "", "leer" },
        { std::string("\x89PNG\r\n\x1a\n\0\0", 10), "kein Kontoauszug" },
        // ZIP files: a bomb declared, a bomb that lies about its size, a way out of the folder.
        { zip({ { "a.xml", bomb } }), "ZIP-Bombe" },
        { zip({ { "a.xml", good, true, 100u << 20 } }), "ZIP-Bombe" },
        { zip({ { "a.xml", std::string(1 << 20, 'A'), true, 1000 } }), "groesser als angegeben" },
        { zip({ { "a.xml", good, true, 300u << 20 } }), "mehr als 256 MiB" },
        { zip({ { "../../etc/a.xml", good } }), "aus dem Ordner heraus" },
        { zip({ { "/tmp/a.xml", good } }), "aus dem Ordner heraus" },
        { zip({ { "C:\\a.xml", good } }), "aus dem Ordner heraus" },
        { zip({ { "a.xml", good } }).substr(0, 60), "Inhaltsverzeichnis fehlt" },
        { zip({ { "a.txt", "x" } }), "keinen Kontoauszug" },
        { zip({ { "a.xml", "<x/>" } }), "a.xml in der ZIP-Datei: Die XML-Datei ist kein Kontoauszug" },
    };
    for (const auto& [bytes, reason] : cases) {
        SCOPED_TRACE(reason);
        expectRefused(bytes, reason);
    }
    // A member whose bytes do not match its checksum.
    std::string corrupt = zip({ { "a.xml", good, false } });
    corrupt[corrupt.find("<Document") + 1] = 'X';
    expectRefused(corrupt, "Pruefsumme");
}

} // namespace
} // namespace saldo::testing
