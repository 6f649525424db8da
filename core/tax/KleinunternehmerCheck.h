#pragma once

#include "model/Einnahme.h"
#include "model/SnapshotGate.h"
#include "tax/ListedItem.h"
#include "tax/UstvaForm.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace saldo::tax {

// A Kleinunternehmer's turnover against the limits of § 19 UStG for one
// year: the gross income of the previous year and of the year itself, and
// the entry with which the year's income first went over its limit.
struct KleinunternehmerResult {
    int year = 0;
    std::int64_t previousYearCents = 0;
    std::int64_t currentYearCents = 0;
    std::int64_t previousYearLimitCents = 0;
    std::int64_t currentYearLimitCents = 0;
    // The income item after which the running total of the year, in date
    // order (entries of the same date in the ledger's order), first stood
    // above the current year's limit.
    std::optional<ListedItem> crossing;
    // Income of the two years that could not be counted (an amount that is
    // not a number or too large, a date that is not a number).
    std::vector<ListedItem> notCounted;

    bool previousYearOver() const { return previousYearCents > previousYearLimitCents; }
    bool currentYearOver() const { return currentYearCents > currentYearLimitCents; }
};

// Adds up the gross income of a year and of the one before it. Income is
// every item whose kind is income, except the items that take no part in the
// VAT return (money accounts, private deposits, refunds of the Finanzamt).
class KleinunternehmerCheck {
public:
    static KleinunternehmerResult check(
        const EinnahmeList& entries, const UstvaForm& form, const SnapshotGate* gate = nullptr);
};

} // namespace saldo::tax
