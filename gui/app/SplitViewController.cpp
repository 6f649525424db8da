#include "app/SplitViewController.h"

#include "app/Document.h"
#include "editors/DetailViewController.h"
#include "editors/ModalDetailViewController.h"
#include "editors/SerialTransactionCreationViewController.h"
#include "entrylist/ViewController.h"
#include "evaluation/SummaryViewController.h"

#include <QDialog>
#include <QGuiApplication>

namespace saldo::gui {

SplitViewController::SplitViewController(Document& document, UserDefaults& defaults, QWidget* parent)
    : QSplitter(Qt::Horizontal, parent)
    , document_(document)
    , defaults_(defaults)
{
    setObjectName(QStringLiteral("SplitViewController"));
    setChildrenCollapsible(false);
    setHandleWidth(6);

    viewController_ = new ViewController(document, defaults);
    addWidget(viewController_);

    inner_ = new QSplitter(Qt::Vertical);
    inner_->setObjectName(QStringLiteral("innerSplitViewController"));
    inner_->setChildrenCollapsible(false);
    inner_->setHandleWidth(6);
    detail_ = new DetailViewController(document, defaults);
    summary_ = new SummaryViewController(document);
    inner_->addWidget(detail_);
    inner_->addWidget(summary_);
    addWidget(inner_);

    // The table has thirteen columns and needs most of the width; the detail
    // form above the report needs about half the height.
    setStretchFactor(0, 3);
    setStretchFactor(1, 1);
    setSizes({ 1000, 440 });
    inner_->setStretchFactor(0, 0);
    inner_->setStretchFactor(1, 1);
    inner_->setSizes({ 290, 560 });

    connect(viewController_, &ViewController::selectionChanged, detail_,
        [this](const EinnahmePtr& entry, int) { detail_->showEntry(entry); });
    connect(viewController_, &ViewController::splitBookingEditorRequested, this,
        [this](int row) { openSplitBookingEditor(row); });
    connect(viewController_, &ViewController::serialTransactionRequested, this,
        [this](int row) { openSerialTransactionSheet(row); });
}

ModalDetailViewController* SplitViewController::openSplitBookingEditor(int row)
{
    const auto& einnahmen = document_.einnahmen();
    if (row < 0 || static_cast<std::size_t>(row) >= einnahmen.size())
        return nullptr;
    auto* editor = new ModalDetailViewController(
        document_, defaults_, viewController_, einnahmen[static_cast<std::size_t>(row)], window());
    present(editor);
    return editor;
}

SerialTransactionCreationViewController* SplitViewController::openSerialTransactionSheet(int row)
{
    if (row < 0 || static_cast<std::size_t>(row) >= document_.einnahmen().size())
        return nullptr;
    auto* sheet = new SerialTransactionCreationViewController(document_, static_cast<std::size_t>(row), window());
    present(sheet);
    return sheet;
}

void SplitViewController::present(QDialog* dialog)
{
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    // Keys go back to the document window when the dialog closes, also where
    // no window manager hands the focus back.
    if (QGuiApplication::platformName() != QLatin1String("offscreen"))
        connect(dialog, &QDialog::finished, window(), [window = window()] { window->activateWindow(); });
    dialog->open();
}

}  // namespace saldo::gui
