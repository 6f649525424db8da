#include "evaluation/FormTableModel.h"

#include <QFont>

namespace saldo::gui {

FormTableModel::FormTableModel(QObject* parent)
    : QAbstractTableModel(parent)
{
}

void FormTableModel::setTable(QList<Column> columns, QList<Row> rows)
{
    beginResetModel();
    columns_ = std::move(columns);
    rows_ = std::move(rows);
    endResetModel();
}

int FormTableModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

int FormTableModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(columns_.size());
}

QVariant FormTableModel::data(const QModelIndex& index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    const Row& row = rows_[index.row()];
    switch (role) {
    case Qt::DisplayRole:
        return index.column() < row.cells.size() ? row.cells[index.column()] : QString();
    case Qt::TextAlignmentRole:
        return QVariant::fromValue(columns_[index.column()].alignment);
    case Qt::FontRole:
        if (row.bold || row.note) {
            QFont font;
            font.setBold(row.bold);
            font.setItalic(row.note);
            return font;
        }
        return {};
    case Qt::ToolTipRole:
        return row.toolTip.isEmpty() ? QVariant() : QVariant(row.toolTip);
    default:
        return {};
    }
}

QVariant FormTableModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || section < 0 || section >= columns_.size())
        return {};
    if (role == Qt::DisplayRole)
        return columns_[section].title;
    if (role == Qt::TextAlignmentRole)
        return QVariant::fromValue(columns_[section].alignment);
    return {};
}

QString FormTableModel::tabSeparated() const
{
    QStringList lines;
    QStringList titles;
    for (const Column& column : columns_)
        titles << column.title;
    lines << titles.join(QLatin1Char('\t'));
    for (const Row& row : rows_) {
        QStringList cells = row.cells;
        while (cells.size() < columns_.size())
            cells << QString();
        lines << cells.join(QLatin1Char('\t'));
    }
    return lines.join(QLatin1Char('\n')) + QLatin1Char('\n');
}

} // namespace saldo::gui
