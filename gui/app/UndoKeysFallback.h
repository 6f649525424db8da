#pragma once

#include <QObject>

class QWidget;

namespace saldo::gui {

// Lets the undo and redo keys reach the document from the text fields of its
// window. A text field takes Ctrl+Z for its own typing, also when it has
// nothing to undo, so the window's Widerrufen never saw the key while a field
// had the focus. Watching the window's fields, this passes the key on to the
// window's actions whenever the field has nothing of its own to undo (or to
// redo); a field with typing of its own undoes that first.
class UndoKeysFallback : public QObject {
    Q_OBJECT
public:
    // Watches every text field inside `window` at this moment.
    UndoKeysFallback(QWidget& window, QObject* parent = nullptr);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
};

} // namespace saldo::gui
