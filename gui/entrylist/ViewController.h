#pragma once

#include "model/Einnahme.h"
#include "platform/UserDefaults.h"

#include <QWidget>

#include <cstddef>
#include <optional>
#include <vector>

class QTableView;
class QModelIndex;
class QSplitter;

namespace saldo::gui {

class Document;
class SearchFieldController;
class SelectionSummaryView;

// The entry list: the left pane of a document window, a view over the
// document's lists. It shows the shown list `einnahmen` in the entry table,
// keeps the table's selection (and tells the window which entry is selected),
// filters through its search field, totals the selected rows in its selection
// summary, and turns the list commands into the document's verbs, asking
// before a deletion. Constructing it does what loading its view does: it
// stores the default category chart if none is stored and sets up the table.
class ViewController : public QWidget {
    Q_OBJECT
public:
    ViewController(Document& document, UserDefaults& defaults, QWidget* parent = nullptr);
    ~ViewController() override;

    Document& document() const;
    const EinnahmeList& einnahmen() const;
    const EinnahmeList& backupEinnahmen() const;

    // The entry of the selected row when exactly one row is selected.
    EinnahmePtr selectedEinnahme() const;
    // The selected rows, ascending.
    std::vector<std::size_t> selectedRows() const;
    // The table's selected row: the current row when it is selected, else the
    // last selected row; none without a selection.
    std::optional<std::size_t> selectedRow() const;

    QTableView* tableView() const;
    SearchFieldController* searchFieldController() const;
    SelectionSummaryView* selectedEntriesView() const;
    // The splitter between the table and the selection summary.
    QSplitter* tableSplitter() const;

    // Selects that entry alone and scrolls to it, showing all entries first
    // when a search hides it; false when it is no longer in the ledger.
    bool selectEntry(const Einnahme* entry);

    // Reloads the table; when the window is about to appear, selects row 0.
    void viewWillAppear();
    // Handler of "DetailViewUpdated": reloads (categories included) and keeps
    // the selected row's entry selected.
    void updateTableView();

public slots:
    void addEntry();
    void duplicateEntry();
    void deleteEntries();
    // A double-click on a row (not below the last) asks for the split-booking
    // editor on the selected row.
    void handleDoubleClick(const QModelIndex& index);
    // Asks for the recurring-entries sheet on the selected row.
    void initiateSerialTransactionController();
    // The row actions of the context menu: duplicate or (after confirmation)
    // delete the given row, whatever is selected.
    void duplicateRow(int row);
    void deleteRow(int row);

signals:
    // Every change of the selection: the selected entry (none unless exactly
    // one row is selected) and the number of selected rows.
    void selectionChanged(const saldo::EinnahmePtr& selectedEinnahme, int selectedCount);
    // The split-booking editor is to open on the entry at this shown row.
    void splitBookingEditorRequested(int row);
    // The recurring-entries sheet is to open on the entry at this shown row.
    void serialTransactionRequested(int row);

private:
    class Private;
    Private* d_ = nullptr;
};

} // namespace saldo::gui
