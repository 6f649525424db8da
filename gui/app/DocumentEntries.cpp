#include "app/DocumentEntries.h"

#include "entrylist/EntryTableModel.h"
#include "entrylist/SearchOutcome.h"

#include <algorithm>
#include <unordered_set>

namespace saldo::gui {

namespace {
// Beyond this many blocks of neighbouring rows a removal resets the table at
// once instead of removing block by block.
constexpr std::size_t kMaxRemovedBlocks = 8;
}  // namespace

DocumentEntries::DocumentEntries(Document& document, const UserDefaults& defaults, QObject* parent)
    : QObject(parent)
{
    lists_.setStartingEntry();
    model_ = new EntryTableModel(document, lists_, defaults, this);
}

DocumentEntries::~DocumentEntries() = default;

void DocumentEntries::run(const DocumentChange& what, const std::function<void()>& change)
{
    emit aboutToChange();
    change();
    emit changed(what);
}

void DocumentEntries::setEntries(EinnahmeList entries, DocumentChange::Selection selection)
{
    DocumentChange what;
    what.kind = DocumentChange::Kind::ListsReplaced;
    what.selection = selection;
    run(what, [&] { model_->resetWith([&] { lists_.setEntries(std::move(entries)); }); });
}

void DocumentEntries::setLists(EinnahmeList einnahmen, EinnahmeList backupEinnahmen)
{
    DocumentChange what;
    what.kind = DocumentChange::Kind::ListsReplaced;
    what.selection = DocumentChange::Selection::KeepRows;
    run(what, [&] {
        model_->resetWith([&] { lists_.setLists(std::move(einnahmen), std::move(backupEinnahmen)); });
    });
}

void DocumentEntries::applySearch(const SearchOutcome& outcome)
{
    if (outcome.kind() == SearchOutcome::Kind::NoChange)
        return;
    DocumentChange what;
    what.kind = DocumentChange::Kind::ListsReplaced;
    run(what, [&] { model_->resetWith([&] { lists_.applySearch(outcome); }); });
}

void DocumentEntries::sortEinnahmen(std::optional<std::string_view> key, bool ascending)
{
    lists_.sortEinnahmen(key, ascending);
}

void DocumentEntries::append(const EinnahmeList& entries, bool select)
{
    if (entries.empty())
        return;
    DocumentChange what;
    what.kind = DocumentChange::Kind::RowsInserted;
    what.entries = entries;
    const std::size_t first = lists_.einnahmen().size();
    if (select) {
        what.selection = DocumentChange::Selection::Rows;
        for (std::size_t i = 0; i < entries.size(); ++i)
            what.rows.push_back(first + i);
        what.scroll = true;
    }
    run(what, [&] {
        model_->insertEntries(static_cast<int>(first), static_cast<int>(entries.size()), [&] {
            for (const auto& entry : entries)
                lists_.appendEntry(entry);
        });
    });
}

std::size_t DocumentEntries::insertCopy(std::size_t row, const EinnahmePtr& copy)
{
    row = std::min(row, lists_.einnahmen().size());
    DocumentChange what;
    what.kind = DocumentChange::Kind::RowsInserted;
    what.entries = {copy};
    what.selection = DocumentChange::Selection::Rows;
    what.rows = {row};
    what.scroll = true;
    run(what, [&] { model_->insertEntries(static_cast<int>(row), 1, [&] { lists_.insertCopy(row, copy); }); });
    return row;
}

void DocumentEntries::removeShownRows(const std::vector<std::size_t>& rows,
    const std::function<void(std::size_t, std::size_t)>& removeBlock, const std::function<void()>& removeAll)
{
    std::vector<std::pair<std::size_t, std::size_t>> blocks;  // (first, last), highest first
    for (auto it = rows.rbegin(); it != rows.rend(); ++it) {
        if (!blocks.empty() && blocks.back().first == *it + 1)
            blocks.back().first = *it;
        else if (blocks.empty() || blocks.back().first != *it)
            blocks.emplace_back(*it, *it);
    }
    if (blocks.size() > kMaxRemovedBlocks) {
        model_->resetWith(removeAll);
        return;
    }
    for (const auto& [first, last] : blocks) {
        model_->removeEntries(static_cast<int>(first), static_cast<int>(last - first + 1),
            [&, first = first, last = last] { removeBlock(first, last - first + 1); });
    }
}

void DocumentEntries::remove(const EinnahmeList& entries)
{
    if (entries.empty())
        return;
    std::unordered_set<const Einnahme*> doomed;
    for (const auto& entry : entries)
        doomed.insert(entry.get());
    std::vector<std::size_t> rows;
    const auto& shown = lists_.einnahmen();
    for (std::size_t row = 0; row < shown.size(); ++row)
        if (doomed.count(shown[row].get()))
            rows.push_back(row);

    DocumentChange what;
    what.kind = DocumentChange::Kind::RowsRemoved;
    what.entries = entries;
    run(what, [&] {
        removeShownRows(
            rows,
            [&](std::size_t first, std::size_t count) {
                std::vector<std::size_t> block;
                for (std::size_t row = first + count; row-- > first;)
                    block.push_back(row);
                lists_.deleteRows(block);
            },
            [&] { lists_.removeEntries(entries); });
        // Entries hidden by a search, or standing twice in the complete list.
        lists_.removeEntries(entries);
    });
}

DeletionRecord DocumentEntries::deleteRows(const std::vector<std::size_t>& rows)
{
    std::vector<std::size_t> valid;
    for (std::size_t row : rows)
        if (row < lists_.einnahmen().size())
            valid.push_back(row);
    std::sort(valid.begin(), valid.end());
    valid.erase(std::unique(valid.begin(), valid.end()), valid.end());

    DeletionRecord record;
    DocumentChange what;
    what.kind = DocumentChange::Kind::RowsRemoved;
    run(what, [&] {
        EinnahmeList removed;
        removeShownRows(
            valid,
            [&](std::size_t first, std::size_t count) {
                std::vector<std::size_t> block;
                for (std::size_t row = first + count; row-- > first;)
                    block.push_back(row);
                const DeletionRecord part = lists_.deleteRows(block);
                removed.insert(removed.end(), part.entries().begin(), part.entries().end());
            },
            [&] {
                const DeletionRecord all = lists_.deleteRows(valid);
                removed = all.entries();
            });
        record = DeletionRecord(std::move(removed));
    });
    return record;
}

void DocumentEntries::undoDeletion(const DeletionRecord& record)
{
    if (record.empty())
        return;
    DocumentChange what;
    what.kind = DocumentChange::Kind::RowsInserted;
    what.entries = record.entries();
    what.selection = DocumentChange::Selection::Rows;
    what.scroll = true;
    emit aboutToChange();
    const int first = static_cast<int>(lists_.einnahmen().size());
    model_->insertEntries(
        first, static_cast<int>(record.size()), [&] { what.rows = lists_.undoDeletion(record); });
    emit changed(what);
}

void DocumentEntries::setFields(const EinnahmePtr& entry, Einnahme::Stored fields)
{
    DocumentChange what;
    what.kind = DocumentChange::Kind::EntriesEdited;
    what.entries = {entry};
    run(what, [&] {
        changeEntry(*entry, [&](Einnahme& e) { e.setStored(std::move(fields)); });
        const auto& shown = lists_.einnahmen();
        for (std::size_t row = 0; row < shown.size(); ++row)
            if (shown[row] == entry)
                model_->rowChanged(static_cast<int>(row));
    });
}

void DocumentEntries::changeEntries(
    const EinnahmeList& entries, const std::function<void(Einnahme&, std::size_t)>& change)
{
    DocumentChange what;
    what.kind = DocumentChange::Kind::EntriesEdited;
    what.entries = entries;
    run(what, [&] {
        for (std::size_t i = 0; i < entries.size(); ++i)
            changeEntry(*entries[i], [&](Einnahme& e) { change(e, i); });
        model_->reload();
    });
}

void DocumentEntries::changeEntry(Einnahme& entry, const std::function<void(Einnahme&)>& change)
{
    // Each gate keeps the values before the change, innermost the change itself.
    std::function<void(Einnahme&)> passed = change;
    for (SnapshotGate* gate : readerGates_)
        passed = [gate, inner = std::move(passed)](Einnahme& e) { gate->change(e, inner); };
    saveGate_.change(entry, [&](Einnahme& e) { summaryGate_.change(e, passed); });
}

void DocumentEntries::addReaderGate(SnapshotGate& gate)
{
    readerGates_.push_back(&gate);
}

void DocumentEntries::removeReaderGate(SnapshotGate& gate)
{
    std::erase(readerGates_, &gate);
}

void DocumentEntries::replace(const EinnahmePtr& current, const EinnahmePtr& replacement)
{
    DocumentChange what;
    what.kind = DocumentChange::Kind::EntriesEdited;
    what.entries = {current, replacement};
    emit aboutToChange();
    const auto row = lists_.replaceObject(current.get(), replacement);
    if (row) {
        model_->rowChanged(static_cast<int>(*row));
        what.selection = DocumentChange::Selection::Rows;
        what.rows = {*row};
        what.scroll = true;
    }
    emit changed(what);
}

std::optional<EntryLists::Place> DocumentEntries::takeOut(std::size_t row)
{
    if (row >= lists_.einnahmen().size())
        return std::nullopt;
    std::optional<EntryLists::Place> place;
    DocumentChange what;
    what.kind = DocumentChange::Kind::RowsRemoved;
    what.entries = {lists_.einnahmen()[row]};
    run(what, [&] { model_->removeEntries(static_cast<int>(row), 1, [&] { place = lists_.takeOut(row); }); });
    return place;
}

void DocumentEntries::putBack(const EntryLists::Place& place, const EinnahmePtr& entry)
{
    DocumentChange what;
    what.kind = DocumentChange::Kind::RowsInserted;
    what.entries = {entry};
    emit aboutToChange();
    if (place.shown) {
        const std::size_t row = std::min(*place.shown, lists_.einnahmen().size());
        model_->insertEntries(static_cast<int>(row), 1, [&] { lists_.putBack(place, entry); });
        what.selection = DocumentChange::Selection::Rows;
        what.rows = {row};
        what.scroll = true;
    } else {
        lists_.putBack(place, entry);
    }
    emit changed(what);
}

}  // namespace saldo::gui
