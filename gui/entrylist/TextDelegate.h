#pragma once

#include <QStyledItemDelegate>

namespace saldo::gui {

// The text and number cells of the entry table: shown as plain text, edited in
// a line edit holding the cell's text. Ending the edit hands the typed text to
// the model as it is; reading numbers out of it is the cell edit's business.
class TextDelegate : public QStyledItemDelegate {
    Q_OBJECT
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    void setEditorData(QWidget* editor, const QModelIndex& index) const override;
    void setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const override;
};

} // namespace saldo::gui
