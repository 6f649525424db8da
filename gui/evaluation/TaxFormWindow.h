#pragma once

#include "model/Einnahme.h"
#include "printing/FormPdf.h"

#include <QWidget>

#include <initializer_list>

class QHBoxLayout;
class QLabel;
class QPushButton;
class QTabWidget;
class QTableView;

namespace saldo::gui {

class Document;
class FormTableModel;
class LedgerWorker;
class ListedItemsView;

// What the windows of the tax office's forms share: a window of its own over
// one ledger, titled "<form> – <ledger>", with a row for the choosers that
// also says while the figures are being computed, a heading, the form's table
// (read-only, whole rows), the notes under it, the lists in tabs titled with
// their numbers of items, and a row of "Kopieren" (the form's table on the
// clipboard, tab-separated) and "Als PDF sichern…" (the heading, the table,
// the notes and the lists on A4, saved next to the ledger). A double-click on
// a listed item asks for its entry in the ledger's table. Ctrl+W and Escape
// close it. A subclass builds its layout from these parts and works out its
// figures on the LedgerWorker it hands to setWorker().
class TaxFormWindow : public QWidget {
    Q_OBJECT
public:
    LedgerWorker& worker() const { return *worker_; }
    FormTableModel* formModel() const { return formModel_; }
    QTableView* formView() const { return formView_; }
    QLabel* headingLabel() const { return heading_; }
    QLabel* notesLabel() const { return notes_; }
    QTabWidget* lists() const { return lists_; }

public slots:
    void kopieren();
    // Asks for a file and writes the PDF; answers whether it was written.
    bool alsPdfSichern();

signals:
    // A listed item was double-clicked: its top-level entry.
    void entryActivated(const saldo::EinnahmePtr& entry);

protected:
    TaxFormWindow(Document& document, const QString& formName, QWidget* parent);

    // Starts showing "wird berechnet…" whenever the worker starts.
    void setWorker(LedgerWorker* worker);
    // Adds a list as a tab titled with its number of items; `printed`: also
    // in the PDF, while its tab is shown.
    void addList(ListedItemsView* list, bool printed = true);
    // The label, its choosers and the note that the figures are being computed.
    QHBoxLayout* chooserRow(QLabel* label, std::initializer_list<QWidget*> choosers);
    // `hint` and the buttons "Kopieren" and "Als PDF sichern…".
    QHBoxLayout* buttonRow(const QString& hint);

    // The PDF's file name (without a folder) and the line under its title.
    virtual QString pdfFileName() const = 0;
    virtual QString pdfSubtitle() const;

    Document& document_;
    QLabel* busy_ = nullptr;
    QLabel* heading_ = nullptr;
    FormTableModel* formModel_ = nullptr;
    QTableView* formView_ = nullptr;
    QLabel* notes_ = nullptr;
    QTabWidget* lists_ = nullptr;
    QPushButton* copy_ = nullptr;
    QPushButton* pdf_ = nullptr;

private:
    QString formName_;
    LedgerWorker* worker_ = nullptr;
    QList<ListedItemsView*> printed_;
};

} // namespace saldo::gui
