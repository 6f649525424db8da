#pragma once

#include "model/Einnahme.h"
#include "platform/UserDefaults.h"

#include <QDialog>

class QAbstractButton;
class QCheckBox;
class QComboBox;
class QPushButton;
class QTableView;

namespace saldo::gui {

class Document;
class EntryForm;
class SplitBookingTableModel;
class ViewController;

// The split-booking editor: a modal dialog over the document window in which
// one entry is edited in full, on a working copy that keeps the source's name
// and has a split-booking list of its own (SplitBookings::workingCopy). It
// shows the form of the detail panel with the copy's status circle, and a
// table of the copy's split bookings with "Hinzufuegen" and "Entfernen".
// The form changes the copy only and posts nothing. While the copy has split
// bookings, the form's gross field shows their signed sum and is read-only.
// "OK" writes the copy back in place of the entry at the entry list's one
// selected row, as one step that can be undone ("Splitbuchung") and that
// selects the written-back entry; closing any other way drops the copy. Edits
// of the split bookings that the source shares stay either way, so they mark
// the document changed at once.
class ModalDetailViewController : public QDialog {
    Q_OBJECT
public:
    // The window's fixed content size.
    static constexpr int kWidth = 450;
    static constexpr int kHeight = 375;

    // Edits a working copy of `source` (none: an empty form that writes
    // nothing back). `presenter` is the entry list whose selected row the
    // copy takes on "OK".
    ModalDetailViewController(Document& document, const UserDefaults& defaults, const ViewController* presenter,
        const EinnahmePtr& source, QWidget* parent = nullptr);
    ~ModalDetailViewController() override;

    // The working copy.
    EinnahmePtr selectedEinnahme() const { return copy_; }

    EntryForm* form() const { return form_; }
    QTableView* tableView() const { return table_; }
    SplitBookingTableModel* model() const { return model_; }
    QPushButton* addButton() const { return add_; }
    QPushButton* removeButton() const { return remove_; }
    QPushButton* cancelButton() const { return cancel_; }
    QPushButton* okButton() const { return ok_; }

public slots:
    // The form's edit actions, applied to the working copy.
    void textFieldEdited();
    void popUpButtonChangedSelection(QComboBox* sender);
    void datePickerValueChanged();
    void checkBoxValueChanged(QCheckBox* sender);
    // Abandon a cell edit in progress, then add a split booking "Neu" and
    // select it, or remove the selected one.
    void addChildEntry();
    void removeChildEntry();
    // A closing button: "ok" writes the copy back, any other drops it.
    void dismissTransactionViewControllerWithSender(QAbstractButton* sender);

private:
    void refillForm();
    void showChildTransactionsSum();
    void abandonCellEdit();
    void setUpTable();

    Document& document_;
    const ViewController* presenter_;
    EinnahmePtr copy_;
    EntryForm* form_ = nullptr;
    QTableView* table_ = nullptr;
    SplitBookingTableModel* model_ = nullptr;
    QPushButton* add_ = nullptr;
    QPushButton* remove_ = nullptr;
    QPushButton* cancel_ = nullptr;
    QPushButton* ok_ = nullptr;
};

} // namespace saldo::gui
