#include "entrylist/EntryLists.h"

#include "entrylist/SearchOutcome.h"
#include "entrylist/SortOrdering.h"

#include <algorithm>
#include <unordered_map>
#include <unordered_set>

namespace saldo {
namespace {

// Keeps the entries for which `remove(index, entry)` is false, in order. The
// predicate sees every entry exactly once, front to back, so it may count.
template <typename Predicate> void removeInOrder(EinnahmeList& list, Predicate remove)
{
    std::size_t kept = 0;
    for (std::size_t i = 0; i < list.size(); ++i) {
        if (remove(i, list[i]))
            continue;
        if (kept != i)
            list[kept] = std::move(list[i]);
        ++kept;
    }
    list.resize(kept);
}

}  // namespace

void EntryLists::setEntries(EinnahmeList entries)
{
    backupEinnahmen_ = entries;
    einnahmen_ = std::move(entries);
}

void EntryLists::setLists(EinnahmeList einnahmen, EinnahmeList backupEinnahmen)
{
    einnahmen_ = std::move(einnahmen);
    backupEinnahmen_ = std::move(backupEinnahmen);
}

void EntryLists::setStartingEntry()
{
    setEntries({ Einnahme::make("Neu", "", 0.0f, 19.0f) });
}

EinnahmePtr EntryLists::makeNewEntry()
{
    return Einnahme::make("Neu", "", 0.0f, 0.0f);
}

std::size_t EntryLists::addEntry()
{
    return appendEntry(makeNewEntry());
}

std::size_t EntryLists::appendEntry(EinnahmePtr entry)
{
    backupEinnahmen_.push_back(entry);
    einnahmen_.push_back(std::move(entry));
    return einnahmen_.size() - 1;
}

bool EntryLists::replaceEntry(std::size_t row, EinnahmePtr replacement)
{
    if (row >= einnahmen_.size() || !replacement)
        return false;
    const EinnahmePtr source = einnahmen_[row];
    auto place = std::find(backupEinnahmen_.begin(), backupEinnahmen_.end(), source);
    if (place != backupEinnahmen_.end())
        *place = replacement;
    else
        backupEinnahmen_.push_back(replacement);
    einnahmen_[row] = std::move(replacement);
    return true;
}

std::optional<std::size_t> EntryLists::duplicate(std::size_t row)
{
    if (row >= einnahmen_.size())
        return std::nullopt;
    return insertCopy(row + 1, einnahmen_[row]->copy());
}

std::size_t EntryLists::insertCopy(std::size_t row, EinnahmePtr copy)
{
    row = std::min(row, einnahmen_.size());
    backupEinnahmen_.push_back(copy);
    einnahmen_.insert(einnahmen_.begin() + static_cast<std::ptrdiff_t>(row), std::move(copy));
    return row;
}

std::optional<std::size_t> EntryLists::replaceObject(const Einnahme* current, const EinnahmePtr& replacement)
{
    const auto same = [current](const EinnahmePtr& entry) { return entry.get() == current; };
    auto complete = std::find_if(backupEinnahmen_.begin(), backupEinnahmen_.end(), same);
    if (complete != backupEinnahmen_.end())
        *complete = replacement;
    auto shown = std::find_if(einnahmen_.begin(), einnahmen_.end(), same);
    if (shown == einnahmen_.end())
        return std::nullopt;
    *shown = replacement;
    return static_cast<std::size_t>(shown - einnahmen_.begin());
}

std::optional<EntryLists::Place> EntryLists::takeOut(std::size_t row)
{
    if (row >= einnahmen_.size())
        return std::nullopt;
    Place place;
    place.shown = row;
    const EinnahmePtr entry = einnahmen_[row];
    einnahmen_.erase(einnahmen_.begin() + static_cast<std::ptrdiff_t>(row));
    auto complete = std::find(backupEinnahmen_.begin(), backupEinnahmen_.end(), entry);
    if (complete != backupEinnahmen_.end()) {
        place.complete = static_cast<std::size_t>(complete - backupEinnahmen_.begin());
        backupEinnahmen_.erase(complete);
    }
    return place;
}

std::optional<std::size_t> EntryLists::putBack(const Place& place, const EinnahmePtr& entry)
{
    if (place.complete) {
        const auto at = std::min(*place.complete, backupEinnahmen_.size());
        backupEinnahmen_.insert(backupEinnahmen_.begin() + static_cast<std::ptrdiff_t>(at), entry);
    }
    if (!place.shown)
        return std::nullopt;
    const auto row = std::min(*place.shown, einnahmen_.size());
    einnahmen_.insert(einnahmen_.begin() + static_cast<std::ptrdiff_t>(row), entry);
    return row;
}

std::optional<std::size_t> EntryLists::duplicateSourceRow(std::optional<std::size_t> selectedRow, std::size_t rowCount)
{
    if (rowCount == 0)
        return std::nullopt;
    if (!selectedRow)
        return rowCount - 1;
    if (*selectedRow >= rowCount)
        return std::nullopt;
    return selectedRow;
}

DeletionRecord EntryLists::deleteRows(const std::vector<std::size_t>& rows)
{
    std::vector<std::size_t> valid;
    valid.reserve(rows.size());
    for (std::size_t row : rows)
        if (row < einnahmen_.size())
            valid.push_back(row);
    std::sort(valid.begin(), valid.end(), std::greater<>());
    valid.erase(std::unique(valid.begin(), valid.end()), valid.end());
    if (valid.empty())
        return DeletionRecord();

    EinnahmeList record;
    record.reserve(valid.size());
    for (std::size_t row : valid)
        record.push_back(einnahmen_[row]);

    // Removing rows one by one from the highest leaves exactly the rows not in
    // the set, so the shown list is compacted in one pass.
    std::vector<bool> doomed(einnahmen_.size(), false);
    for (std::size_t row : valid)
        doomed[row] = true;
    removeInOrder(einnahmen_, [&](std::size_t i, const EinnahmePtr&) { return doomed[i]; });

    // Each removal takes the first place of its object in the complete list, so
    // an object deleted k times loses its first k places there; removals of
    // different objects do not interact.
    std::unordered_map<const Einnahme*, std::size_t> toRemove;
    toRemove.reserve(record.size());
    for (const auto& entry : record)
        ++toRemove[entry.get()];
    removeInOrder(backupEinnahmen_, [&](std::size_t, const EinnahmePtr& entry) {
        auto it = toRemove.find(entry.get());
        if (it == toRemove.end() || it->second == 0)
            return false;
        --it->second;
        return true;
    });

    return DeletionRecord(std::move(record));
}

std::vector<std::size_t> EntryLists::undoDeletion(const DeletionRecord& record)
{
    const auto& entries = record.entries();
    for (const auto& entry : entries) {
        einnahmen_.push_back(entry);
        backupEinnahmen_.push_back(entry);
    }
    // The first place of each restored object; appending later entries never
    // moves an earlier place, so one scan after all appends answers the same.
    std::unordered_map<const Einnahme*, std::size_t> firstRow;
    firstRow.reserve(entries.size());
    for (const auto& entry : entries)
        firstRow.emplace(entry.get(), einnahmen_.size());
    std::size_t pending = firstRow.size();
    for (std::size_t row = 0; row < einnahmen_.size() && pending > 0; ++row) {
        auto it = firstRow.find(einnahmen_[row].get());
        if (it != firstRow.end() && it->second == einnahmen_.size()) {
            it->second = row;
            --pending;
        }
    }
    std::vector<std::size_t> rows;
    rows.reserve(entries.size());
    for (const auto& entry : entries)
        rows.push_back(firstRow.at(entry.get()));
    return rows;
}

void EntryLists::redoDeletion(const DeletionRecord& record)
{
    removeEntries(record.entries());
}

void EntryLists::removeEntries(const EinnahmeList& entries)
{
    std::unordered_set<const Einnahme*> doomed;
    doomed.reserve(entries.size());
    for (const auto& entry : entries)
        doomed.insert(entry.get());
    const auto isDoomed = [&](const EinnahmePtr& entry) { return doomed.count(entry.get()) != 0; };
    std::erase_if(einnahmen_, isDoomed);
    std::erase_if(backupEinnahmen_, isDoomed);
}

std::string EntryLists::deleteConfirmationText(std::size_t count)
{
    return "Moechten Sie " + std::to_string(count) + (count == 1 ? " Eintrag" : " Eintraege") + " loeschen?";
}

std::optional<std::size_t> EntryLists::rowOf(const Einnahme* entry) const
{
    for (std::size_t row = 0; row < einnahmen_.size(); ++row)
        if (einnahmen_[row].get() == entry)
            return row;
    return std::nullopt;
}

bool EntryLists::applySearch(const SearchOutcome& outcome)
{
    switch (outcome.kind()) {
    case SearchOutcome::Kind::ShowAll:
        einnahmen_ = backupEinnahmen_;
        return true;
    case SearchOutcome::Kind::NoChange:
        return false;
    case SearchOutcome::Kind::KeepShown:
        return true;
    case SearchOutcome::Kind::Filter:
        einnahmen_ = outcome.condition()->filter(backupEinnahmen_);
        return true;
    }
    return false;
}

void EntryLists::sortEinnahmen(std::optional<std::string_view> key, bool ascending)
{
    SortOrdering::sortEinnahmen(einnahmen_, key, ascending);
}

}  // namespace saldo
