#include "entrylist/DateDelegate.h"

#include <QDateTimeEdit>

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
    editor->setFrame(false);
    editor->setFont(option.font);
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

} // namespace saldo::gui
