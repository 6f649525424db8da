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
// closed with, its frame (title bar and borders) inside the screen's free
// area. Closing asks the document first, then keeps the layout.
class DocumentWindow : public QMainWindow {
    Q_OBJECT
public:
    // How long a new window waits for the window manager's frame.
    static constexpr int kFrameWaitMilliseconds = 2000;

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
    void moveEvent(QMoveEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    void updateTitle();

    Document& document_;
    UserDefaults& defaults_;
    SplitViewController* split_ = nullptr;
    WindowActions* actions_ = nullptr;
    bool splittersRestored_ = false;
    // True from the first showing until the window manager's frame is known
    // and fitted into the screen (or a moment has passed without one).
    bool fittingFrame_ = false;
};

}  // namespace saldo::gui
