#pragma once

#include <QString>
#include <QStringList>

#include <functional>

class QPrinter;
class QWidget;

namespace saldo::gui {

// Every alert and file panel of the program goes through this interface, so
// that tests can answer them without a modal dialog ever blocking. The default
// implementation shows QMessageBox and QFileDialog; tests install their own
// with setInstance(). Texts are German and passed in by the caller.
class Dialogs {
public:
    // What the user chose for a changed document that is being closed.
    enum class SaveChoice { Save, DontSave, Cancel };
    // What the user chose when the document's file was changed by another program.
    enum class FileChangedChoice { Overwrite, Reload, Cancel };

    virtual ~Dialogs() = default;

    // A critical alert with the buttons "OK" and "Abbrechen"; true for "OK".
    virtual bool confirmDelete(QWidget* parent, const QString& text);

    // A question with two buttons; true when the first one (acceptTitle) is chosen.
    virtual bool confirm(QWidget* parent, const QString& text, const QString& informativeText,
        const QString& acceptTitle, const QString& rejectTitle);

    // Asks whether the changes of the named document are to be saved before it
    // closes: "Sichern…", "Nicht sichern", "Abbrechen".
    virtual SaveChoice askSaveChanges(QWidget* parent, const QString& documentName);

    // Tells that another program changed the named document's file since Saldo
    // last read or wrote it: "Ueberschreiben", "Neu laden", "Abbrechen".
    virtual FileChangedChoice askFileChanged(QWidget* parent, const QString& documentName);

    // Offers back a document found after a crash: "Wiederherstellen" (true) or
    // "Verwerfen". Only a click on "Verwerfen" discards; the question cannot be
    // dismissed otherwise.
    virtual bool askRestoreDocument(QWidget* parent, const QString& text, const QString& informativeText);

    // An open panel starting in `directory`; an empty string when cancelled.
    virtual QString getOpenFileName(
        QWidget* parent, const QString& caption, const QString& filter, const QString& directory = QString());

    // A save panel proposing `suggestedPath`; an empty string when cancelled.
    virtual QString getSaveFileName(
        QWidget* parent, const QString& caption, const QString& suggestedPath, const QString& filter);

    // A save panel that does not block: it returns at once, and `completion`
    // runs when the panel closes, with the chosen path (an empty string when
    // cancelled). The program goes on while the panel is open; a completion
    // whose panel is closed with its window never runs.
    using SaveCompletion = std::function<void(const QString& path)>;
    virtual void beginSaveFileName(QWidget* parent, const QString& caption, const QString& directory,
        const QString& filter, SaveCompletion completion);

    // A warning that something failed, with the reason below it.
    virtual void showError(QWidget* parent, const QString& text, const QString& informativeText);

    // A plain information message.
    virtual void showInformation(QWidget* parent, const QString& text, const QString& informativeText);

    // The print dialog over the printer's settings, offering pages 1 to
    // `pageCount`; true when the user chose to print.
    virtual bool askPrintSettings(QWidget* parent, QPrinter& printer, int pageCount);

    // The print preview of the printer's pages, which `paint` paints (again
    // whenever the user changes the paper); printing from it prints them.
    virtual void showPrintPreview(QWidget* parent, QPrinter& printer, const std::function<void(QPrinter&)>& paint);

    // Asks to choose one of `items` (a question with a list); the index of
    // the chosen one, or -1 when the person cancels.
    virtual int chooseItem(QWidget* parent, const QString& text, const QString& informativeText,
        const QStringList& items);

    // The process-wide instance (the QMessageBox/QFileDialog one unless replaced).
    static Dialogs& instance();

    // Replaces the process-wide instance (not owned; nullptr restores the
    // default) and answers the previous replacement, or nullptr.
    static Dialogs* setInstance(Dialogs* dialogs);
};

} // namespace saldo::gui
