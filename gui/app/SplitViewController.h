#pragma once

#include "model/Einnahme.h"
#include "platform/UserDefaults.h"

#include <QSplitter>

namespace saldo::gui {

class Document;
class ViewController;
class DetailViewController;
class SummaryViewController;

// The content of a document window: the entry list on the left and, on the
// right, an inner split with the detail panel above the summary panel. It
// builds the three panes over the document and hands the entry list's
// selection to the detail panel; the panes know the document, not each other.
class SplitViewController : public QSplitter {
    Q_OBJECT
public:
    SplitViewController(Document& document, UserDefaults& defaults, QWidget* parent = nullptr);

    ViewController* viewController() const { return viewController_; }
    QSplitter* innerSplitViewController() const { return inner_; }
    DetailViewController* detailViewController() const { return detail_; }
    SummaryViewController* summaryViewController() const { return summary_; }

private:
    ViewController* viewController_ = nullptr;
    QSplitter* inner_ = nullptr;
    DetailViewController* detail_ = nullptr;
    SummaryViewController* summary_ = nullptr;
};

}  // namespace saldo::gui
