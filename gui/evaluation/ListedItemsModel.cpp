#include "evaluation/ListedItemsModel.h"

namespace saldo::gui {

ListedItemsModel::ListedItemsModel(QObject* parent)
    : QAbstractTableModel(parent)
{
}

void ListedItemsModel::setItems(std::vector<tax::ListedItem> items)
{
    beginResetModel();
    items_ = std::move(items);
    endResetModel();
}

int ListedItemsModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(items_.size());
}

int ListedItemsModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant ListedItemsModel::data(const QModelIndex& index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    const tax::ListedItem& item = items_[static_cast<std::size_t>(index.row())];
    if (role == Qt::TextAlignmentRole)
        return QVariant::fromValue(
            index.column() == Betrag ? Qt::AlignRight | Qt::AlignVCenter : Qt::AlignLeft | Qt::AlignVCenter);
    if (role != Qt::DisplayRole && role != Qt::ToolTipRole)
        return {};
    switch (index.column()) {
    case Row:
        return QString::fromStdString(item.row);
    case Datum:
        return QString::fromStdString(item.dayText());
    case Name:
        return QString::fromStdString(item.name);
    case Betrag:
        return QString::fromStdString(item.amountText());
    case Grund:
        return QString::fromUtf8(item.reason ? item.reason : "");
    default:
        return {};
    }
}

QVariant ListedItemsModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    static const char* const titles[] = { "Eintrag", "Datum", "Name", "Betrag", "Grund" };
    return section >= 0 && section < ColumnCount ? QString::fromLatin1(titles[section]) : QVariant();
}

} // namespace saldo::gui
