#pragma once

#include "entrylist/CellEdit.h"
#include "entrylist/EntryColumn.h"
#include "model/Einnahme.h"
#include "platform/UserDefaults.h"

#include <QStringList>
#include <QVariant>

#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

namespace saldo::gui {

// The cells of one entry as every table of entries shows and edits them (the
// document's entry table and the split-booking editor's table of one entry's
// children): per column and item role the text, check state, status circle,
// alignment, row colour and pop-up items, which cells can be edited, and the
// value a cell's editor hands back, as the cell rules (CellEdit) take it. It
// keeps the category list read from the preferences for the category cells:
// without a stored list of texts the category cell shows no pop-up and cannot
// be edited. An entry's category that the list no longer holds (renamed or
// removed there) shows as itself, marked as not in the list; the entry keeps it.
class EntryCells {
public:
    enum Role {
        // The pop-up's item titles (QStringList); absent for a category cell
        // without a stored category list.
        ItemsRole = Qt::UserRole + 1,
        // The column identifier ("NameColumn", ...) in headerData.
        IdentifierRole,
        // In a category cell, the entry's own category when the stored list
        // does not hold it (QString); absent otherwise.
        OwnItemRole,
    };

    // How a category that the list does not hold is shown: "4400 Alt (nicht in der Liste)".
    static QString notInList(const QString& kategorie);

    explicit EntryCells(const UserDefaults& defaults);

    // Re-reads the stored category list; true when it differs from before.
    bool refreshCategories();
    // The stored category list, or nothing when none is stored or it is not a list of texts.
    const std::optional<QStringList>& categoryTitles() const { return categoryTitles_; }

    // The kind pop-up's items; index 0 stands for income, index 1 for expense.
    static const QStringList& artTitles();

    // What the cell of `column` shows of `entry` in `role`; `row` picks the
    // row colour.
    QVariant data(const Einnahme& entry, EntryColumn::Id column, int row, int role) const;
    Qt::ItemFlags flags(EntryColumn::Id column) const;
    static QVariant headerData(EntryColumn::Id column, int role);

    // The role a cell's edit arrives in: the check state for check boxes,
    // the edit role for every other cell.
    static int editRole(EntryColumn::Id column);
    // The value a cell's editor handed over, as the cell rules take it;
    // nothing for a value no rule can take.
    static std::optional<CellEdit::Value> cellValue(EntryColumn::Id column, const QVariant& value);

private:
    // A category the stored list does not hold (an empty one is no category).
    bool isForeign(const Einnahme& entry) const;
    QVariant displayData(const Einnahme& entry, EntryColumn::Id column) const;
    QVariant editData(const Einnahme& entry, EntryColumn::Id column) const;

    const UserDefaults& defaults_;
    std::optional<std::vector<std::string>> categories_;
    std::optional<QStringList> categoryTitles_;
    std::unordered_set<std::string> categorySet_;
};

} // namespace saldo::gui
