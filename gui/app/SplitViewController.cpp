#include "app/SplitViewController.h"

#include "editors/DetailViewController.h"
#include "entrylist/ViewController.h"
#include "evaluation/SummaryViewController.h"

namespace saldo::gui {

SplitViewController::SplitViewController(UserDefaults& defaults, QWidget* parent)
    : QSplitter(Qt::Horizontal, parent)
{
    setObjectName(QStringLiteral("SplitViewController"));
    setChildrenCollapsible(false);
    setHandleWidth(6);

    viewController_ = new ViewController(defaults);
    addWidget(viewController_);

    inner_ = new QSplitter(Qt::Vertical);
    inner_->setObjectName(QStringLiteral("innerSplitViewController"));
    inner_->setChildrenCollapsible(false);
    inner_->setHandleWidth(6);
    detail_ = new DetailViewController(defaults);
    summary_ = new SummaryViewController;
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

    viewController_->setSplitViewController(this);
}

void SplitViewController::showEntryInDetailView(const EinnahmePtr& entry)
{
    auto* inner = qobject_cast<QSplitter*>(widget(1));
    if (!inner)
        return;
    auto* detail = qobject_cast<DetailViewController*>(inner->widget(0));
    if (!detail)
        return;
    detail->setSelectedEinnahme(entry);
    detail->updateDetailView();
}

}  // namespace saldo::gui
