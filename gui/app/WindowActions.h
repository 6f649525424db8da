#pragma once

#include <QObject>
#include <QPointer>

#include <functional>

class QAction;
class QMenu;
class QWidget;

namespace saldo::gui {

class DatevExportDialog;
class DocumentWindow;
class EntryListExchange;
class TaxFormWindow;

// The menus and actions of a document window: "Ablage" (new, open, recent
// files, close, save, save under another name, export and load an entry
// list, export a spreadsheet table, load a bank statement, the DATEV export,
// PDF, print preview, print, quit),
// "Bearbeiten" (undo and redo with the action's name, new entry, duplicate,
// delete, the program's preferences window), "Eintrag" (split bookings,
// recurring entries), "Auswertung" (the windows of the VAT return and of the
// Anlage EÜR of the document)
// and "Hilfe" (the shortcuts, about Saldo). Every menu and
// item has a mnemonic. It routes each action to the document controller, the
// document or the entry list; without a document controller (tests) the
// application-wide actions are disabled. The help windows are not modal;
// asking again brings the open one forward.
class WindowActions : public QObject {
    Q_OBJECT
public:
    explicit WindowActions(DocumentWindow& window);

    QAction* newDocumentAction() const { return newDocument_; }
    QAction* openAction() const { return open_; }
    QMenu* recentMenu() const { return recentMenu_; }
    QAction* closeAction() const { return close_; }
    QAction* saveAction() const { return save_; }
    QAction* saveAsAction() const { return saveAs_; }
    QAction* exportEntriesAction() const { return exportEntries_; }
    QAction* importEntriesAction() const { return importEntries_; }
    QAction* exportTableAction() const { return exportTable_; }
    QAction* statementAction() const { return statement_; }
    QAction* datevExportAction() const { return datevExport_; }
    QAction* quitAction() const { return quit_; }
    QAction* savePdfAction() const { return savePdf_; }
    QAction* printPreviewAction() const { return printPreview_; }
    QAction* printAction() const { return print_; }
    QAction* undoAction() const { return undo_; }
    QAction* redoAction() const { return redo_; }
    QAction* addEntryAction() const { return addEntry_; }
    QAction* duplicateAction() const { return duplicate_; }
    QAction* deleteAction() const { return delete_; }
    QAction* splitBookingAction() const { return splitBooking_; }
    QAction* serialTransactionAction() const { return serialTransaction_; }
    QAction* ustvaAction() const { return ustva_; }
    QAction* euerAction() const { return euer_; }
    QAction* preferencesAction() const { return preferences_; }
    QAction* shortcutsAction() const { return shortcuts_; }
    QAction* aboutAction() const { return about_; }

    // Refills "Zuletzt geoeffnet" from the document controller's list.
    void fillRecentMenu();

private:
    // Shows the window, made first unless it is open already.
    void showWindow(QPointer<QWidget>& shown, const std::function<QWidget*()>& make);
    // The same for a tax form's window, whose listed items lead to their entries.
    void showTaxFormWindow(QPointer<QWidget>& shown, const std::function<TaxFormWindow*()>& make);

    DocumentWindow& window_;
    QAction* newDocument_ = nullptr;
    QAction* open_ = nullptr;
    QMenu* recentMenu_ = nullptr;
    QAction* close_ = nullptr;
    QAction* save_ = nullptr;
    QAction* saveAs_ = nullptr;
    EntryListExchange* exchange_ = nullptr;
    QAction* exportEntries_ = nullptr;
    QAction* importEntries_ = nullptr;
    QAction* exportTable_ = nullptr;
    QAction* statement_ = nullptr;
    QAction* datevExport_ = nullptr;
    QPointer<DatevExportDialog> datevExportDialog_;
    QAction* quit_ = nullptr;
    QAction* savePdf_ = nullptr;
    QAction* printPreview_ = nullptr;
    QAction* print_ = nullptr;
    QAction* undo_ = nullptr;
    QAction* redo_ = nullptr;
    QAction* addEntry_ = nullptr;
    QAction* duplicate_ = nullptr;
    QAction* delete_ = nullptr;
    QAction* splitBooking_ = nullptr;
    QAction* serialTransaction_ = nullptr;
    QAction* ustva_ = nullptr;
    QPointer<QWidget> ustvaWindow_;
    QAction* euer_ = nullptr;
    QPointer<QWidget> euerWindow_;
    QAction* preferences_ = nullptr;
    QAction* shortcuts_ = nullptr;
    QAction* about_ = nullptr;
    QPointer<QWidget> aboutWindow_;
    QPointer<QWidget> shortcutsWindow_;
};

}  // namespace saldo::gui
