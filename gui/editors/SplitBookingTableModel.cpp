#include "editors/SplitBookingTableModel.h"

#include "editors/SplitBookings.h"
#include "entrylist/CellEdit.h"
#include "platform/Diagnostics.h"
#include "platform/Sound.h"

namespace saldo::gui {

EntryColumn::Id SplitBookingTableModel::columnAt(int position)
{
    // The split-booking column is left out; the columns after it move up one.
    return EntryColumn::fromIndex(position < EntryColumn::Splitbuchung ? position : position + 1);
}

int SplitBookingTableModel::positionOf(EntryColumn::Id column)
{
    return column < EntryColumn::Splitbuchung ? column : column - 1;
}

SplitBookingTableModel::SplitBookingTableModel(EinnahmePtr workingCopy, const UserDefaults& defaults, QObject* parent)
    : QAbstractTableModel(parent)
    , copy_(std::move(workingCopy))
    , cells_(defaults)
{
    if (copy_)
        for (const auto& child : copy_->childTransactions())
            shared_.insert(child.get());
}

int SplitBookingTableModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() || !copy_ ? 0 : static_cast<int>(copy_->childTransactions().size());
}

int SplitBookingTableModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : kColumnCount;
}

EinnahmePtr SplitBookingTableModel::splitBookingAt(int row) const
{
    if (!copy_ || row < 0 || static_cast<std::size_t>(row) >= copy_->childTransactions().size())
        return nullptr;
    return copy_->childTransactions()[static_cast<std::size_t>(row)];
}

QVariant SplitBookingTableModel::data(const QModelIndex& index, int role) const
{
    const EinnahmePtr child = index.isValid() ? splitBookingAt(index.row()) : nullptr;
    if (!child || index.column() >= kColumnCount)
        return QVariant();
    return cells_.data(*child, columnAt(index.column()), index.row(), role);
}

QVariant SplitBookingTableModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || section < 0 || section >= kColumnCount)
        return QAbstractTableModel::headerData(section, orientation, role);
    return EntryCells::headerData(columnAt(section), role);
}

Qt::ItemFlags SplitBookingTableModel::flags(const QModelIndex& index) const
{
    if (!index.isValid() || index.column() >= kColumnCount)
        return Qt::NoItemFlags;
    return cells_.flags(columnAt(index.column()));
}

bool SplitBookingTableModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    const EinnahmePtr child = index.isValid() ? splitBookingAt(index.row()) : nullptr;
    if (!child || index.column() >= kColumnCount)
        return false;
    const auto column = columnAt(index.column());
    if (role != EntryCells::editRole(column) || !(flags(index) & (Qt::ItemIsEditable | Qt::ItemIsUserCheckable)))
        return false;
    const auto edit = EntryCells::cellValue(column, value);
    if (!edit)
        return false;
    if (const auto* text = std::get_if<CellEdit::Text>(&*edit); text && EntryColumn::isTextField(column))
        diagnosticLine(CellEdit::diagnosticText(index.row(), index.column(), text->text));

    const Einnahme::Stored before = child->stored();
    CellEdit::Outcome outcome = CellEdit::Outcome::NothingStored;
    const auto apply
        = [&](Einnahme& entry) { outcome = CellEdit::apply(entry, column, *edit, CellEdit::Table::SplitBookings); };
    const bool shared = shared_.count(child.get()) != 0;
    if (shared && changeShared_)
        changeShared_(*child, apply);
    else
        apply(*child);
    if (outcome == CellEdit::Outcome::Refused)
        playSound("Basso");
    // The whole row: a refused value shows the stored one again, a new gross
    // amount or rate a new net amount, a new kind a new circle.
    emit dataChanged(this->index(index.row(), 0), this->index(index.row(), kColumnCount - 1));
    if (shared && !Einnahme::sameValues(before, child->stored()))
        emit sharedSplitBookingEdited();
    return outcome == CellEdit::Outcome::Stored;
}

int SplitBookingTableModel::addChildEntry()
{
    if (!copy_)
        return -1;
    const int row = rowCount();
    beginInsertRows(QModelIndex(), row, row);
    SplitBookings::addChildEntry(*copy_);
    endInsertRows();
    return row;
}

bool SplitBookingTableModel::removeChildEntry(std::optional<int> row)
{
    if (!copy_ || !row || !splitBookingAt(*row))
        return false;
    beginRemoveRows(QModelIndex(), *row, *row);
    SplitBookings::removeChildEntry(*copy_, static_cast<std::size_t>(*row));
    endRemoveRows();
    return true;
}

} // namespace saldo::gui
