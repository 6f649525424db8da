#include "entrylist/PopUpDelegate.h"

#include "entrylist/CellEditorPalette.h"
#include "entrylist/EntryTableModel.h"

#include <QApplication>
#include <QComboBox>
#include <QPainter>
#include <QTimer>

namespace saldo::gui {
namespace {

constexpr const char* kInitialIndex = "saldoInitialIndex";
constexpr const char* kChosen = "saldoChosen";
// Set on an editor whose first item is the entry's own category, not in the list.
constexpr const char* kOwnItem = "saldoOwnItem";

QRect controlRect(const QRect& cell)
{
    return cell.adjusted(2, 1, -2, -1);
}

} // namespace

PopUpDelegate::PopUpDelegate(Answer answer, QObject* parent)
    : QStyledItemDelegate(parent)
    , answer_(answer)
{
}

void PopUpDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    QStyleOptionViewItem item = option;
    initStyleOption(&item, index);
    const QString text = item.text;
    item.text.clear();
    item.features &= ~(QStyleOptionViewItem::HasDisplay | QStyleOptionViewItem::HasDecoration);
    QStyle* style = option.widget ? option.widget->style() : QApplication::style();
    style->drawControl(QStyle::CE_ItemViewItem, &item, painter, option.widget);

    if (!index.data(EntryTableModel::ItemsRole).isValid())
        return;

    QStyleOptionComboBox box;
    box.rect = controlRect(option.rect);
    box.palette = option.palette;
    box.direction = option.direction;
    box.fontMetrics = option.fontMetrics;
    box.state = QStyle::State_None;
    if (option.state & QStyle::State_Enabled)
        box.state |= QStyle::State_Enabled;
    if (index.flags() & Qt::ItemIsEditable)
        box.state |= QStyle::State_Active;
    box.editable = false;
    box.frame = true;
    box.subControls = QStyle::SC_All;
    // A category the list no longer holds shows as itself, in gray italics.
    QFont font = option.font;
    if (index.data(EntryTableModel::OwnItemRole).isValid()) {
        font.setItalic(true);
        box.palette.setColor(QPalette::ButtonText, option.palette.color(QPalette::Disabled, QPalette::Text));
    }
    box.currentText = QFontMetrics(font).elidedText(text, Qt::ElideRight,
        style->subControlRect(QStyle::CC_ComboBox, &box, QStyle::SC_ComboBoxEditField, option.widget).width());
    painter->save();
    painter->setFont(font);
    style->drawComplexControl(QStyle::CC_ComboBox, &box, painter, option.widget);
    style->drawControl(QStyle::CE_ComboBoxLabel, &box, painter, option.widget);
    painter->restore();
}

QWidget* PopUpDelegate::createEditor(
    QWidget* parent, const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    const QVariant items = index.data(EntryTableModel::ItemsRole);
    if (!items.isValid())
        return nullptr;
    auto* combo = new QComboBox(parent);
    combo->setFont(option.font);
    CellEditorPalette::apply(combo, option);
    combo->addItems(items.toStringList());
    combo->setMaxVisibleItems(24);
    // The entry's own category, when the list no longer holds it, comes first.
    const QVariant own = index.data(EntryTableModel::OwnItemRole);
    if (own.isValid()) {
        combo->insertItem(0, EntryCells::notInList(own.toString()));
        QFont italic = combo->font();
        italic.setItalic(true);
        combo->setItemData(0, italic, Qt::FontRole);
        combo->insertSeparator(1);
        combo->setProperty(kOwnItem, true);
    }
    auto* self = const_cast<PopUpDelegate*>(this);
    connect(combo, &QComboBox::activated, self, [self, combo](int) {
        combo->setProperty(kChosen, true);
        emit self->commitData(combo);
        emit self->closeEditor(combo, QAbstractItemDelegate::NoHint);
    });
    if (opensPopup_)
        QTimer::singleShot(0, combo, &QComboBox::showPopup);
    return combo;
}

void PopUpDelegate::setEditorData(QWidget* editor, const QModelIndex& index) const
{
    auto* combo = qobject_cast<QComboBox*>(editor);
    if (!combo)
        return;
    const QVariant value = index.data(Qt::EditRole);
    int current = -1;
    if (answer_ == Answer::Index) {
        bool ok = false;
        current = value.toInt(&ok);
        if (!ok || current >= combo->count())
            current = -1;
    } else {
        current = combo->property(kOwnItem).toBool()
            ? 0
            : combo->findText(value.toString(), Qt::MatchExactly | Qt::MatchCaseSensitive);
    }
    combo->setCurrentIndex(current);
    combo->setProperty(kInitialIndex, current);
}

void PopUpDelegate::setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const
{
    auto* combo = qobject_cast<QComboBox*>(editor);
    if (!combo)
        return;
    const bool chosen = combo->property(kChosen).toBool();
    const QVariant initial = combo->property(kInitialIndex);
    if (!chosen && initial.isValid() && initial.toInt() == combo->currentIndex())
        return; // left without a choice
    const int current = combo->currentIndex();
    if (current == 0 && combo->property(kOwnItem).toBool())
        return; // the entry's own category again
    if (answer_ == Answer::Index)
        model->setData(index, current, Qt::EditRole);
    else
        model->setData(index, current < 0 ? QVariant() : QVariant(combo->itemText(current)), Qt::EditRole);
}

void PopUpDelegate::updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option, const QModelIndex&) const
{
    editor->setGeometry(option.rect);
}

} // namespace saldo::gui
