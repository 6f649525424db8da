#include "tax/EuerRules.h"

#include "tax/TaxItems.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <limits>
#include <optional>
#include <string_view>
#include <vector>

namespace saldo::tax {

namespace {

using F = EuerField;

enum class Art : std::uint8_t { Einnahme, Ausgabe, Jede };

enum class Action : std::uint8_t {
    // Listed "nicht Teil der EÜR" with the rule's reason.
    NichtTeil,
    // The gross amount to the field.
    Brutto,
    // Income: the net amount to the field, the tax to the VAT line.
    Wertabgabe,
    // Income by its rate: above 0 the net amount to the taxable line and the
    // tax to the VAT line, at 0 the gross amount to the tax-free line.
    NachSteuersatz,
    // An expense that reduces the income of its rate (Erlösschmälerung).
    Erloesminderung,
    // Income that reduces an expense line and its input tax (Skonti, Boni).
    Skonto,
    // An expense on the field, its input tax to the input-tax line.
    Ausgabe,
    // Bewirtung: 70 % of the expense to the field, the rest to `second`.
    Bewirtung,
    // An expense listed "nicht abziehbar"; its input tax is deducted.
    NichtAbziehbar,
    // A fixed asset listed for depreciation; its input tax is deducted.
    Anlagegut,
};

struct Rule {
    Art art;
    // Account numbers and ranges separated by blanks; "*" is every number
    // and a category without one.
    const char* numbers;
    Action action;
    F field = F::Uebrige;
    F second = F::Uebrige;
    const char* reason = nullptr;
    // Numbers the rule leaves to the rules after it.
    const char* except = nullptr;
    bool kleinunternehmerOnly = false;
};

constexpr Rule notPart(const char* numbers, const char* reason)
{
    return { Art::Jede, numbers, Action::NichtTeil, F::Uebrige, F::Uebrige, reason };
}
constexpr Rule gross(Art art, const char* numbers, F field)
{
    return { art, numbers, Action::Brutto, field };
}
constexpr Rule expense(const char* numbers, F field)
{
    return { Art::Ausgabe, numbers, Action::Ausgabe, field };
}
constexpr Rule notDeductible(const char* numbers, const char* reason)
{
    return { Art::Ausgabe, numbers, Action::NichtAbziehbar, F::Uebrige, F::Uebrige, reason };
}

// SKR 03, the chart Saldo ships. The first rule that matches an item wins.
// Money accounts come before a Kleinunternehmer's income, since money moved
// between them is no income of his either; Skonti and Boni received come
// before the other income, since they reduce expenses.
const Rule kRules[] = {
    notPart("1000-1399", "Geldkonto"),
    notPart("1400 10000", "Forderung"),
    notPart("1590", "durchlaufender Posten"),
    notPart("1600 70000", "Verbindlichkeit"),
    notPart("2340-2342", "Sonderposten mit Ruecklageanteil"),
    { Art::Einnahme, "*", Action::Brutto, F::Kleinunternehmer, F::Uebrige, nullptr, "1790 1791 1880 1890-1899", true },
    gross(Art::Einnahme, "1790 1791", F::UmsatzsteuerErstattet),
    gross(Art::Ausgabe, "1780 1781 1790 1791", F::UmsatzsteuerGezahlt),
    gross(Art::Einnahme, "1771-1778", F::Umsatzsteuer),
    gross(Art::Ausgabe, "1571-1578 1588", F::Vorsteuer),
    gross(Art::Ausgabe, "1800-1879", F::Entnahmen),
    { Art::Einnahme, "1880", Action::Wertabgabe, F::Wertabgaben },
    gross(Art::Einnahme, "1890-1899", F::Einlagen),
    { Art::Ausgabe, "0-999", Action::Anlagegut, F::Uebrige, F::Uebrige, kAnlagegut },
    { Art::Einnahme, "3730-3769", Action::Skonto, F::Waren },
    { Art::Einnahme, "*", Action::NachSteuersatz },
    { Art::Ausgabe, "8700-8799", Action::Erloesminderung },
    expense("3100", F::Fremdleistungen),
    expense("3000-3999", F::Waren),
    expense("4100-4199", F::Personal),
    expense("4210", F::Miete),
    expense("4200 4230-4280 2375", F::Grundstueckskosten),
    notDeductible("4320", "Gewerbesteuer"),
    expense("4340 4360 4380 4390", F::Beitraege),
    expense("4570", F::KfzLeasing),
    expense("4510 4520", F::KfzSteuern),
    expense("4500 4530-4580", F::KfzSonstige),
    expense("4590 4595", F::KfzFremd),
    expense("4600", F::Werbung),
    expense("4630", F::GeschenkeAbziehbar),
    expense("4635", F::GeschenkeNicht),
    { Art::Ausgabe, "4650", Action::Bewirtung, F::BewirtungAbziehbar, F::BewirtungNicht },
    expense("4654", F::BewirtungNicht),
    expense("4670", F::Reisekosten),
    expense("4678", F::Entfernungspauschale),
    notDeductible("4679", "Fahrten zwischen Wohnung und Betriebsstaette"),
    expense("4700", F::Verpackung),
    expense("4800", F::Erhaltung),
    expense("4810 4815 4960", F::MieteBeweglich),
    expense("4822", F::AfaImmateriell),
    expense("4830 4832", F::AfaBeweglich),
    expense("4831", F::AfaGrundstuecke),
    expense("4851 4852", F::Sonderabschreibungen),
    expense("4855", F::GeringwertigeWirtschaftsgueter),
    expense("4910 4930 4940 4985", F::Arbeitsmittel),
    expense("4920 4925", F::Telekommunikation),
    expense("4945", F::Fortbildung),
    expense("4950 4955", F::Beratung),
    expense("2100 2110", F::Schuldzinsen),
    expense("*", F::Uebrige),
};
constexpr std::size_t kRuleCount = std::size(kRules);
static_assert(kRuleCount < 255);

struct Range {
    std::uint32_t first, last;
};

// A rule's numbers read once.
struct Numbers {
    std::vector<Range> ranges;
    std::vector<Range> except;
    bool withoutNumber = false;

    bool contains(std::uint32_t number) const
    {
        for (const Range& range : except) {
            if (number >= range.first && number <= range.last)
                return false;
        }
        for (const Range& range : ranges) {
            if (number >= range.first && number <= range.last)
                return true;
        }
        return false;
    }
};

std::uint32_t readNumber(std::string_view text)
{
    std::uint32_t value = 0;
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
}

std::vector<Range> readRanges(const char* text, bool* all)
{
    std::vector<Range> ranges;
    std::string_view rest = text ? text : "";
    while (!rest.empty()) {
        const std::size_t blank = rest.find(' ');
        const std::string_view token = rest.substr(0, blank);
        rest = blank == std::string_view::npos ? std::string_view() : rest.substr(blank + 1);
        if (token == "*") {
            *all = true;
            ranges.push_back({ 0, std::numeric_limits<std::uint32_t>::max() });
            continue;
        }
        const std::size_t dash = token.find('-');
        if (dash == std::string_view::npos)
            ranges.push_back({ readNumber(token), readNumber(token) });
        else
            ranges.push_back({ readNumber(token.substr(0, dash)), readNumber(token.substr(dash + 1)) });
    }
    return ranges;
}

// Which rule an item meets, looked up in a table for the four-digit account
// numbers (every number of the shipped chart but two) and a category without
// a number; longer numbers go through the rules one by one.
class RuleIndex {
public:
    static constexpr std::uint32_t kTableSize = 10000;

    RuleIndex()
    {
        for (std::size_t r = 0; r < kRuleCount; ++r) {
            bool all = false;
            numbers_[r].ranges = readRanges(kRules[r].numbers, &all);
            bool unused = false;
            numbers_[r].except = readRanges(kRules[r].except, &unused);
            numbers_[r].withoutNumber = all;
        }
        // Each rule from the last to the first writes its numbers over those
        // of the rules after it, so the first matching rule stays.
        for (int income = 0; income < 2; ++income) {
            for (int ku = 0; ku < 2; ++ku) {
                auto& table = tables_[income][ku];
                for (std::size_t r = kRuleCount; r-- > 0;) {
                    if (!applies(kRules[r], income != 0, ku != 0))
                        continue;
                    for (const Range& range : numbers_[r].ranges) {
                        for (std::uint32_t n = range.first; n <= std::min(range.last, kTableSize - 1); ++n) {
                            if (numbers_[r].contains(n))
                                table[n] = static_cast<std::uint8_t>(r);
                        }
                    }
                    if (numbers_[r].withoutNumber)
                        table[kTableSize] = static_cast<std::uint8_t>(r);
                }
            }
        }
    }

    std::size_t find(bool income, bool kleinunternehmer, std::optional<std::uint32_t> number) const
    {
        if (!number || *number < kTableSize)
            return tables_[income][kleinunternehmer][number ? *number : kTableSize];
        return scan(income, kleinunternehmer, number);
    }

private:
    std::size_t scan(bool income, bool kleinunternehmer, std::optional<std::uint32_t> number) const
    {
        for (std::size_t r = 0; r < kRuleCount; ++r) {
            if (!applies(kRules[r], income, kleinunternehmer))
                continue;
            if (number ? numbers_[r].contains(*number) : numbers_[r].withoutNumber)
                return r;
        }
        // The last rule takes every expense; an income always meets the rule by rate.
        return kRuleCount - 1;
    }

    static bool applies(const Rule& rule, bool income, bool kleinunternehmer)
    {
        return (rule.art == Art::Jede || (rule.art == Art::Einnahme) == income)
            && (!rule.kleinunternehmerOnly || kleinunternehmer);
    }

    Numbers numbers_[kRuleCount];
    std::uint8_t tables_[2][2][kTableSize + 1] {};
};

const RuleIndex& ruleIndex()
{
    static const RuleIndex index;
    return index;
}

} // namespace

EuerPlacement EuerRules::place(const Einnahme& item, bool kleinunternehmer)
{
    return Pass(kleinunternehmer).place(item);
}

const EuerRules::Pass::Rate& EuerRules::Pass::rate(float steuersatz)
{
    std::uint32_t bits = 0;
    static_assert(sizeof bits == sizeof steuersatz);
    std::memcpy(&bits, &steuersatz, sizeof bits);
    Rate& slot = rates_[(bits * 0x9E3779B1u) >> 28];
    if (!slot.known || slot.bits != bits) {
        const std::optional<std::int64_t> hundredths = rateHundredths(steuersatz);
        slot = { bits, true, hundredths.has_value(), hundredths.value_or(0) };
    }
    return slot;
}

EuerPlacement EuerRules::Pass::place(const Einnahme& item)
{
    EuerPlacement p;
    const GrossCents gross = grossCents(item.brutto());
    if (gross.fault) {
        p.list = EuerList::NichtZugeordnet;
        p.reason = gross.fault;
        p.amountKnown = false;
        return p;
    }
    const std::int64_t c = gross.cents;
    const std::optional<CategoryNumber> number = categoryNumber(item.kategorie());
    const bool income = item.isIncome();
    const bool kleinunternehmer = kleinunternehmer_;
    const Rule& rule = kRules[ruleIndex().find(
        income, kleinunternehmer, number ? std::optional<std::uint32_t>(number->value) : std::nullopt)];
    auto book = [&p](F field, std::int64_t cents) { p.bookings[p.bookingCount++] = { field, cents }; };

    if (rule.action == Action::NichtTeil) {
        p.list = EuerList::NichtTeil;
        p.reason = rule.reason;
        p.listedCents = c;
        return p;
    }
    p.nichtCentgenau = !gross.centExact;
    p.ohneKontonummer = !income && !number;
    if (rule.action == Action::Brutto) {
        book(rule.field, c);
        return p;
    }

    const Rate& taken = rate(item.steuersatz());
    if (!taken.valid) {
        p = EuerPlacement {};
        p.list = EuerList::NichtZugeordnet;
        p.reason = kSteuersatzUngueltig;
        p.listedCents = c;
        return p;
    }
    const std::int64_t hundredths = taken.hundredths;
    const bool flag = item.innergemeinschaftlicherErwerb() || item.isNonEU();
    const std::int64_t net = netCents(c, hundredths);
    const std::int64_t tax = c - net;
    // What an expense puts on its line, and its input tax: the amount paid
    // and none for a Kleinunternehmer and under reverse charge. An income
    // that reduces expenses, or an expense that reduces income, mirrors it.
    const bool paid = kleinunternehmer || flag;
    const std::int64_t amount = paid ? c : net;
    const bool withTax = !paid && hundredths > 0;
    auto inputTax = [&](std::int64_t sign) {
        if (withTax)
            book(F::Vorsteuer, sign * tax);
    };
    p.reverseCharge = !income && flag && !kleinunternehmer && hundredths > 0;

    switch (rule.action) {
    case Action::Wertabgabe:
        book(rule.field, kleinunternehmer ? c : net);
        if (!kleinunternehmer)
            book(F::Umsatzsteuer, tax);
        break;
    case Action::NachSteuersatz:
        if (hundredths > 0) {
            book(F::Umsatzsteuerpflichtig, net);
            book(F::Umsatzsteuer, tax);
        } else {
            book(F::Steuerfrei, c);
        }
        break;
    case Action::Erloesminderung:
        if (kleinunternehmer) {
            book(F::Kleinunternehmer, -c);
        } else if (hundredths == 0) {
            book(F::Steuerfrei, -c);
        } else {
            book(F::Umsatzsteuerpflichtig, -amount);
            if (withTax)
                book(F::Umsatzsteuer, -tax);
        }
        break;
    case Action::Skonto:
        book(rule.field, -amount);
        inputTax(-1);
        break;
    case Action::Ausgabe:
        book(rule.field, amount);
        inputTax(1);
        break;
    case Action::Bewirtung: {
        const std::int64_t deductible = divideRounded(amount * 70, 100);
        book(rule.field, deductible);
        book(rule.second, amount - deductible);
        inputTax(1);
        break;
    }
    case Action::NichtAbziehbar:
    case Action::Anlagegut:
        p.list = rule.action == Action::Anlagegut ? EuerList::Anlagegut : EuerList::NichtAbziehbar;
        p.reason = rule.reason;
        p.listedCents = amount;
        inputTax(1);
        break;
    case Action::NichtTeil:
    case Action::Brutto:
        break;
    }
    return p;
}

} // namespace saldo::tax
