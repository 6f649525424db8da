// Bookings become proposals: kind from the sign, gross as the absolute
// amount, the booking day at local noon, the name cut to 200 characters, the
// rule's values; and duplicates are found by day, cents and kind, counted by
// occurrence, against the ledger, within a file and on loading a file again.
#include "bank/StatementProposals.h"
#include "platform/Calendar.h"

#include <gtest/gtest.h>

#include <array>

namespace saldo {
namespace {

BankBooking booked(std::int64_t cents, BankDate day, int statement = 0)
{
    BankBooking b;
    b.cents = cents;
    b.bookingDate = day;
    b.statement = statement;
    b.partner = "Stadtwerke";
    b.text = "Abschlag";
    return b;
}

TEST(StatementProposalsTest, ABookingBecomesAnEntry)
{
    Statement statement;
    // 29 March 2026: the clocks go forward in Berlin; noon stays on the day.
    statement.bookings = { booked(-5990, { 2026, 3, 29 }), booked(123456, { 2025, 12, 31 }) };
    statement.bookings[1].partner = "";
    statement.bookings[1].text = std::string(150, 'x') + "ÄÖÜ" + std::string(100, 'y');
    BankRule rule;
    rule.name = "Strom";
    rule.partner = "stadtwerke";
    rule.kategorie = "4240 Gas, Strom, Wasser Gesch. ";
    rule.steuersatz = 7.0f;
    rule.flag = BankRule::Flag::NonEU;
    rule.nameTemplate = "%partner (%text) %ref";
    const std::vector<Proposal> proposals = StatementProposals::make(statement, BankRules({ rule }), {});
    ASSERT_EQ(proposals.size(), 2u);

    const Einnahme::Stored& out = proposals[0].fields;
    EXPECT_EQ(out.art, kArtAusgabe);
    EXPECT_EQ(out.brutto, 59.90f);
    const Calendar::Fields noon = Calendar::localFields(out.datum);
    EXPECT_EQ((std::array { noon.year, noon.month, noon.day, noon.hour, noon.minute }),
        (std::array { 2026, 3, 29, 12, 0 }));
    EXPECT_EQ(out.name, "Stadtwerke (Abschlag)");
    EXPECT_EQ(out.kategorie, rule.kategorie);
    EXPECT_EQ(out.steuersatz, 7.0f);
    EXPECT_TRUE(out.isNonEU);
    EXPECT_EQ(proposals[0].ruleName, "Strom");

    const Einnahme::Stored& in = proposals[1].fields;
    EXPECT_EQ(in.art, kArtEinnahme);
    EXPECT_EQ(in.brutto, 1234.56f);
    EXPECT_EQ(in.steuersatz, 19.0f);
    EXPECT_EQ(in.kategorie, "");
    EXPECT_EQ(proposals[1].rule, -1);
    // Cut at 200 characters, not bytes: the umlauts count one each.
    EXPECT_EQ(in.name, std::string(150, 'x') + "ÄÖÜ" + std::string(47, 'y'));
    EXPECT_EQ(Calendar::localFields(in.datum).day, 31);
}

std::vector<Proposal::Status> statuses(const std::vector<Proposal>& proposals)
{
    std::vector<Proposal::Status> out;
    for (const Proposal& p : proposals) {
        EXPECT_EQ(p.ticked, p.status == Proposal::Status::Neu);
        out.push_back(p.status);
    }
    return out;
}

TEST(StatementProposalsTest, DuplicatesAreCountedByOccurrence)
{
    using S = Proposal::Status;
    const BankDate day { 2025, 11, 3 };
    // The ledger: one typed entry of 59.90 out on 3 November, at 23:59 local time.
    auto typed = Einnahme::make("Strom", "", 59.90f, 19.0f);
    typed->setArt(kArtAusgabe);
    typed->setDatum(*Calendar::localMidnight(2025, 11, 3) + 86399);
    auto income = Einnahme::make("Strom zurueck", "", 59.90f, 19.0f);
    income->setDatum(*Calendar::localMidnight(2025, 11, 4));
    const EinnahmeList ledger = { typed, income };

    Statement statement;
    BankBooking pending = booked(-5990, day);
    pending.status = BankBooking::Status::Pending;
    statement.bookings = { booked(-5990, day), booked(-5990, day), pending, booked(5990, day),
        booked(-5990, { 2025, 11, 4 }), booked(-5991, day) };
    EXPECT_EQ(statuses(StatementProposals::make(statement, BankRules(), ledger)),
        (std::vector { S::SchonImLedger, S::Neu, S::Vorgemerkt, S::Neu, S::Neu, S::Neu }));

    // A second statement in the same file that repeats the first.
    Statement twice;
    twice.bookings = { booked(-5990, day, 0), booked(-5990, day, 0), booked(-5990, day, 1), booked(-5990, day, 1),
        booked(-5990, day, 1) };
    EXPECT_EQ(statuses(StatementProposals::make(twice, BankRules(), {})),
        (std::vector { S::Neu, S::Neu, S::SchonImLedger, S::SchonImLedger, S::Neu }));

    // Taking the new proposals and loading the same file again proposes nothing new,
    // also for an amount single precision cannot hold to the cent.
    statement.bookings.push_back(booked(-20000001, day));
    EinnahmeList after = ledger;
    for (const Proposal& p : StatementProposals::make(statement, BankRules(), ledger))
        if (p.ticked)
            after.push_back(p.makeEntry());
    for (const Proposal& p : StatementProposals::make(statement, BankRules(), after))
        EXPECT_NE(p.status, S::Neu) << p.booking.cents;
}

} // namespace
} // namespace saldo
