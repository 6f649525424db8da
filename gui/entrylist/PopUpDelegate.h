#pragma once

#include <QStyledItemDelegate>

namespace saldo::gui {

// The pop-up cells of the entry table (kind and category): drawn by the style
// as a combo box showing the cell's text, edited in a QComboBox filled with the
// cell's items. A choice of the user is handed to the model at once: the kind
// pop-up answers the item's index, the category pop-up the item's title (no
// value when no item is chosen). Leaving the pop-up without a choice changes
// nothing. A cell without items (no stored category list) shows no control.
class PopUpDelegate : public QStyledItemDelegate {
    Q_OBJECT
public:
    enum class Answer { Index, Title };

    PopUpDelegate(Answer answer, QObject* parent = nullptr);

    // When set, a new editor opens its list at once (for editing by a click).
    void setOpensPopup(bool opens) { opensPopup_ = opens; }

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    void setEditorData(QWidget* editor, const QModelIndex& index) const override;
    void setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const override;
    void updateEditorGeometry(
        QWidget* editor, const QStyleOptionViewItem& option, const QModelIndex& index) const override;

private:
    Answer answer_;
    bool opensPopup_ = false;
};

} // namespace saldo::gui
