#pragma once

#include "platform/UserDefaults.h"

#include <QObject>
#include <QStringList>

#include <vector>

class QWidget;

namespace saldo::gui {

class Document;
class PreferencesViewController;

// The program's one document controller: makes new documents, opens files
// (bringing an already open file's window forward instead of opening it
// twice), keeps the list of recently opened files in the preferences, closes
// documents and quits after every document agreed to close. A file that cannot
// be read opens no window and shows one message naming the file; a document
// saved under a new name joins the recent list as well. The autosave
// delay is its setting, handed to every document it makes. At start-up it
// offers back the untitled documents that a crash left in the autosave folder.
class DocumentController : public QObject {
    Q_OBJECT
public:
    static constexpr double kDefaultAutosavingDelay = 3.0;
    static constexpr int kMaxRecentDocuments = 10;
    static constexpr const char* kRecentDocumentsKey = "ZuletztGeoeffnet";

    explicit DocumentController(UserDefaults& defaults, QObject* parent = nullptr);
    ~DocumentController() override;

    // The instance alive at the moment, or nullptr.
    static DocumentController* sharedDocumentController();

    double autosavingDelay() const { return autosavingDelay_; }
    void setAutosavingDelay(double seconds) { autosavingDelay_ = seconds; }

    // The program's start: offers the recovery copies found in the autosave
    // folder, opens the named files, and makes a new document when nothing
    // else opened (unless the program was started for its preferences only).
    // Measuring and picture runs, which nobody answers, pass false for the
    // copies and leave them for the next real start.
    void startUp(const QStringList& files, bool offerRecoveryCopies = true, bool newWhenNothingOpened = true);

    // Asks about each recovery copy left by a program that ended without
    // closing its untitled documents: "Wiederherstellen" opens it as an
    // untitled, changed document, "Verwerfen" deletes it. Copies of a Saldo
    // still running are left alone. Answers how many were restored.
    int restoreAutosavedDocuments();

    // A new, untitled document with its window shown.
    Document* newDocument();
    // Opens the file (or brings its window forward when it is open already).
    // Shows a message and answers nullptr when the file cannot be read.
    Document* openDocument(const QString& path);
    // Asks for a file through the open panel and opens it.
    Document* openDocumentWithDialog(QWidget* parent);

    const std::vector<Document*>& documents() const { return documents_; }
    Document* documentForPath(const QString& path) const;

    QStringList recentDocumentPaths() const;
    void clearRecentDocuments();
    // The folder of the newest recent ledger that still exists, else the
    // user's documents folder or home: where the open and save panels start.
    QString ledgerFolder() const;

    // Shows the program's preferences window; a category renamed there is
    // offered to the open documents' entries (offerKategorieRename).
    PreferencesViewController* showPreferences();

    // Asks every document to close, in order; stops at the first that refuses.
    bool closeAllDocuments();

public slots:
    // Closes every document and, when all agreed, ends the program.
    void quit();
    // A category of the list was renamed in the preferences window: when
    // entries of open documents carry the old text, asks whether they are to
    // take the new one, and if so renames them, one step per document.
    void offerKategorieRename(const QString& from, const QString& to);

signals:
    void documentsChanged();

private:
    Document* adopt(Document* document);
    void forget(Document* document);
    void noteRecentDocument(const QString& path);
    // A file that can no longer be read leaves the recent list.
    void forgetRecentDocument(const QString& path);

    UserDefaults& defaults_;
    std::vector<Document*> documents_;
    double autosavingDelay_ = kDefaultAutosavingDelay;
};

} // namespace saldo::gui
