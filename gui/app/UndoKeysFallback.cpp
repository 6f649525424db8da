#include "app/UndoKeysFallback.h"

#include <QEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QWidget>

namespace saldo::gui {

UndoKeysFallback::UndoKeysFallback(QWidget& window, QObject* parent)
    : QObject(parent)
{
    for (QLineEdit* field : window.findChildren<QLineEdit*>())
        field->installEventFilter(this);
}

bool UndoKeysFallback::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() != QEvent::ShortcutOverride)
        return false;
    const auto* field = qobject_cast<QLineEdit*>(watched);
    const auto* key = static_cast<QKeyEvent*>(event);
    if (!field)
        return false;
    // Not claimed by the field, the key goes to the window's shortcuts.
    const bool undo = key->matches(QKeySequence::Undo) && !field->isUndoAvailable();
    const bool redo = key->matches(QKeySequence::Redo) && !field->isRedoAvailable();
    if (!undo && !redo)
        return false;
    event->ignore();
    return true;
}

} // namespace saldo::gui
