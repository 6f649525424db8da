#include "tax/UstvaPlacement.h"

#include "tax/TaxItems.h"

#include <optional>

namespace saldo::tax {

namespace {

struct AccountRange {
    std::uint32_t first;
    std::uint32_t last;
    const char* reason;
};

// Accounts (SKR 03) whose bookings are no turnover and no input tax: payments
// to and refunds from the Finanzamt, money accounts, receivables and payables,
// private withdrawals and deposits. 1880 (unentgeltliche Wertabgaben) is not
// among them: it is turnover at its rate.
constexpr AccountRange kNichtTeil[] = {
    { 1780, 1781, kFinanzamt },
    { 1790, 1791, kFinanzamt },
    { 1000, 1399, kGeldkonto },
    { 1400, 1400, kForderungVerbindlichkeit },
    { 1590, 1590, kForderungVerbindlichkeit },
    { 1600, 1600, kForderungVerbindlichkeit },
    { 10000, 10000, kForderungVerbindlichkeit },
    { 70000, 70000, kForderungVerbindlichkeit },
    { 1800, 1879, kPrivat },
    { 1890, 1899, kPrivat },
};

// Input tax and VAT booked on accounts of their own, without a base.
constexpr AccountRange kVorsteuer[] = { { 1571, 1571, nullptr }, { 1575, 1576, nullptr } };
constexpr AccountRange kVorsteuerIgErwerb[] = { { 1572, 1574, nullptr } };
constexpr AccountRange kEinfuhrumsatzsteuer[] = { { 1588, 1588, nullptr } };
constexpr AccountRange kUmsatzsteuer[] = { { 1771, 1778, nullptr } };
// Reductions of turnover granted (Erloesschmaelerungen, Skonti gewaehrt), and
// discounts and bonuses received.
constexpr AccountRange kErloesschmaelerungen[] = { { 8700, 8799, nullptr } };
constexpr AccountRange kErhalteneSkonti[] = { { 3730, 3769, nullptr } };
// Tax-free turnover, intra-community deliveries of goods, exports of goods.
constexpr AccountRange kSteuerfrei[] = { { 8100, 8100, nullptr } };
constexpr AccountRange kIgLieferungWaren[] = { { 8125, 8125, nullptr } };
constexpr AccountRange kAusfuhrWaren[] = { { 8120, 8120, nullptr } };
// Goods: fixed assets and purchases of goods; an acquisition of anything else
// from the EU is a service.
constexpr AccountRange kWaren[] = { { 0, 999, nullptr }, { 3000, 3999, nullptr } };

template <std::size_t N> const AccountRange* find(const AccountRange (&ranges)[N], std::optional<std::uint32_t> number)
{
    if (!number)
        return nullptr;
    for (const AccountRange& range : ranges) {
        if (*number >= range.first && *number <= range.last)
            return &range;
    }
    return nullptr;
}

template <std::size_t N> bool in(const AccountRange (&ranges)[N], std::optional<std::uint32_t> number)
{
    return find(ranges, number) != nullptr;
}

} // namespace

UstvaPlacement UstvaPlacement::place(const Einnahme& item)
{
    return place(Item { item.art() == kArtEinnahme || item.isIncome(), item.kategorie(), item.brutto(),
        item.steuersatz(), item.innergemeinschaftlicherErwerb(), item.isNonEU() });
}

UstvaPlacement UstvaPlacement::place(const Item& item)
{
    UstvaPlacement p;
    const auto refuse = [&](Kind kind, const char* reason) {
        p.kind = kind;
        p.reason = reason;
        p.addCount = 0;
        p.bookedTax = 0;
        return p;
    };

    const GrossCents gross = grossCents(item.brutto);
    p.centExact = gross.centExact;
    if (gross.fault)
        return refuse(Kind::NichtZugeordnet, gross.fault);
    const std::int64_t c = gross.cents;
    p.cents = c;

    const auto category = categoryNumber(item.kategorie);
    const std::optional<std::uint32_t> number = category ? std::optional<std::uint32_t>(category->value) : std::nullopt;
    const bool income = item.income;
    const bool ig = item.innergemeinschaftlicherErwerb;
    const bool nonEU = item.isNonEU;

    if (const AccountRange* range = find(kNichtTeil, number))
        return refuse(Kind::NichtTeil, range->reason);
    if (!income && in(kVorsteuer, number)) {
        p.add(UstvaBox::Vorsteuer, c);
        p.bookedTax = -c;
        return p;
    }
    if (!income && in(kVorsteuerIgErwerb, number)) {
        p.add(UstvaBox::VorsteuerIgErwerb, c);
        p.bookedTax = -c;
        return p;
    }
    if (!income && in(kEinfuhrumsatzsteuer, number)) {
        p.add(UstvaBox::Einfuhrumsatzsteuer, c);
        p.bookedTax = -c;
        return p;
    }
    if (in(kUmsatzsteuer, number))
        return refuse(Kind::NichtZugeordnet, kUmsatzsteuerOhneBemessung);

    const std::optional<std::int64_t> rate = rateHundredths(item.steuersatz);
    if (!rate)
        return refuse(Kind::NichtZugeordnet, kSteuersatzUngueltig);
    const std::int64_t r = *rate;
    const std::int64_t n = netCents(c, r);
    const std::int64_t t = c - n;

    if (!income && in(kErloesschmaelerungen, number)) {
        if (r == 1900) {
            p.add(UstvaBox::Umsatz19, -n);
        } else if (r == 700) {
            p.add(UstvaBox::Umsatz7, -n);
        } else if (r > 0) {
            p.add(UstvaBox::UmsatzAndereBasis, -n);
            p.add(UstvaBox::UmsatzAndereSteuer, -t);
        }
        p.bookedTax = -t;
        return p;
    }
    if (income && in(kErhalteneSkonti, number)) {
        p.add(UstvaBox::Vorsteuer, -t);
        p.bookedTax = t;
        return p;
    }
    if (income) {
        if (r > 0 && ig)
            return refuse(Kind::NichtZugeordnet, kIgLieferungMitSteuersatz);
        if (r == 1900) {
            p.add(UstvaBox::Umsatz19, n);
        } else if (r == 700) {
            p.add(UstvaBox::Umsatz7, n);
        } else if (r > 0) {
            p.add(UstvaBox::UmsatzAndereBasis, n);
            p.add(UstvaBox::UmsatzAndereSteuer, t);
        } else if (in(kSteuerfrei, number)) {
            p.add(UstvaBox::SteuerfreiOhneVorsteuer, c);
        } else if (ig) {
            p.add(in(kIgLieferungWaren, number) ? UstvaBox::IgLieferung : UstvaBox::NichtSteuerbar18b, c);
        } else if (nonEU) {
            p.add(in(kAusfuhrWaren, number) ? UstvaBox::Ausfuhr : UstvaBox::NichtSteuerbarUebrige, c);
        } else {
            return refuse(Kind::NichtZugeordnet, kSteuerfreiOhneZuordnung);
        }
        p.bookedTax = t;
        return p;
    }

    // Expenses. A reverse charge: the supplier charged no German VAT, so the
    // amount paid is the base and the tax is owed and deducted at once.
    if (r > 0 && ig) {
        const std::int64_t tax = taxOnBase(c, r);
        if (in(kWaren, number)) {
            if (r == 1900) {
                p.add(UstvaBox::IgErwerb19, c);
            } else if (r == 700) {
                p.add(UstvaBox::IgErwerb7, c);
            } else {
                p.add(UstvaBox::IgErwerbAndereBasis, c);
                p.add(UstvaBox::IgErwerbAndereSteuer, tax);
            }
            p.add(UstvaBox::VorsteuerIgErwerb, tax);
        } else {
            p.add(UstvaBox::Leistung13bEuBasis, c);
            p.add(UstvaBox::Leistung13bEuSteuer, tax);
            p.add(UstvaBox::Vorsteuer13b, tax);
        }
        return p;
    }
    if (r > 0 && nonEU) {
        const std::int64_t tax = taxOnBase(c, r);
        p.add(UstvaBox::Leistung13bAndereBasis, c);
        p.add(UstvaBox::Leistung13bAndereSteuer, tax);
        p.add(UstvaBox::Vorsteuer13b, tax);
        return p;
    }
    if (r > 0) {
        p.add(UstvaBox::Vorsteuer, t);
        p.bookedTax = -t;
        return p;
    }
    p.kind = Kind::OhneVorsteuer;
    return p;
}

} // namespace saldo::tax
