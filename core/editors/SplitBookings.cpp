#include "editors/SplitBookings.h"

#include <cmath>

namespace saldo {

EinnahmePtr SplitBookings::workingCopy(const Einnahme& source)
{
    // The copy rule already gives the copy a list of its own that holds the same
    // child entries; only the name is the source's.
    auto copy = source.copy();
    copy->setName(source.name());
    return copy;
}

std::optional<float> SplitBookings::childTransactionsSum(const Einnahme& entry)
{
    const auto& children = entry.childTransactions();
    if (children.empty())
        return std::nullopt;
    float sum = 0.0f;
    for (const auto& child : children) {
        if (child->isIncome())
            sum += child->brutto();
        else
            sum -= child->brutto();
    }
    return sum;
}

void SplitBookings::deriveKindAndGross(Einnahme& entry)
{
    const auto sum = childTransactionsSum(entry);
    if (!sum)
        return;
    if (*sum < 0.0f) {
        entry.setArt(kArtAusgabe);
        entry.setBrutto(std::fabs(*sum));
    } else {
        entry.setArt(kArtEinnahme);
        entry.setBrutto(*sum);
    }
}

std::size_t SplitBookings::addChildEntry(Einnahme& entry)
{
    EinnahmeList children = entry.childTransactions();
    children.push_back(Einnahme::make("Neu", "", 0.0f, 0.0f));
    entry.setChildTransactions(std::move(children));
    return entry.childTransactions().size() - 1;
}

bool SplitBookings::removeChildEntry(Einnahme& entry, std::optional<std::size_t> row)
{
    if (!row || *row >= entry.childTransactions().size())
        return false;
    EinnahmeList children = entry.childTransactions();
    children.erase(children.begin() + static_cast<std::ptrdiff_t>(*row));
    entry.setChildTransactions(std::move(children));
    return true;
}

} // namespace saldo
