#include "entrylist/CheckBoxDelegate.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

namespace saldo::gui {
namespace {

QStyle* styleOf(const QStyleOptionViewItem& option)
{
    return option.widget ? option.widget->style() : QApplication::style();
}

} // namespace

QRect CheckBoxDelegate::indicatorRect(const QStyleOptionViewItem& option)
{
    QStyle* style = styleOf(option);
    const QSize size(style->pixelMetric(QStyle::PM_IndicatorWidth, &option, option.widget),
        style->pixelMetric(QStyle::PM_IndicatorHeight, &option, option.widget));
    return QStyle::alignedRect(option.direction, Qt::AlignCenter, size, option.rect);
}

void CheckBoxDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    QStyleOptionViewItem item = option;
    initStyleOption(&item, index);
    const Qt::CheckState state = static_cast<Qt::CheckState>(index.data(Qt::CheckStateRole).toInt());
    // Background and selection only; the box is drawn below, centred.
    item.features &= ~(QStyleOptionViewItem::HasCheckIndicator | QStyleOptionViewItem::HasDisplay
        | QStyleOptionViewItem::HasDecoration);
    item.text.clear();
    QStyle* style = styleOf(option);
    style->drawControl(QStyle::CE_ItemViewItem, &item, painter, option.widget);

    QStyleOptionButton box;
    box.rect = indicatorRect(option);
    box.palette = option.palette;
    box.direction = option.direction;
    box.state = QStyle::State_None;
    if ((index.flags() & Qt::ItemIsUserCheckable) && (option.state & QStyle::State_Enabled))
        box.state |= QStyle::State_Enabled;
    box.state |= state == Qt::Checked ? QStyle::State_On : QStyle::State_Off;
    style->drawPrimitive(QStyle::PE_IndicatorCheckBox, &box, painter, option.widget);
}

QSize CheckBoxDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const
{
    return indicatorRect(option).size() + QSize(8, 4);
}

bool CheckBoxDelegate::editorEvent(
    QEvent* event, QAbstractItemModel* model, const QStyleOptionViewItem& option, const QModelIndex& index)
{
    const Qt::ItemFlags flags = index.flags();
    if (!(flags & Qt::ItemIsUserCheckable) || !(flags & Qt::ItemIsEnabled))
        return false;

    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick: {
        const auto* mouse = static_cast<QMouseEvent*>(event);
        if (mouse->button() != Qt::LeftButton)
            return false;
        const QRect target = indicatorRect(option).adjusted(-3, -3, 3, 3);
        if (!target.contains(mouse->position().toPoint()))
            return false;
        if (event->type() != QEvent::MouseButtonRelease)
            return true; // the box takes the click; the row is not selected by it
        break;
    }
    case QEvent::KeyPress: {
        const auto key = static_cast<QKeyEvent*>(event)->key();
        if (key != Qt::Key_Space && key != Qt::Key_Select)
            return false;
        break;
    }
    default:
        return false;
    }

    const bool on = index.data(Qt::CheckStateRole).toInt() == Qt::Checked;
    return model->setData(index, static_cast<int>(on ? Qt::Unchecked : Qt::Checked), Qt::CheckStateRole);
}

} // namespace saldo::gui
