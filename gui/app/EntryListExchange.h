#pragma once

#include <QObject>
#include <QString>

#include <cstddef>

class QMainWindow;

namespace saldo::gui {

class Document;

// Moves entries between a document window and files of the user's choice.
// `Sichern` exports the entries the table shows, in its order, as a ledger
// file with ".plist" appended: its save panel does not block, and the export
// takes the shown entries of the moment the panel closes; nothing in the
// window changes. `Laden` reads a ledger file (binary or XML) chosen in a modal
// open panel and makes its entries the document's, through the document's
// import verb, as one step that can be undone; the status bar says how many
// entries replaced how many and how to get them back. `exportTable` writes
// the shown entries as a spreadsheet table.
// A failure ends without an alert and without a sound: one short line in the
// window's status bar names the file that could not be read or written, and
// the reason goes to standard error.
class EntryListExchange : public QObject {
    Q_OBJECT
public:
    // How long a failure stays in the status bar, and what a load did.
    static constexpr int kStatusMessageMilliseconds = 6000;
    static constexpr int kLoadedMessageMilliseconds = 20000;

    // "7 Eintraege geladen, 67 bisherige ersetzt. Bearbeiten ▸ Widerrufen holt
    // den vorigen Stand zurueck."
    static QString loadedText(std::size_t loaded, std::size_t replaced);

    EntryListExchange(Document& document, QMainWindow& window);

public slots:
    void Sichern();
    void Laden();
    void exportTable();

private:
    void exportEntries(const QString& chosenPath);
    // The folder the panels start in: the document's own, else the home folder.
    QString startFolder() const;
    void showFailure(const QString& format, const QString& path);

    Document& document_;
    QMainWindow& window_;
};

} // namespace saldo::gui
