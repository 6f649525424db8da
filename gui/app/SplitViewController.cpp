#include "app/SplitViewController.h"

#include "editors/DetailViewController.h"
#include "entrylist/ViewController.h"
#include "evaluation/SummaryViewController.h"

namespace saldo::gui {

SplitViewController::SplitViewController(Document& document, UserDefaults& defaults, QWidget* parent)
    : QSplitter(Qt::Horizontal, parent)
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
}

}  // namespace saldo::gui
