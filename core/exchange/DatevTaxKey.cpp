#include "exchange/DatevTaxKey.h"

#include "tax/TaxItems.h"

#include <algorithm>
#include <array>

namespace saldo {

namespace {

// SKR 03 revenue accounts that carry their own tax key: a key written on them
// makes the adviser's system refuse the booking or count the tax twice.
constexpr std::array<std::uint32_t, 9> kAutomaticAccounts { 8120, 8125, 8300, 8310, 8315, 8336, 8338, 8400, 8449 };

// Accounts whose purchases are goods: an intra-community purchase of them is
// an acquisition (Erwerb); of anything else it is a service under § 13b.
struct AccountRange {
    std::uint32_t first;
    std::uint32_t last;
};
constexpr std::array<AccountRange, 2> kGoodsAccounts { { { 0, 999 }, { 3000, 3999 } } };

enum class Case { Income, IntraCommunitySupply, Expense, IntraCommunityAcquisition, ReverseCharge };

struct KeyRow {
    Case taxCase;
    std::int64_t rate; // hundredths of a percent
    const char* key;
};
constexpr std::array<KeyRow, 7> kKeys { {
    { Case::Income, 1900, "3" },
    { Case::Income, 700, "2" },
    { Case::Expense, 1900, "9" },
    { Case::Expense, 700, "8" },
    { Case::IntraCommunityAcquisition, 1900, "19" },
    { Case::IntraCommunityAcquisition, 700, "18" },
    { Case::ReverseCharge, 1900, "94" },
} };

bool isGoods(std::uint32_t account)
{
    return std::any_of(kGoodsAccounts.begin(), kGoodsAccounts.end(),
        [account](const AccountRange& range) { return account >= range.first && account <= range.last; });
}

Case caseOf(const Einnahme& item, std::uint32_t account)
{
    if (item.isIncome())
        return item.innergemeinschaftlicherErwerb() ? Case::IntraCommunitySupply : Case::Income;
    if (item.innergemeinschaftlicherErwerb())
        return isGoods(account) ? Case::IntraCommunityAcquisition : Case::ReverseCharge;
    return item.isNonEU() ? Case::ReverseCharge : Case::Expense;
}

// "16", "10,7": the rate as the user typed it.
std::string percentText(std::int64_t rate)
{
    std::string text = std::to_string(rate / 100);
    if (const std::int64_t fraction = rate % 100; fraction != 0) {
        text += ',';
        text += static_cast<char>('0' + fraction / 10);
        if (fraction % 10 != 0)
            text += static_cast<char>('0' + fraction % 10);
    }
    return text;
}

const char* caseText(Case taxCase)
{
    switch (taxCase) {
    case Case::Income:
        return "Einnahme";
    case Case::IntraCommunitySupply:
        return "innergemeinschaftliche Lieferung";
    case Case::Expense:
        return "Ausgabe";
    case Case::IntraCommunityAcquisition:
        return "innergemeinschaftlicher Erwerb";
    case Case::ReverseCharge:
        return "Reverse Charge";
    }
    return "";
}

} // namespace

DatevTaxKey::Outcome DatevTaxKey::of(const Einnahme& item, std::uint32_t account)
{
    const std::optional<std::int64_t> rate = tax::rateHundredths(item.steuersatz());
    if (!rate)
        return { "", tax::kSteuersatzUngueltig };
    if (*rate == 0 || isAutomaticAccount(account))
        return {};
    const Case taxCase = caseOf(item, account);
    for (const KeyRow& row : kKeys) {
        if (row.taxCase == taxCase && row.rate == *rate)
            return { row.key, {} };
    }
    return { "", "kein BU-Schluessel fuer " + percentText(*rate) + " % (" + caseText(taxCase) + ")" };
}

bool DatevTaxKey::isAutomaticAccount(std::uint32_t account)
{
    return std::find(kAutomaticAccounts.begin(), kAutomaticAccounts.end(), account) != kAutomaticAccounts.end();
}

std::span<const std::uint32_t> DatevTaxKey::automaticAccounts()
{
    return kAutomaticAccounts;
}

} // namespace saldo
