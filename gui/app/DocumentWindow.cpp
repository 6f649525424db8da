#include "app/DocumentWindow.h"

#include "app/Document.h"
#include "app/SplitViewController.h"
#include "app/WindowActions.h"
#include "app/WindowLayout.h"
#include "entrylist/ViewController.h"

#include <QCloseEvent>
#include <QShowEvent>

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
    }
    split_->viewController()->viewWillAppear();
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
