#include "entrylist/TextDelegate.h"

#include "entrylist/CellEditorPalette.h"

#include <QLineEdit>

namespace saldo::gui {

QWidget* TextDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    auto* editor = new QLineEdit(parent);
    editor->setFrame(false);
    const auto alignment = index.data(Qt::TextAlignmentRole);
    if (alignment.isValid())
        editor->setAlignment(alignment.value<Qt::Alignment>());
    editor->setFont(option.font);
    CellEditorPalette::apply(editor, option);
    return editor;
}

void TextDelegate::setEditorData(QWidget* editor, const QModelIndex& index) const
{
    if (auto* lineEdit = qobject_cast<QLineEdit*>(editor)) {
        lineEdit->setText(index.data(Qt::EditRole).toString());
        lineEdit->selectAll();
    }
}

void TextDelegate::setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const
{
    if (auto* lineEdit = qobject_cast<QLineEdit*>(editor))
        model->setData(index, lineEdit->text(), Qt::EditRole);
}

} // namespace saldo::gui
