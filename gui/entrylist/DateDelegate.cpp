#include "entrylist/DateDelegate.h"

#include "entrylist/CellEditorPalette.h"

#include <QDateTimeEdit>

#include <algorithm>

namespace saldo::gui {
namespace {

constexpr const char* kInitial = "saldoInitialDateTime";

// The part of a date the field shows and edits.
QDateTime toMinute(const QDateTime& dateTime)
{
    return QDateTime(dateTime.date(), QTime(dateTime.time().hour(), dateTime.time().minute()));
}

} // namespace

QWidget* DateDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem& option, const QModelIndex&) const
{
    auto* editor = new QDateTimeEdit(parent);
    editor->setDisplayFormat(QString::fromLatin1(kFormat));
    editor->setCalendarPopup(true);
    // The field keeps its frame: the style places the text inside a frame's
    // room whether or not one is drawn, and only with a frame does the field's
    // size hint count that room.
    editor->setFont(option.font);
    CellEditorPalette::apply(editor, option);
    return editor;
}

void DateDelegate::setEditorData(QWidget* editor, const QModelIndex& index) const
{
    auto* field = qobject_cast<QDateTimeEdit*>(editor);
    if (!field)
        return;
    const QDateTime value = index.data(Qt::EditRole).toDateTime();
    field->setDateTime(value);
    field->setProperty(kInitial, value);
}

void DateDelegate::setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const
{
    auto* field = qobject_cast<QDateTimeEdit*>(editor);
    if (!field)
        return;
    const QDateTime initial = field->property(kInitial).toDateTime();
    const QDateTime chosen = field->dateTime();
    if (initial.isValid() && toMinute(initial) == toMinute(chosen))
        return;
    model->setData(index, chosen, Qt::EditRole);
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
