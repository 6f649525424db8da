#include "app/DocumentController.h"

#include "app/AutosaveStore.h"
#include "app/Document.h"
#include "app/DocumentWindow.h"
#include "platform/Dialogs.h"
#include "settings/PreferencesViewController.h"

#include <QApplication>
#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QLocale>
#include <QLockFile>
#include <QStandardPaths>

#include <iostream>

#include <algorithm>

namespace saldo::gui {

namespace {
DocumentController* g_shared = nullptr;

QString canonicalOrAbsolute(const QString& path)
{
    const QFileInfo info(path);
    const QString canonical = info.canonicalFilePath();
    return canonical.isEmpty() ? info.absoluteFilePath() : canonical;
}
} // namespace

DocumentController::DocumentController(UserDefaults& defaults, QObject* parent)
    : QObject(parent)
    , defaults_(defaults)
{
    g_shared = this;
}

DocumentController::~DocumentController()
{
    for (Document* document : documents_)
        delete document;
    documents_.clear();
    if (g_shared == this)
        g_shared = nullptr;
}

DocumentController* DocumentController::sharedDocumentController()
{
    return g_shared;
}

Document* DocumentController::adopt(Document* document)
{
    document->setAutosavingDelay(autosavingDelay_);
    documents_.push_back(document);
    // Saved from an untitled window or under another name.
    connect(document, &Document::filePathChanged, this, [this](const QString& path) {
        if (!path.isEmpty())
            noteRecentDocument(path);
    });
    document->makeWindowControllers();
    connect(document->windowController(), &DocumentWindow::closed, this, [this, document] { forget(document); });
    document->showWindows();
    emit documentsChanged();
    return document;
}

void DocumentController::forget(Document* document)
{
    const auto it = std::find(documents_.begin(), documents_.end(), document);
    if (it == documents_.end())
        return;
    documents_.erase(it);
    // The window is still inside its close event: delete after it returns.
    document->deleteLater();
    emit documentsChanged();
}

void DocumentController::startUp(const QStringList& files, bool offerRecoveryCopies, bool newWhenNothingOpened)
{
    const int restored = offerRecoveryCopies ? restoreAutosavedDocuments() : 0;
    for (const QString& file : files)
        openDocument(file);
    if (newWhenNothingOpened && files.isEmpty() && restored == 0)
        newDocument();
}

int DocumentController::restoreAutosavedDocuments()
{
    int restored = 0;
    for (const QString& path : AutosaveStore::files()) {
        std::unique_ptr<QLockFile> lock = AutosaveStore::claim(path);
        if (!lock)
            continue; // a running Saldo keeps it up to date
        auto document = std::make_unique<Document>(defaults_);
        if (!document->adoptRecoveryCopy(path, std::move(lock))) {
            std::cerr << "saldo: " << path.toStdString() << ": not a readable recovery copy, left alone\n";
            continue;
        }
        const QString when
            = QLocale(QLocale::German).toString(QFileInfo(path).lastModified(), QStringLiteral("dd.MM.yyyy, HH:mm"));
        const auto count = static_cast<qlonglong>(document->backupEinnahmen().size());
        const bool restore = Dialogs::instance().askRestoreDocument(nullptr,
            QStringLiteral("Saldo wurde beendet, ohne ein unbenanntes Dokument zu sichern (%1 %2, zuletzt "
                           "geaendert am %3 Uhr).")
                .arg(count)
                .arg(count == 1 ? QStringLiteral("Eintrag") : QStringLiteral("Eintraege"))
                .arg(when),
            QStringLiteral("Wiederherstellen oeffnet es als unbenanntes Dokument. Verwerfen loescht die "
                           "Sicherungskopie."));
        if (!restore) {
            AutosaveStore::remove(path);
            continue;
        }
        adopt(document.release());
        ++restored;
    }
    return restored;
}

Document* DocumentController::newDocument()
{
    return adopt(new Document(defaults_));
}

Document* DocumentController::documentForPath(const QString& path) const
{
    const QString wanted = canonicalOrAbsolute(path);
    for (Document* document : documents_) {
        if (!document->isUntitled() && document->filePath() == wanted)
            return document;
    }
    return nullptr;
}

Document* DocumentController::openDocument(const QString& path)
{
    if (Document* open = documentForPath(path)) {
        open->showWindows();
        noteRecentDocument(open->filePath());
        return open;
    }
    auto* document = new Document(defaults_);
    if (!document->readFromFile(path)) {
        delete document;
        forgetRecentDocument(canonicalOrAbsolute(path));
        Dialogs::instance().showError(nullptr,
            QStringLiteral("Das Dokument „%1“ konnte nicht geoeffnet werden.").arg(QFileInfo(path).fileName()),
            Document::unreadableFileReason());
        return nullptr;
    }
    noteRecentDocument(document->filePath());
    return adopt(document);
}

Document* DocumentController::openDocumentWithDialog(QWidget* parent)
{
    const QString path = Dialogs::instance().getOpenFileName(parent, QStringLiteral("Oeffnen"),
        QStringLiteral("Saldo-Dokumente (*.saldo);;Alle Dateien (*)"), ledgerFolder());
    if (path.isEmpty())
        return nullptr;
    return openDocument(path);
}

QStringList DocumentController::recentDocumentPaths() const
{
    QStringList paths;
    if (const auto stored = defaults_.stringArray(kRecentDocumentsKey)) {
        for (const std::string& path : *stored)
            paths << QString::fromStdString(path);
    }
    return paths;
}

void DocumentController::noteRecentDocument(const QString& path)
{
    QStringList paths = recentDocumentPaths();
    paths.removeAll(path);
    paths.prepend(path);
    while (paths.size() > kMaxRecentDocuments)
        paths.removeLast();
    std::vector<std::string> stored;
    for (const QString& p : paths)
        stored.push_back(p.toStdString());
    defaults_.setStringArray(kRecentDocumentsKey, stored);
}

void DocumentController::forgetRecentDocument(const QString& path)
{
    QStringList paths = recentDocumentPaths();
    if (paths.removeAll(path) == 0)
        return;
    std::vector<std::string> stored;
    for (const QString& p : paths)
        stored.push_back(p.toStdString());
    defaults_.setStringArray(kRecentDocumentsKey, stored);
}

QString DocumentController::ledgerFolder() const
{
    for (const QString& path : recentDocumentPaths()) {
        const QFileInfo folder(QFileInfo(path).absolutePath());
        if (folder.isDir())
            return folder.absoluteFilePath();
    }
    const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    return QFileInfo(documents).isDir() ? documents : QDir::homePath();
}

void DocumentController::clearRecentDocuments()
{
    defaults_.setStringArray(kRecentDocumentsKey, {});
}

bool DocumentController::closeAllDocuments()
{
    // Closing removes the document from the list: work on a copy.
    const std::vector<Document*> open = documents_;
    for (Document* document : open) {
        if (DocumentWindow* window = document->windowController()) {
            if (window->isVisible()) {
                if (!window->close())
                    return false;
                continue;
            }
        }
        if (!document->canClose())
            return false;
        forget(document);
    }
    return true;
}

void DocumentController::quit()
{
    if (closeAllDocuments())
        QApplication::quit();
}

PreferencesViewController* DocumentController::showPreferences()
{
    PreferencesViewController* preferences = PreferencesViewController::showPreferences(defaults_);
    connect(preferences, &PreferencesViewController::kategorieRenamed, this,
        &DocumentController::offerKategorieRename, Qt::UniqueConnection);
    return preferences;
}

void DocumentController::offerKategorieRename(const QString& from, const QString& to)
{
    const std::string before = from.toStdString();
    std::size_t count = 0;
    for (const Document* document : documents_)
        count += document->entriesWithKategorie(before).size();
    if (count == 0)
        return;
    const QString entries = count == 1 ? QStringLiteral("Ein Eintrag der geoeffneten Dokumente traegt")
                                       : QStringLiteral("%1 Eintraege der geoeffneten Dokumente tragen").arg(count);
    const bool rename = Dialogs::instance().confirm(qobject_cast<QWidget*>(sender()),
        QStringLiteral("%1 die Kategorie „%2“. Sollen sie die neue Bezeichnung „%3“ erhalten?")
            .arg(entries, from, to),
        QStringLiteral("Jedes Dokument erhaelt dafuer einen Schritt, den Bearbeiten ▸ Widerrufen zuruecknimmt. "
                       "Ohne Umbenennen behalten die Eintraege ihre Kategorie; sie steht dann nicht mehr in der "
                       "Liste und wird so gekennzeichnet."),
        QStringLiteral("Umbenennen"), QStringLiteral("Nicht umbenennen"));
    if (!rename)
        return;
    const std::string after = to.toStdString();
    for (Document* document : documents_)
        document->renameKategorie(before, after);
}

}  // namespace saldo::gui
