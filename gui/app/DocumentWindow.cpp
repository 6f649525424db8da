#include "app/DocumentWindow.h"

#include "app/Document.h"
#include "app/SplitViewController.h"
#include "app/WindowActions.h"
#include "app/WindowLayout.h"
#include "entrylist/ViewController.h"

#include <QCloseEvent>
#include <QShowEvent>
#include <QTimer>

namespace saldo::gui {

DocumentWindow::DocumentWindow(Document& document, UserDefaults& defaults, QWidget* parent)
    : QMainWindow(parent)
    , document_(document)
    , defaults_(defaults)
{
    setObjectName(QStringLiteral("DocumentWindow"));
    split_ = new SplitViewController(document, defaults, this);
    setCentralWidget(split_);
    actions_ = new WindowActions(*this);
    WindowLayout::restore(*this, defaults);

    updateTitle();
    connect(&document_, &Document::filePathChanged, this, &DocumentWindow::updateTitle);
    connect(&document_, &Document::editedChanged, this, &DocumentWindow::setWindowModified);
}

DocumentWindow::~DocumentWindow() = default;

void DocumentWindow::updateTitle()
{
    setWindowTitle(document_.displayName() + QStringLiteral("[*]"));
    setWindowFilePath(document_.filePath());
    setWindowModified(document_.isDocumentEdited());
}

void DocumentWindow::showEvent(QShowEvent* event)
{
    QMainWindow::showEvent(event);
    if (event->spontaneous())
        return;
    if (!splittersRestored_) {
        splittersRestored_ = true;
        WindowLayout::restoreSplitters(*this, defaults_);
        // The window manager frames the window after it is shown; the frame
        // is fitted when it is known, which a move of the window tells.
        fittingFrame_ = !WindowLayout::fitFrame(*this);
        if (fittingFrame_)
            QTimer::singleShot(kFrameWaitMilliseconds, this, [this] { fittingFrame_ = false; });
    }
    split_->viewController()->viewWillAppear();
}

void DocumentWindow::moveEvent(QMoveEvent* event)
{
    QMainWindow::moveEvent(event);
    if (fittingFrame_ && WindowLayout::fitFrame(*this))
        fittingFrame_ = false;
}

void DocumentWindow::closeEvent(QCloseEvent* event)
{
    if (!document_.canClose()) {
        event->ignore();
        return;
    }
    WindowLayout::save(*this, defaults_);
    event->accept();
    emit closed();
}

}  // namespace saldo::gui
