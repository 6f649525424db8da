#pragma once

#include "entrylist/EntryCells.h"
#include "entrylist/EntryColumn.h"
#include "entrylist/EntryLists.h"
#include "platform/UserDefaults.h"

#include <QAbstractTableModel>

#include <functional>
#include <optional>
#include <string_view>

namespace saldo::gui {

class Document;

// The entry table's model: one row per entry of the document's shown list
// `einnahmen`, one column per EntryColumn, read straight from the shared
// entries (no copy, no widget per row, every cell in constant time), the cells
// as EntryCells shows them; the category list is re-read on every reload. An edit arriving through setData is the
// document's cell edit verb; afterwards the row shows the entry's current
// values (the old ones again when the edit was refused). The lists belong to
// the document, which wraps each change of them in one of the structural calls
// below so that views see consistent row counts; a header click asks the
// document to sort its shown list.
class EntryTableModel : public QAbstractTableModel {
    Q_OBJECT
public:
    enum Role {
        ItemsRole = EntryCells::ItemsRole,
        IdentifierRole = EntryCells::IdentifierRole,
        OwnItemRole = EntryCells::OwnItemRole,
    };

    EntryTableModel(Document& document, const EntryLists& lists, const UserDefaults& defaults,
        QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;

    // A header click: the first eleven columns sort by their keys, later ones
    // by the default ordering, column -1 (no sort indicator) not at all. Rows
    // follow their entries, so that the selection stays on the same entries.
    void sort(int column, Qt::SortOrder order = Qt::AscendingOrder) override;

    // The entry shown in a row, or none.
    EinnahmePtr entryAt(int row) const;

    // Re-reads the category list and shows every cell again; when the shown
    // list's length changed behind the model's back, resets instead.
    void reload();
    // Runs `change`, which appends or inserts `count` entries at `first`.
    void insertEntries(int first, int count, const std::function<void()>& change);
    // Runs `change`, which removes the `count` entries from `first` on.
    void removeEntries(int first, int count, const std::function<void()>& change);
    // Runs `change`, which may change the shown list in any way.
    void resetWith(const std::function<void()>& change);
    // Shows one row again (after its entry changed).
    void rowChanged(int row);

    // The stored category list, or nothing when none is stored or it is not a list of texts.
    const std::optional<QStringList>& categoryTitles() const { return cells_.categoryTitles(); }

private:
    Document& document_;
    const EntryLists& lists_;
    EntryCells cells_;
    int rows_ = 0;
};

} // namespace saldo::gui
