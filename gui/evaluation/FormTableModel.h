#pragma once

#include <QAbstractTableModel>
#include <QList>
#include <QString>
#include <QStringList>

namespace saldo::gui {

// A tax form's figures as a read-only table of texts: the columns a form
// window shows (line, Kennzahl, label, amounts …) and its rows, each a list
// of cell texts, the ones to stand out in bold and the ones shown as notes
// (in italics). The texts are made by the core; the model only shows them, and
// writes them out tab-separated for the clipboard.
class FormTableModel : public QAbstractTableModel {
    Q_OBJECT
public:
    struct Column {
        QString title;
        Qt::Alignment alignment = Qt::AlignLeft | Qt::AlignVCenter;
    };
    struct Row {
        QStringList cells;
        bool bold = false;
        bool note = false;
        QString toolTip;
    };

    explicit FormTableModel(QObject* parent = nullptr);

    // Replaces the columns and the rows (the columns may change with the rows:
    // another view of the same figures).
    void setTable(QList<Column> columns, QList<Row> rows);
    const QList<Column>& columns() const { return columns_; }
    const QList<Row>& rows() const { return rows_; }

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

    // The column titles and every row, cells separated by tabs, lines by "\n".
    QString tabSeparated() const;

private:
    QList<Column> columns_;
    QList<Row> rows_;
};

} // namespace saldo::gui
