#pragma once

#include "tax/ListedItem.h"

#include <QAbstractTableModel>

#include <vector>

namespace saldo::gui {

// The items a tax evaluation lists beside its figures, one row each:
// "Eintrag" (its row in the ledger, "12.2" for a split booking), "Datum",
// "Name", "Betrag" and "Grund". Read-only; replaced as a whole.
class ListedItemsModel : public QAbstractTableModel {
    Q_OBJECT
public:
    enum Column { Row, Datum, Name, Betrag, Grund, ColumnCount };

    explicit ListedItemsModel(QObject* parent = nullptr);

    void setItems(std::vector<tax::ListedItem> items);
    const std::vector<tax::ListedItem>& items() const { return items_; }

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

private:
    std::vector<tax::ListedItem> items_;
};

} // namespace saldo::gui
