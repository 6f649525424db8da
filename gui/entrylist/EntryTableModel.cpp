#include "entrylist/EntryTableModel.h"

#include "app/Document.h"
#include "entrylist/CellEdit.h"
#include "entrylist/SortOrdering.h"
#include "platform/NotificationCenter.h"

#include <cassert>
#include <unordered_map>

namespace saldo::gui {

EntryTableModel::EntryTableModel(
    Document& document, const EntryLists& lists, const UserDefaults& defaults, QObject* parent)
    : QAbstractTableModel(parent)
    , document_(document)
    , lists_(lists)
    , cells_(defaults)
    , rows_(static_cast<int>(lists.einnahmen().size()))
{
}

int EntryTableModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : rows_;
}

int EntryTableModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : EntryColumn::Count;
}

EinnahmePtr EntryTableModel::entryAt(int row) const
{
    const auto& einnahmen = lists_.einnahmen();
    if (row < 0 || row >= rows_ || static_cast<std::size_t>(row) >= einnahmen.size())
        return nullptr;
    return einnahmen[static_cast<std::size_t>(row)];
}

QVariant EntryTableModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.column() >= EntryColumn::Count)
        return QVariant();
    const EinnahmePtr entry = entryAt(index.row());
    if (!entry)
        return QVariant();
    const auto column = EntryColumn::fromIndex(index.column());
    // Every cell request is announced; nothing in the program relies on it
    // but other windows may listen.
    if (role == Qt::DisplayRole)
        NotificationCenter::defaultCenter().post(kTableViewUpdated);
    return cells_.data(*entry, column, index.row(), role);
}

QVariant EntryTableModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || !EntryColumn::isValid(section))
        return QAbstractTableModel::headerData(section, orientation, role);
    return EntryCells::headerData(EntryColumn::fromIndex(section), role);
}

Qt::ItemFlags EntryTableModel::flags(const QModelIndex& index) const
{
    if (!index.isValid())
        return Qt::NoItemFlags;
    return cells_.flags(entryAt(index.row()).get(), EntryColumn::fromIndex(index.column()));
}

bool EntryTableModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    if (!index.isValid() || !entryAt(index.row()))
        return false;
    const auto column = EntryColumn::fromIndex(index.column());
    if (role != EntryCells::editRole(column))
        return false;
    if (!(flags(index) & (Qt::ItemIsEditable | Qt::ItemIsUserCheckable)))
        return false;
    const auto edit = EntryCells::cellValue(column, value);
    if (!edit)
        return false;
    const int row = index.row();
    const bool stored = document_.editCell(row, column, *edit) == CellEdit::Outcome::Stored;
    // A refused value is replaced by the stored one at once.
    rowChanged(row);
    return stored;
}

void EntryTableModel::rowChanged(int row)
{
    if (row >= 0 && row < rows_)
        emit dataChanged(index(row, 0), index(row, EntryColumn::Count - 1));
}

void EntryTableModel::reload()
{
    cells_.refreshCategories();
    if (static_cast<std::size_t>(rows_) != lists_.einnahmen().size()) {
        resetWith([] {});
        return;
    }
    if (rows_ > 0)
        emit dataChanged(index(0, 0), index(rows_ - 1, EntryColumn::Count - 1));
}

void EntryTableModel::insertEntries(int first, int count, const std::function<void()>& change)
{
    if (count <= 0) {
        resetWith(change);
        return;
    }
    beginInsertRows(QModelIndex(), first, first + count - 1);
    change();
    assert(lists_.einnahmen().size() == static_cast<std::size_t>(rows_ + count));
    rows_ = static_cast<int>(lists_.einnahmen().size());
    endInsertRows();
}

void EntryTableModel::removeEntries(int first, int count, const std::function<void()>& change)
{
    if (count <= 0 || first < 0 || first + count > rows_) {
        resetWith(change);
        return;
    }
    beginRemoveRows(QModelIndex(), first, first + count - 1);
    change();
    assert(lists_.einnahmen().size() + static_cast<std::size_t>(count) == static_cast<std::size_t>(rows_));
    rows_ = static_cast<int>(lists_.einnahmen().size());
    endRemoveRows();
}

void EntryTableModel::resetWith(const std::function<void()>& change)
{
    beginResetModel();
    change();
    cells_.refreshCategories();
    rows_ = static_cast<int>(lists_.einnahmen().size());
    endResetModel();
}

void EntryTableModel::sort(int column, Qt::SortOrder order)
{
    if (column < 0 || column >= EntryColumn::Count)
        return;
    std::optional<std::string_view> key;
    if (static_cast<std::size_t>(column) < SortOrdering::kColumnKeys.size())
        key = SortOrdering::kColumnKeys[static_cast<std::size_t>(column)];

    emit layoutAboutToBeChanged({}, QAbstractItemModel::VerticalSortHint);
    const QModelIndexList before = persistentIndexList();
    std::vector<const Einnahme*> held;
    held.reserve(static_cast<std::size_t>(before.size()));
    for (const QModelIndex& index : before)
        held.push_back(entryAt(index.row()).get());

    document_.sortEinnahmen(key, order == Qt::AscendingOrder);

    // Each held index moves to the (first) row of its entry.
    QModelIndexList after;
    if (!before.isEmpty()) {
        std::unordered_map<const Einnahme*, int> rowOf;
        rowOf.reserve(held.size());
        for (const Einnahme* entry : held)
            rowOf.emplace(entry, -1);
        const auto& einnahmen = lists_.einnahmen();
        for (std::size_t row = 0; row < einnahmen.size(); ++row) {
            auto it = rowOf.find(einnahmen[row].get());
            if (it != rowOf.end() && it->second < 0)
                it->second = static_cast<int>(row);
        }
        after.reserve(before.size());
        for (qsizetype i = 0; i < before.size(); ++i) {
            const int row = held[static_cast<std::size_t>(i)] ? rowOf[held[static_cast<std::size_t>(i)]] : -1;
            after.append(row < 0 ? QModelIndex() : index(row, before[i].column()));
        }
        changePersistentIndexList(before, after);
    }
    emit layoutChanged({}, QAbstractItemModel::VerticalSortHint);
}

} // namespace saldo::gui
