#include "settings/CategoryListModel.h"

#include "settings/CategoryListEdits.h"

#include <QMimeData>

#include <algorithm>
#include <set>

namespace saldo::gui {

CategoryListModel::CategoryListModel(std::vector<std::string> list, QObject* parent)
    : QAbstractListModel(parent)
    , containerArray_(std::move(list))
{
}

int CategoryListModel::appendRow(const std::string& text)
{
    const int row = rowCount();
    beginInsertRows(QModelIndex(), row, row);
    containerArray_.push_back(text);
    endInsertRows();
    return row;
}

void CategoryListModel::removeRowAt(int row)
{
    if (row < 0 || row >= rowCount())
        return;
    beginRemoveRows(QModelIndex(), row, row);
    containerArray_.erase(containerArray_.begin() + row);
    endRemoveRows();
}

int CategoryListModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(containerArray_.size());
}

QVariant CategoryListModel::data(const QModelIndex& index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid) || (role != Qt::DisplayRole && role != Qt::EditRole))
        return {};
    return QString::fromStdString(containerArray_[static_cast<std::size_t>(index.row())]);
}

bool CategoryListModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid) || role != Qt::EditRole
        || value.typeId() != QMetaType::QString)
        return false;
    std::string& row = containerArray_[static_cast<std::size_t>(index.row())];
    const std::string before = row;
    row = value.toString().toStdString();
    emit dataChanged(index, index, { Qt::DisplayRole, Qt::EditRole });
    emit listEdited();
    if (row != before)
        emit rowRenamed(QString::fromStdString(before), QString::fromStdString(row));
    return true;
}

Qt::ItemFlags CategoryListModel::flags(const QModelIndex& index) const
{
    // Drops are taken only between rows: the list itself accepts them, a row does not.
    if (!index.isValid())
        return Qt::ItemIsDropEnabled;
    return Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsEditable | Qt::ItemIsDragEnabled
        | Qt::ItemNeverHasChildren;
}

QStringList CategoryListModel::mimeTypes() const
{
    return { QString::fromLatin1(kDragDropType) };
}

QMimeData* CategoryListModel::mimeData(const QModelIndexList& indexes) const
{
    std::set<int> rows;
    for (const QModelIndex& index : indexes)
        if (index.isValid())
            rows.insert(index.row());
    QByteArray numbers;
    for (int row : rows) {
        if (!numbers.isEmpty())
            numbers += '\n';
        numbers += QByteArray::number(row);
    }
    auto* data = new QMimeData;
    data->setData(QString::fromLatin1(kDragDropType), numbers);
    return data;
}

Qt::DropActions CategoryListModel::supportedDragActions() const
{
    return Qt::MoveAction;
}

Qt::DropActions CategoryListModel::supportedDropActions() const
{
    return Qt::MoveAction;
}

bool CategoryListModel::canDropMimeData(
    const QMimeData* data, Qt::DropAction action, int row, int /*column*/, const QModelIndex& parent) const
{
    return data && data->hasFormat(QString::fromLatin1(kDragDropType)) && action == Qt::MoveAction && !parent.isValid()
        && row <= rowCount();
}

bool CategoryListModel::dropMimeData(
    const QMimeData* data, Qt::DropAction action, int row, int column, const QModelIndex& parent)
{
    if (!canDropMimeData(data, action, row, column, parent))
        return false;
    // Lines that are no row number contribute nothing; the drop still counts.
    std::vector<std::int64_t> dragged;
    for (const QByteArray& line : data->data(QString::fromLatin1(kDragDropType)).split('\n'))
        if (const auto number = CategoryListEdits::draggedRow(std::string_view(line.constData(), line.size())))
            dragged.push_back(*number);

    const std::size_t target = row < 0 ? containerArray_.size() : static_cast<std::size_t>(row);
    std::vector<std::string> placed = containerArray_;
    // The table repeats the moves one by one, so that selection and current
    // row travel with the rows they belong to.
    for (const CategoryListEdits::Move& move : CategoryListEdits::dropRows(placed, dragged, target)) {
        if (move.from == move.to)
            continue;
        const int from = static_cast<int>(move.from);
        const int to = static_cast<int>(move.to);
        beginMoveRows(QModelIndex(), from, from, QModelIndex(), to > from ? to + 1 : to);
        std::string text = std::move(containerArray_[move.from]);
        containerArray_.erase(containerArray_.begin() + from);
        containerArray_.insert(containerArray_.begin() + to, std::move(text));
        endMoveRows();
    }
    emit listEdited();
    return true;
}

} // namespace saldo::gui
