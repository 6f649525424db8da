#include "bank/DuplicateMatcher.h"

#include <cmath>

namespace saldo {

std::size_t DuplicateMatcher::Hash::operator()(const Key& key) const
{
    std::uint64_t h = static_cast<std::uint64_t>(key.day) * 0x9E3779B97F4A7C15ull;
    h ^= static_cast<std::uint64_t>(key.cents) + 0x632BE59BD9B4E019ull + (h << 6) + (h >> 2);
    return static_cast<std::size_t>(h ^ (key.income ? 0xA24BAED4963EE407ull : 0));
}

DuplicateMatcher::DuplicateMatcher(const EinnahmeList& ledger, LocalDays& days)
{
    ledger_.reserve(ledger.size());
    for (const EinnahmePtr& entry : ledger)
        if (const std::optional<Key> key = keyOf(*entry, days))
            ++ledger_[*key];
}

std::optional<DuplicateMatcher::Key> DuplicateMatcher::keyOf(const Einnahme& entry, LocalDays& days)
{
    const bool income = entry.art() == kArtEinnahme;
    if (!income && entry.art() != kArtAusgabe)
        return std::nullopt;
    const double cents = std::round(static_cast<double>(entry.brutto()) * 100.0);
    if (!std::isfinite(entry.datum()) || !(std::fabs(cents) < 9e15))
        return std::nullopt;
    return Key { days.dayNumberOf(entry.datum()), static_cast<std::int64_t>(cents), income };
}

DuplicateMatcher::Key DuplicateMatcher::keyOf(const BankBooking& booking)
{
    // The cents an entry made from the booking holds: above about 131,000
    // euros single precision no longer keeps every cent, and the booking must
    // still find the entry it became.
    const std::int64_t gross = booking.cents < 0 ? -booking.cents : booking.cents;
    const float brutto = static_cast<float>(static_cast<double>(gross) / 100.0);
    const auto cents = static_cast<std::int64_t>(std::round(static_cast<double>(brutto) * 100.0));
    return Key { booking.bookingDate.dayNumber(), cents, booking.cents >= 0 };
}

void DuplicateMatcher::mark(std::vector<Proposal>& proposals) const
{
    // What the ledger will hold of each key once the statements before the
    // current one are taken: the most any of them (or the ledger) had.
    std::unordered_map<Key, std::size_t, Hash> known = ledger_;
    std::unordered_map<Key, std::size_t, Hash> inStatement;
    int statement = proposals.empty() ? 0 : proposals.front().booking.statement;
    const auto closeStatement = [&] {
        for (const auto& [key, count] : inStatement) {
            std::size_t& held = known[key];
            held = std::max(held, count);
        }
        inStatement.clear();
    };
    for (Proposal& proposal : proposals) {
        if (proposal.booking.statement != statement) {
            closeStatement();
            statement = proposal.booking.statement;
        }
        if (proposal.booking.status != BankBooking::Status::Booked)
            continue;
        const Key key = keyOf(proposal.booking);
        const std::size_t seen = inStatement[key]++;
        const auto held = known.find(key);
        const bool duplicate = held != known.end() && seen < held->second;
        proposal.status = duplicate ? Proposal::Status::SchonImLedger : Proposal::Status::Neu;
        proposal.ticked = !duplicate;
    }
}

} // namespace saldo
