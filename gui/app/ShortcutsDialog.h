#pragma once

#include <QDialog>

class QMainWindow;
class QTreeWidget;

namespace saldo::gui {

// "Tastenkuerzel": a window beside the document window listing its keyboard
// shortcuts, grouped by menu, as ShortcutList reads them from the window's
// actions when the list is shown. Not modal.
class ShortcutsDialog : public QDialog {
    Q_OBJECT
public:
    explicit ShortcutsDialog(QMainWindow& window);

    QTreeWidget* list() const { return list_; }

protected:
    void showEvent(QShowEvent* event) override;

private:
    void fill();

    QMainWindow& window_;
    QTreeWidget* list_ = nullptr;
};

} // namespace saldo::gui
