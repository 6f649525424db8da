#pragma once

#include <QStyledItemDelegate>

namespace saldo::gui {

// The date cells of the entry table: shown as "dd.MM.yyyy HH:mm", edited in a
// DateField as wide as the whole date and time need. A typed date counts when
// the cell is left (Return, Tab, a click elsewhere), a day picked in the
// calendar at once; a text that cannot be read keeps the stored date and
// plays "Basso". The new date and time go to the model only when they differ
// from the stored ones.
class DateDelegate : public QStyledItemDelegate {
    Q_OBJECT
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    void setEditorData(QWidget* editor, const QModelIndex& index) const override;
    void setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const override;
    void updateEditorGeometry(
        QWidget* editor, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
};

} // namespace saldo::gui
