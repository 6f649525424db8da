#pragma once

#include "entrylist/EntryCells.h"
#include "entrylist/EntryColumn.h"
#include "model/Einnahme.h"
#include "platform/UserDefaults.h"

#include <QAbstractTableModel>

#include <functional>
#include <optional>
#include <unordered_set>

namespace saldo::gui {

// The split-booking editor's table: one row per split booking of the working
// copy (its `childTransactions`, in list order) and the entry table's columns
// but the split-booking one, twelve in all, whose cells show and edit as the
// entry table's do (EntryCells). An edit applies the split-booking table's
// cell rules to the split booking itself: a text cell first writes its "Row:"
// line, with the column's position in this table; a refused gross amount plays
// "Basso" and the cell shows the stored value again. The split bookings the
// copy started with are the source entry's own, so an edit of one changes the
// source too; sharedSplitBookingEdited() says when that happened. Adding and
// removing split bookings changes only the copy's own list.
class SplitBookingTableModel : public QAbstractTableModel {
    Q_OBJECT
public:
    static constexpr int kColumnCount = EntryColumn::Count - 1;
    // The entry table's column shown at a position of this table, and back.
    static EntryColumn::Id columnAt(int position);
    static int positionOf(EntryColumn::Id column);

    SplitBookingTableModel(EinnahmePtr workingCopy, const UserDefaults& defaults, QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;

    EinnahmePtr splitBookingAt(int row) const;

    // How a split booking the source holds too is changed (the document's
    // way past its readers); without one, it is changed directly.
    using ChangeShared = std::function<void(Einnahme&, const std::function<void(Einnahme&)>&)>;
    void setChangeShared(ChangeShared change) { changeShared_ = std::move(change); }

    // Appends a split booking "Neu" (gross 0, rate 0) and answers its row.
    int addChildEntry();
    // Removes the split booking at `row`; false when there is none.
    bool removeChildEntry(std::optional<int> row);

signals:
    // A split booking that the source entry holds too was changed.
    void sharedSplitBookingEdited();

private:
    EinnahmePtr copy_;
    EntryCells cells_;
    std::unordered_set<const Einnahme*> shared_;
    ChangeShared changeShared_;
};

} // namespace saldo::gui
