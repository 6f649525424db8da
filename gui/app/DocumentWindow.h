#pragma once

#include "platform/UserDefaults.h"

#include <QMainWindow>

namespace saldo::gui {

class Document;
class SplitViewController;
class WindowActions;

// The window of one document: the split views as its content, the menus
// through its action handler, the file name (or "Unbenannt") with the
// modified marker as its title. It opens with the layout the last window was
// closed with. Closing asks the document first, then keeps the layout.
class DocumentWindow : public QMainWindow {
    Q_OBJECT
public:
    DocumentWindow(Document& document, UserDefaults& defaults, QWidget* parent = nullptr);
    ~DocumentWindow() override;

    Document& document() const { return document_; }
    SplitViewController* splitViewController() const { return split_; }
    WindowActions* actions() const { return actions_; }

signals:
    // The window was closed for good (the document agreed).
    void closed();

protected:
    void showEvent(QShowEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    void updateTitle();

    Document& document_;
    UserDefaults& defaults_;
    SplitViewController* split_ = nullptr;
    WindowActions* actions_ = nullptr;
    bool splittersRestored_ = false;
};

}  // namespace saldo::gui
