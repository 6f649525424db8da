#pragma once

#include <QStyledItemDelegate>

namespace saldo::gui {

// The date cells of the entry table: shown as "dd.MM.yyyy HH:mm", edited in a
// date-and-time field with a calendar pop-up, as wide as the whole date and
// time need. The new date and time go to the model only when the user changed them.
class DateDelegate : public QStyledItemDelegate {
    Q_OBJECT
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    static constexpr const char* kFormat = "dd.MM.yyyy HH:mm";

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    void setEditorData(QWidget* editor, const QModelIndex& index) const override;
    void setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const override;
    void updateEditorGeometry(
        QWidget* editor, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
};

} // namespace saldo::gui
