#pragma once

#include <QStyledItemDelegate>

namespace saldo::gui {

// The check-box cells of the entry table: a check box drawn by the style in
// the middle of the cell, on or off by the cell's check state. A click on the
// box (or the space key on the current cell) toggles it when the cell is
// checkable; the click does not select the row. A cell that is not checkable
// shows its box dimmed and ignores clicks.
class CheckBoxDelegate : public QStyledItemDelegate {
    Q_OBJECT
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    bool editorEvent(QEvent* event, QAbstractItemModel* model, const QStyleOptionViewItem& option,
        const QModelIndex& index) override;

    // Where the box of a cell is drawn.
    static QRect indicatorRect(const QStyleOptionViewItem& option);
};

} // namespace saldo::gui
