#include "bank/StatementProposals.h"

#include "bank/BankText.h"
#include "bank/DuplicateMatcher.h"
#include "platform/Calendar.h"

namespace saldo {

namespace {

std::string defaultName(const BankBooking& booking)
{
    std::string text = booking.text.empty() ? booking.bookingText : booking.text;
    if (booking.partner.empty())
        return text.empty() ? std::string("Buchung") : text;
    return text.empty() ? booking.partner : booking.partner + ": " + text;
}

} // namespace

const char* Proposal::statusText(Status status)
{
    switch (status) {
    case Status::Neu:
        return "neu";
    case Status::SchonImLedger:
        return "schon im Ledger";
    case Status::Vorgemerkt:
        return "vorgemerkt \xE2\x80\x94 uebersprungen";
    case Status::Info:
        break;
    }
    return "nur Info \xE2\x80\x94 uebersprungen";
}

std::string StatementProposals::nameFrom(const std::string& nameTemplate, const BankBooking& booking)
{
    std::string out;
    for (std::size_t i = 0; i < nameTemplate.size();) {
        const std::string_view rest = std::string_view(nameTemplate).substr(i);
        if (rest.starts_with("%partner")) {
            out += booking.partner;
            i += 8;
        } else if (rest.starts_with("%text")) {
            out += booking.text;
            i += 5;
        } else if (rest.starts_with("%ref")) {
            out += booking.reference;
            i += 4;
        } else {
            out += nameTemplate[i++];
        }
    }
    return BankText::tidy(out);
}

void StatementProposals::apply(Proposal& proposal, const BankRules& rules)
{
    LocalDays days;
    apply(proposal, rules, days);
}

void StatementProposals::apply(Proposal& proposal, const BankRules& rules, LocalDays& days)
{
    const BankBooking& booking = proposal.booking;
    Einnahme::Stored& f = proposal.fields;
    f.art = booking.cents >= 0 ? kArtEinnahme : kArtAusgabe;
    const std::int64_t gross = booking.cents < 0 ? -booking.cents : booking.cents;
    // Cents to euros: the nearest single-precision value of the exact amount.
    f.brutto = static_cast<float>(static_cast<double>(gross) / 100.0);
    const BankDate& day = booking.bookingDate;
    // A pending booking may have no day yet: it stands at today.
    f.datum = day.year > 0 ? days.noonOf(day) : Calendar::startOfLocalDay(now()) + 12 * 3600.0;
    f.kategorie.clear();
    f.steuersatz = kDefaultRate;
    f.innergemeinschaftlicherErwerb = false;
    f.isNonEU = false;
    std::string name = defaultName(booking);
    proposal.rule = rules.match(booking);
    proposal.ruleName.clear();
    if (proposal.rule >= 0) {
        const BankRule& rule = rules.rules()[static_cast<std::size_t>(proposal.rule)];
        proposal.ruleName = rule.name;
        f.kategorie = rule.kategorie;
        if (rule.steuersatz)
            f.steuersatz = *rule.steuersatz;
        f.innergemeinschaftlicherErwerb = rule.flag == BankRule::Flag::InnergemeinschaftlicherErwerb;
        f.isNonEU = rule.flag == BankRule::Flag::NonEU;
        if (!rule.nameTemplate.empty())
            if (std::string made = nameFrom(rule.nameTemplate, booking); !made.empty())
                name = std::move(made);
    }
    f.name = BankText::cut(name, kMaxName);
}

std::vector<Proposal> StatementProposals::make(
    const Statement& statement, const BankRules& rules, const EinnahmeList& ledger)
{
    LocalDays days;
    std::vector<Proposal> proposals;
    proposals.reserve(statement.bookings.size());
    for (const BankBooking& booking : statement.bookings) {
        Proposal proposal;
        proposal.booking = booking;
        apply(proposal, rules, days);
        if (booking.status == BankBooking::Status::Pending)
            proposal.status = Proposal::Status::Vorgemerkt;
        else if (booking.status == BankBooking::Status::Info)
            proposal.status = Proposal::Status::Info;
        proposals.push_back(std::move(proposal));
    }
    DuplicateMatcher(ledger, days).mark(proposals);
    return proposals;
}

} // namespace saldo
