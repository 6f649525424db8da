#pragma once

#include "entrylist/EntryColumn.h"
#include "entrylist/EntryLists.h"
#include "platform/UserDefaults.h"

#include <QAbstractTableModel>
#include <QStringList>

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace saldo::gui {

class Document;

// The entry table's model: one row per entry of the document's shown list
// `einnahmen`, one column per EntryColumn, read straight from the shared
// entries (no copy, no widget per row, every cell in constant time). It also
// keeps the category list read from the user's preferences, re-read on every
// reload, for the category cells. An edit arriving through setData is the
// document's cell edit verb; afterwards the row shows the entry's current
// values (the old ones again when the edit was refused). The lists belong to
// the document, which wraps each change of them in one of the structural calls
// below so that views see consistent row counts; a header click asks the
// document to sort its shown list.
class EntryTableModel : public QAbstractTableModel {
    Q_OBJECT
public:
    enum Role {
        // The pop-up's item titles (QStringList); absent for a category cell
        // without a stored category list.
        ItemsRole = Qt::UserRole + 1,
        // The column identifier ("NameColumn", ...) in headerData.
        IdentifierRole,
    };

    EntryTableModel(Document& document, const EntryLists& lists, const UserDefaults& defaults,
        QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;

    // The kind pop-up's items; index 0 stands for income, index 1 for expense.
    static const QStringList& artTitles();

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
    const std::optional<QStringList>& categoryTitles() const { return categoryTitles_; }

private:
    void refreshCategories();
    QVariant displayData(const Einnahme& entry, EntryColumn::Id column) const;
    QVariant editData(const Einnahme& entry, EntryColumn::Id column) const;
    bool categoryListed(const std::string& kategorie) const;

    Document& document_;
    const EntryLists& lists_;
    const UserDefaults& defaults_;
    int rows_ = 0;
    std::optional<std::vector<std::string>> categories_;
    std::optional<QStringList> categoryTitles_;
    std::unordered_set<std::string> categorySet_;
};

} // namespace saldo::gui
