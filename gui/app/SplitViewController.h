#pragma once

#include "model/Einnahme.h"
#include "platform/UserDefaults.h"

#include <QSplitter>

class QDialog;

namespace saldo::gui {

class Document;
class ViewController;
class DetailViewController;
class ModalDetailViewController;
class SerialTransactionCreationViewController;
class SummaryViewController;

// The content of a document window: the entry list on the left and, on the
// right, an inner split with the detail panel above the summary panel. It
// builds the three panes over the document, hands the entry list's selection
// to the detail panel, and opens the entry editors the entry list asks for
// (the split-booking editor and the recurring-entries sheet) over the window;
// the panes know the document, not each other.
class SplitViewController : public QSplitter {
    Q_OBJECT
public:
    SplitViewController(Document& document, UserDefaults& defaults, QWidget* parent = nullptr);

    ViewController* viewController() const { return viewController_; }
    QSplitter* innerSplitViewController() const { return inner_; }
    DetailViewController* detailViewController() const { return detail_; }
    SummaryViewController* summaryViewController() const { return summary_; }

    // Opens the editor on the entry at a shown row, modal over the window,
    // and answers it; it deletes itself when closed.
    ModalDetailViewController* openSplitBookingEditor(int row);
    SerialTransactionCreationViewController* openSerialTransactionSheet(int row);

private:
    // Shows the dialog modal over the window; it deletes itself when closed.
    void present(QDialog* dialog);

    Document& document_;
    UserDefaults& defaults_;
    ViewController* viewController_ = nullptr;
    QSplitter* inner_ = nullptr;
    DetailViewController* detail_ = nullptr;
    SummaryViewController* summary_ = nullptr;
};

}  // namespace saldo::gui
