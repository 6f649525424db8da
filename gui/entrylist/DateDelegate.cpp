#include "entrylist/DateDelegate.h"

#include "entrylist/CellEditorPalette.h"
#include "platform/DateField.h"

#include <algorithm>

namespace saldo::gui {

QWidget* DateDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem& option, const QModelIndex&) const
{
    auto* editor = new DateField(parent);
    editor->setFont(option.font);
    CellEditorPalette::apply(editor, option);
    auto* self = const_cast<DateDelegate*>(this);
    // A day picked in the calendar is the edit's end.
    connect(editor, &DateField::dateChosen, self, [self, editor] {
        emit self->commitData(editor);
        emit self->closeEditor(editor, QAbstractItemDelegate::NoHint);
    });
    return editor;
}

void DateDelegate::setEditorData(QWidget* editor, const QModelIndex& index) const
{
    if (auto* field = qobject_cast<DateField*>(editor))
        field->setDateTime(index.data(Qt::EditRole).toDateTime());
}

void DateDelegate::setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const
{
    auto* field = qobject_cast<DateField*>(editor);
    if (!field || field->commit() == DateField::Outcome::Refused)
        return;
    if (field->dateTime() != index.data(Qt::EditRole).toDateTime())
        model->setData(index, field->dateTime(), Qt::EditRole);
}

void DateDelegate::updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option, const QModelIndex&) const
{
    // The whole date and time show: the field may reach over the next cell and
    // a little into the rows above and below, but stays inside the table.
    const QSize hint = editor->sizeHint();
    QRect rect = option.rect;
    rect.setWidth(std::max(rect.width(), hint.width()));
    if (hint.height() > rect.height())
        rect.adjust(0, -(hint.height() - rect.height()) / 2, 0, (hint.height() - rect.height() + 1) / 2);
    if (const QWidget* viewport = editor->parentWidget()) {
        if (rect.right() >= viewport->width())
            rect.moveRight(std::max(viewport->width(), rect.width()) - 1);
        if (rect.top() < 0)
            rect.moveTop(0);
    }
    editor->setGeometry(rect);
}

} // namespace saldo::gui
