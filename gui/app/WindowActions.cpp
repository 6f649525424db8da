#include "app/WindowActions.h"

#include "app/AboutDialog.h"
#include "app/DatevExportDialog.h"
#include "app/Document.h"
#include "app/DocumentController.h"
#include "app/DocumentWindow.h"
#include "app/EntryListExchange.h"
#include "app/ShortcutsDialog.h"
#include "bank/StatementImport.h"
#include "app/SplitViewController.h"
#include "app/UndoKeysFallback.h"
#include "entrylist/ViewController.h"
#include "evaluation/EuerViewController.h"
#include "evaluation/UstvaViewController.h"
#include "settings/PreferencesViewController.h"
#include "printing/PrintController.h"

#include <QAction>
#include <QDir>
#include <QFileInfo>
#include <QMenuBar>
#include <QTableView>
#include <QUndoStack>

namespace saldo::gui {

namespace {
QAction* makeAction(QObject* parent, const QString& text, const QList<QKeySequence>& shortcuts = {})
{
    auto* action = new QAction(text, parent);
    action->setShortcuts(shortcuts);
    return action;
}
}  // namespace

WindowActions::WindowActions(DocumentWindow& window)
    : QObject(&window)
    , window_(window)
{
    Document& document = window.document();
    ViewController* list = window.splitViewController()->viewController();
    DocumentController* controller = DocumentController::sharedDocumentController();

    // Ablage. Closing, saving under a name and quitting are spelled out: the
    // platform's standard keys for them differ between desktops or are missing.
    newDocument_ = makeAction(this, QStringLiteral("&Neu"), { QKeySequence::New });
    open_ = makeAction(this, QStringLiteral("&Oeffnen…"), { QKeySequence::Open });
    close_ = makeAction(this, QStringLiteral("S&chliessen"), { QKeySequence(Qt::CTRL | Qt::Key_W) });
    save_ = makeAction(this, QStringLiteral("&Sichern"), { QKeySequence::Save });
    saveAs_ = makeAction(this, QStringLiteral("Sichern &unter…"), { QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_S) });
    quit_ = makeAction(this, QStringLiteral("&Beenden"), { QKeySequence(Qt::CTRL | Qt::Key_Q) });
    quit_->setMenuRole(QAction::QuitRole);

    QMenu* ablage = window.menuBar()->addMenu(QStringLiteral("&Ablage"));
    ablage->addAction(newDocument_);
    ablage->addAction(open_);
    recentMenu_ = ablage->addMenu(QStringLiteral("&Zuletzt geoeffnet"));
    connect(recentMenu_, &QMenu::aboutToShow, this, &WindowActions::fillRecentMenu);
    ablage->addSeparator();
    ablage->addAction(close_);
    ablage->addAction(save_);
    ablage->addAction(saveAs_);
    ablage->addSeparator();
    // The entry list's own export and import, and the spreadsheet table.
    exchange_ = new EntryListExchange(document, window);
    exportEntries_
        = ablage->addAction(QStringLiteral("Eintraege e&xportieren…"), exchange_, &EntryListExchange::Sichern);
    importEntries_ = ablage->addAction(QStringLiteral("Eintraege &laden…"), exchange_, &EntryListExchange::Laden);
    exportTable_
        = ablage->addAction(QStringLiteral("Als &Tabelle exportieren…"), exchange_, &EntryListExchange::exportTable);
    // A bank statement's bookings as proposed entries.
    auto* statementImport = new StatementImport(document, window);
    statement_ = makeAction(this, QStringLiteral("&Kontoauszug laden…"), { QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_I) });
    connect(statement_, &QAction::triggered, statementImport, &StatementImport::kontoauszugLaden);
    ablage->addAction(statement_);
    // The booking batches for the tax adviser: one dialog per window, kept
    // with what was chosen in it.
    datevExport_ = ablage->addAction(QStringLiteral("DATEV-&Export…"), this, [this, &document] {
        if (!datevExportDialog_)
            datevExportDialog_ = new DatevExportDialog(document, &window_);
        datevExportDialog_->show();
        datevExportDialog_->raise();
        datevExportDialog_->activateWindow();
    });
    auto* printing = new PrintController(document, &window, this);
    savePdf_ = makeAction(this, QStringLiteral("Als &PDF sichern…"));
    printPreview_ = makeAction(this, QStringLiteral("Druck&vorschau…"));
    print_ = makeAction(this, QStringLiteral("&Drucken…"), { QKeySequence::Print });
    connect(savePdf_, &QAction::triggered, printing, &PrintController::alsPdfSichern);
    connect(printPreview_, &QAction::triggered, printing, &PrintController::druckvorschau);
    connect(print_, &QAction::triggered, printing, &PrintController::drucken);
    ablage->addActions({ savePdf_, printPreview_, print_ });
    window.addAction(print_);
    ablage->addSeparator();
    ablage->addAction(quit_);

    if (controller) {
        connect(newDocument_, &QAction::triggered, controller, [controller] { controller->newDocument(); });
        connect(open_, &QAction::triggered, controller,
            [controller, this] { controller->openDocumentWithDialog(&window_); });
        connect(quit_, &QAction::triggered, controller, &DocumentController::quit);
    } else {
        newDocument_->setEnabled(false);
        open_->setEnabled(false);
        recentMenu_->setEnabled(false);
        quit_->setEnabled(false);
    }
    connect(close_, &QAction::triggered, &window, &QWidget::close);
    connect(save_, &QAction::triggered, &document, [&document] { document.saveDocument(); });
    connect(saveAs_, &QAction::triggered, &document, [&document] { document.saveWithDialog(); });

    // Bearbeiten
    QUndoStack* undoStack = document.undoManager();
    undo_ = undoStack->createUndoAction(this, QStringLiteral("&Widerrufen"));
    undo_->setShortcuts(QKeySequence::Undo);
    redo_ = undoStack->createRedoAction(this, QStringLiteral("Wieder&holen"));
    redo_->setShortcuts({ QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z), QKeySequence(Qt::CTRL | Qt::Key_Y) });
    addEntry_ = makeAction(this, QStringLiteral("&Neuer Eintrag"), { QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_N) });
    duplicate_ = makeAction(this, QStringLiteral("&Duplizieren"), { QKeySequence(Qt::CTRL | Qt::Key_D) });
    delete_ = makeAction(
        this, QStringLiteral("&Loeschen"), { QKeySequence(Qt::Key_Delete), QKeySequence(Qt::Key_Backspace) });
    // Delete and Backspace belong to text fields everywhere else: the keys
    // delete entries only while the table has the focus (the menu item works always).
    delete_->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    list->tableView()->addAction(delete_);

    QMenu* bearbeiten = window.menuBar()->addMenu(QStringLiteral("&Bearbeiten"));
    bearbeiten->addAction(undo_);
    bearbeiten->addAction(redo_);
    bearbeiten->addSeparator();
    bearbeiten->addAction(addEntry_);
    bearbeiten->addAction(duplicate_);
    bearbeiten->addAction(delete_);
    connect(addEntry_, &QAction::triggered, list, &ViewController::addEntry);
    connect(duplicate_, &QAction::triggered, list, &ViewController::duplicateEntry);
    connect(delete_, &QAction::triggered, list, &ViewController::deleteEntries);
    // The preferences belong to the program: every window opens the same one.
    preferences_ = makeAction(this, QStringLiteral("&Einstellungen…"), { QKeySequence(Qt::CTRL | Qt::Key_Comma) });
    preferences_->setMenuRole(QAction::PreferencesRole);
    bearbeiten->addSeparator();
    bearbeiten->addAction(preferences_);
    connect(preferences_, &QAction::triggered, this, [&document, controller] {
        if (controller)
            controller->showPreferences();
        else
            PreferencesViewController::showPreferences(document.defaults());
    });
    // Eintrag
    splitBooking_
        = makeAction(this, QStringLiteral("&Splitbuchung bearbeiten…"), { QKeySequence(Qt::CTRL | Qt::Key_Return) });
    // Not Ctrl+Shift+S: that is "Sichern unter".
    serialTransaction_
        = makeAction(this, QStringLiteral("Se&rienbuchung…"), { QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_E) });
    QMenu* eintrag = window.menuBar()->addMenu(QStringLiteral("&Eintrag"));
    eintrag->addAction(splitBooking_);
    eintrag->addAction(serialTransaction_);
    connect(splitBooking_, &QAction::triggered, list, [list] {
        const QModelIndex current = list->tableView()->currentIndex();
        if (current.isValid())
            list->handleDoubleClick(current);
    });
    connect(serialTransaction_, &QAction::triggered, list, &ViewController::initiateSerialTransactionController);

    // Auswertung: the tax office's figures, each in a window of its own over the document.
    ustva_ = makeAction(this, QStringLiteral("&Umsatzsteuer-Voranmeldung…"), { QKeySequence(Qt::CTRL | Qt::Key_U) });
    QMenu* auswertung = window.menuBar()->addMenu(QStringLiteral("Aus&wertung"));
    auswertung->addAction(ustva_);
    connect(ustva_, &QAction::triggered, this, [this, &document] {
        showTaxFormWindow(
            ustvaWindow_, [this, &document] { return new UstvaViewController(document, document.defaults(), &window_); });
    });
    // Ctrl+J, the year's form: Ctrl+Shift+U is the Unicode key of input methods.
    euer_ = makeAction(this, QStringLiteral("&Anlage EÜR…"), { QKeySequence(Qt::CTRL | Qt::Key_J) });
    auswertung->addAction(euer_);
    connect(euer_, &QAction::triggered, this, [this, &document] {
        showTaxFormWindow(
            euerWindow_, [this, &document] { return new EuerViewController(document, document.defaults(), &window_); });
    });

    // Hilfe
    about_ = makeAction(this, QStringLiteral("&Ueber Saldo"));
    about_->setMenuRole(QAction::AboutRole);
    shortcuts_ = makeAction(this, QStringLiteral("&Tastenkuerzel"), { QKeySequence::HelpContents });
    QMenu* hilfe = window.menuBar()->addMenu(QStringLiteral("&Hilfe"));
    hilfe->addAction(shortcuts_);
    hilfe->addAction(about_);
    connect(about_, &QAction::triggered, this,
        [this] { showWindow(aboutWindow_, [this] { return new AboutDialog(&window_); }); });
    connect(shortcuts_, &QAction::triggered, this,
        [this] { showWindow(shortcutsWindow_, [this] { return new ShortcutsDialog(window_); }); });

    for (QAction* action : { newDocument_, open_, close_, save_, saveAs_, statement_, quit_, undo_, redo_, addEntry_,
             duplicate_, splitBooking_, serialTransaction_, ustva_, euer_, preferences_, shortcuts_ })
        window.addAction(action);
    // Ctrl+Z in a form field with nothing of its own to undo undoes the document's last step.
    new UndoKeysFallback(window, this);
}

void WindowActions::showWindow(QPointer<QWidget>& shown, const std::function<QWidget*()>& make)
{
    if (!shown) {
        shown = make();
        shown->setAttribute(Qt::WA_DeleteOnClose);
    }
    shown->show();
    shown->raise();
    shown->activateWindow();
}

void WindowActions::showTaxFormWindow(QPointer<QWidget>& shown, const std::function<TaxFormWindow*()>& make)
{
    showWindow(shown, [this, &make] {
        TaxFormWindow* made = make();
        // A double-clicked item's entry is selected in the ledger's table.
        ViewController* list = window_.splitViewController()->viewController();
        connect(made, &TaxFormWindow::entryActivated, list, [this, list](const EinnahmePtr& entry) {
            if (list->selectEntry(entry.get())) {
                window_.raise();
                window_.activateWindow();
            }
        });
        return made;
    });
}

void WindowActions::fillRecentMenu()
{
    recentMenu_->clear();
    DocumentController* controller = DocumentController::sharedDocumentController();
    if (!controller)
        return;
    const QStringList paths = controller->recentDocumentPaths();
    for (int i = 0; i < paths.size(); ++i) {
        const QString& path = paths[i];
        // Numbered for the keyboard: "&1 Kasse.saldo" … "1&0 …"; an ampersand
        // in a file name is shown as itself.
        const QString number
            = i < 9 ? QStringLiteral("&%1").arg(i + 1) : QStringLiteral("%1&%2").arg((i + 1) / 10).arg((i + 1) % 10);
        QAction* action = recentMenu_->addAction(
            number + QLatin1Char(' ') + QFileInfo(path).fileName().replace(QLatin1Char('&'), QStringLiteral("&&")));
        action->setToolTip(QDir::toNativeSeparators(path));
        action->setStatusTip(QDir::toNativeSeparators(path));
        connect(action, &QAction::triggered, controller, [controller, path] { controller->openDocument(path); });
    }
    if (paths.isEmpty())
        recentMenu_->addAction(QStringLiteral("Keine Dokumente"))->setEnabled(false);
    recentMenu_->addSeparator();
    QAction* clear = recentMenu_->addAction(QStringLiteral("Liste &leeren"));
    clear->setEnabled(!paths.isEmpty());
    connect(clear, &QAction::triggered, controller, &DocumentController::clearRecentDocuments);
}

}  // namespace saldo::gui
