#pragma once

#include <QAbstractListModel>

#include <string>
#include <vector>

namespace saldo::gui {

// The category preferences' table: one column over the working copy of the
// category list (`containerArray`). A row is renamed in place, its text taken
// exactly as typed; rows are moved by drag and drop within the table, several
// at once, under the type "private.table-row", which carries the dragged row
// numbers in decimal, one per line. Only drops between rows are taken: a drop
// onto a row is refused. A rename and a drop announce themselves with
// listEdited(); appending and removing are the owner's calls and announce
// nothing.
class CategoryListModel : public QAbstractListModel {
    Q_OBJECT
public:
    static constexpr const char* kDragDropType = "private.table-row";

    explicit CategoryListModel(std::vector<std::string> list, QObject* parent = nullptr);

    const std::vector<std::string>& containerArray() const { return containerArray_; }

    // Appends a row and answers its number.
    int appendRow(const std::string& text);
    // Removes the row at `row`; a row outside the list changes nothing.
    void removeRowAt(int row);

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

    QStringList mimeTypes() const override;
    QMimeData* mimeData(const QModelIndexList& indexes) const override;
    Qt::DropActions supportedDragActions() const override;
    Qt::DropActions supportedDropActions() const override;
    bool canDropMimeData(
        const QMimeData* data, Qt::DropAction action, int row, int column, const QModelIndex& parent) const override;
    // Places the dragged rows above `row` (-1: below the last row) and
    // answers true. The rows move here; the model offers no removeRows, so
    // the view's clean-up after a move removes nothing a second time.
    bool dropMimeData(
        const QMimeData* data, Qt::DropAction action, int row, int column, const QModelIndex& parent) override;

signals:
    void listEdited();
    // A row's text changed from `from` to `to` (after listEdited()).
    void rowRenamed(const QString& from, const QString& to);

private:
    std::vector<std::string> containerArray_;
};

} // namespace saldo::gui
