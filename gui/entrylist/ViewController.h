#pragma once

#include "model/Einnahme.h"
#include "platform/UserDefaults.h"

#include <QWidget>

class QTableView;
class QUndoStack;
class QModelIndex;

namespace saldo::gui {

class SplitViewController;

// The entry list: the left pane of a document window. Owns the two working
// lists of one document (`einnahmen`, shown in table order, and
// `backupEinnahmen`, the complete list that is saved), shows them in the entry
// table, hands the selected entry to the detail panel and is the target of the
// list commands. Constructing it does what loading its view does: it stores the
// default category chart if none is stored, sets up the table and makes the
// starting entry "Neu".
class ViewController : public QWidget {
    Q_OBJECT
public:
    explicit ViewController(UserDefaults& defaults, QWidget* parent = nullptr);
    ~ViewController() override;

    const EinnahmeList& einnahmen() const;
    const EinnahmeList& backupEinnahmen() const;
    // The document's hand-over: both lists become the given entries; the table reloads.
    void setEntries(const EinnahmeList& entries);

    EinnahmePtr selectedEinnahme() const;
    QTableView* tableView() const;

    // Reloads the table; when the window is about to appear, selects row 0.
    void viewWillAppear();
    // Handler of "DetailViewUpdated": reloads and keeps the selected entry selected.
    void updateTableView();

    // The window's split view (for the detail panel hand-over) and the
    // document's undo stack (for deletions).
    void setSplitViewController(SplitViewController* split);
    void setUndoStack(QUndoStack* undoStack);

public slots:
    void addEntry();
    void duplicateEntry();
    void deleteEntries();
    // Opens the split-booking editor for the double-clicked row (entry point).
    void handleDoubleClick(const QModelIndex& index);
    // Opens the recurring-entries sheet for the selected row (entry point).
    void initiateSerialTransactionController();
    // The row actions of the context menu: duplicate or (after confirmation)
    // delete the given row, whatever is selected.
    void duplicateRow(int row);
    void deleteRow(int row);

signals:
    // The document is to be marked changed (a change done by the user).
    void changeDone();
    // A double-click on a row with a row selected: the split-booking editor is
    // to open on this working copy of the selected entry (same name, same
    // child entries, a new object).
    void splitBookingEditorRequested(const saldo::EinnahmePtr& workingCopy);
    // The recurring-entries sheet is to open on the shown list and the selected row.
    void serialTransactionRequested(const saldo::EinnahmeList& transactions, int selectedIndex);

private:
    class Private;
    Private* d_ = nullptr;
};

} // namespace saldo::gui
