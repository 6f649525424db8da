#include "app/Document.h"

#include "app/AutosaveStore.h"
#include "app/DocumentController.h"
#include "app/DocumentWindow.h"
#include "app/SplitViewController.h"
#include "editors/DetailViewController.h"
#include "entrylist/ViewController.h"
#include "model/LedgerFile.h"
#include "platform/Diagnostics.h"
#include "platform/Dialogs.h"

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QHash>
#include <QLockFile>
#include <QSaveFile>
#include <QUndoStack>

#include <cmath>
#include <iostream>

#include <fcntl.h>
#include <unistd.h>

namespace saldo::gui {

QString Document::unreadableFileReason()
{
    return QStringLiteral("Die Datei ist keine lesbare Saldo-Datei.");
}

Document::Document(UserDefaults& defaults, QObject* parent)
    : QObject(parent)
    , defaults_(defaults)
    , undoStack_(new QUndoStack(this))
{
    autosaveTimer_.setSingleShot(true);
    // Each change restarts the full delay; a coarse timer could round it away.
    autosaveTimer_.setTimerType(Qt::PreciseTimer);
    setAutosavingDelay(DocumentController::kDefaultAutosavingDelay);
    connect(&autosaveTimer_, &QTimer::timeout, this, &Document::autosave);
    // Undo and redo change the entries, so both mark the document changed.
    connect(undoStack_, &QUndoStack::indexChanged, this, [this] { updateChangeCount(ChangeType::Done); });
}

Document::~Document()
{
    autosaveTimer_.stop();
    // The window and its panes go first, while the undo stack they use lives.
    window_.reset();
}

void Document::setFilePath(const QString& path)
{
    if (path == filePath_)
        return;
    filePath_ = path;
    emit filePathChanged(path);
}

QString Document::displayName() const
{
    return isUntitled() ? QStringLiteral("Unbenannt") : QFileInfo(filePath_).fileName();
}

bool Document::readFromData(const QByteArray& data)
{
    try {
        EinnahmeList entries
            = LedgerFile::decode(std::string_view(data.constData(), static_cast<std::size_t>(data.size())));
        einnahmen_ = std::move(entries);
        errorCode_ = 0;
        return true;
    } catch (const std::exception& error) {
        std::cerr << "saldo: " << error.what() << '\n';
    }
    errorCode_ = kFileErrorCode;
    return false;
}

bool Document::readFromFile(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        std::cerr << "saldo: " << path.toStdString() << ": " << file.errorString().toStdString() << '\n';
        errorCode_ = kFileErrorCode;
        return false;
    }
    const QByteArray bytes = file.readAll();
    if (!readFromData(bytes))
        return false;
    const QString canonical = QFileInfo(path).canonicalFilePath();
    setFilePath(canonical.isEmpty() ? QFileInfo(path).absoluteFilePath() : canonical);
    noteFileContents(bytes);
    return true;
}

void Document::noteFileContents(const QByteArray& bytes)
{
    diskStamp_ = FileStamp::of(filePath_);
    diskHash_ = qHash(bytes);
    declinedStamp_.reset();
}

bool Document::reloadFromFile()
{
    if (isUntitled())
        return false;
    QFile file(filePath_);
    const QByteArray bytes = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    if (!file.isOpen() || !readFromData(bytes)) {
        // Nothing replaced: the window keeps its entries, still to be saved.
        declinedStamp_ = FileStamp::of(filePath_);
        Dialogs::instance().showError(window_.get(),
            QStringLiteral("Das Dokument „%1“ konnte nicht neu geladen werden.").arg(displayName()),
            unreadableFileReason() + QStringLiteral(" Die Einträge im Fenster bleiben erhalten."));
        return false;
    }
    noteFileContents(bytes);
    // The undo history belongs to the entries that are being replaced. (Its
    // index change counts as a change; the count is cleared below.)
    undoStack_->clear();
    if (ViewController* list = entryList())
        list->setEntries(*einnahmen_);
    updateChangeCount(ChangeType::Cleared);
    return true;
}

bool Document::adoptRecoveryCopy(const QString& path, std::unique_ptr<QLockFile> lock)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly) || !readFromData(file.readAll()))
        return false;
    recoveryPath_ = path;
    recoveryLock_ = std::move(lock);
    return true;
}

void Document::makeWindowControllers()
{
    if (window_)
        return;
    if (DocumentController* controller = DocumentController::sharedDocumentController())
        setAutosavingDelay(controller->autosavingDelay());

    window_ = std::make_unique<DocumentWindow>(*this, defaults_);
    ViewController* list = entryList();
    list->setUndoStack(undoStack_);
    connect(list, &ViewController::changeDone, this, [this] { updateChangeCount(ChangeType::Done); });
    connect(window_->splitViewController()->detailViewController(), &DetailViewController::changeDone, this,
        [this] { updateChangeCount(ChangeType::Done); });

    // A new document keeps the entry list's starting entry; an opened one
    // replaces it with the file's entries (the same objects, nothing copied).
    if (einnahmen_)
        list->setEntries(*einnahmen_);
    // A restored recovery copy has never been saved under a name.
    if (!recoveryPath_.isEmpty())
        updateChangeCount(ChangeType::Done);
}

void Document::showWindows()
{
    makeWindowControllers();
    window_->show();
    if (QGuiApplication::platformName() != QLatin1String("offscreen")) {
        window_->raise();
        window_->activateWindow();
    }
}

ViewController* Document::entryList() const
{
    return window_ ? window_->splitViewController()->viewController() : nullptr;
}

std::optional<QByteArray> Document::dataOfType()
{
    ViewController* list = entryList();
    if (!list) {
        errorCode_ = kFileErrorCode;
        return std::nullopt;
    }
    try {
        const std::string bytes = LedgerFile::encode(list->backupEinnahmen());
        diagnosticLine("data saved");
        return QByteArray(bytes.data(), static_cast<qsizetype>(bytes.size()));
    } catch (const std::exception& error) {
        std::cerr << "saldo: " << error.what() << '\n';
    }
    errorCode_ = kFileErrorCode;
    return std::nullopt;
}

bool Document::writeFile(const QString& path, const QByteArray& data, QString* reason)
{
    // QSaveFile would rename over a file that the user made read-only; a save
    // must not undo that. (Asked with the effective identity, which is also the
    // file-system identity the writes below run under.)
    if (::faccessat(AT_FDCWD, QFile::encodeName(path).constData(), F_OK, AT_EACCESS) == 0
        && ::faccessat(AT_FDCWD, QFile::encodeName(path).constData(), W_OK, AT_EACCESS) != 0) {
        *reason = QStringLiteral("Die Datei ist schreibgeschützt.");
        return false;
    }
    // QSaveFile writes a temporary file beside the target and renames it over
    // the target only when everything was written, keeping the target's
    // permissions; it never falls back to writing the target directly. It is
    // opened unbuffered: a write error of data still held in its buffer would
    // go unnoticed by commit(), which would then rename a short file over the
    // good one.
    QSaveFile file(path);
    bool written
        = file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) && file.write(data) == data.size() && file.flush();
    if (!written)
        file.cancelWriting();
    written = file.commit() && written;
    if (!written) {
        *reason = file.error() == QFileDevice::OpenError
            ? QStringLiteral("Die Datei kann in diesem Ordner nicht angelegt werden.")
            : QStringLiteral("Die Datei konnte nicht vollständig geschrieben werden; ist der "
                             "Datenträger voll?");
        const QString detail = file.errorString();
        if (!detail.isEmpty() && detail != QLatin1String("Unknown error"))
            *reason += QStringLiteral(" (%1)").arg(detail);
    }
    return written;
}

void Document::reportSaveFailure(const QString& path, const QString& reason)
{
    std::cerr << "saldo: " << path.toStdString() << ": " << reason.toStdString() << '\n';
    if (saveFailureShown_)
        return;
    saveFailureShown_ = true;
    Dialogs::instance().showError(window_.get(),
        QStringLiteral("Das Dokument „%1“ konnte nicht gesichert werden.").arg(QFileInfo(path).fileName()),
        QStringLiteral("%1\nDie Änderungen bleiben im Fenster erhalten. Saldo versucht alle paar Sekunden, "
                       "erneut zu sichern, und meldet sich, sobald es wieder scheitert, nachdem es einmal "
                       "gelungen ist.")
            .arg(reason));
}

bool Document::saveTo(const QString& path)
{
    autosaveTimer_.stop();
    const std::optional<QByteArray> data = dataOfType();
    QString reason = QStringLiteral("Die Einträge konnten nicht kodiert werden.");
    if (!data || !writeFile(path, *data, &reason)) {
        errorCode_ = kFileErrorCode;
        reportSaveFailure(path, reason);
        // Try again at the next autosave, whether or not anything changes.
        if (isDocumentEdited())
            autosaveTimer_.start();
        return false;
    }
    saveFailureShown_ = false;
    const QString canonical = QFileInfo(path).canonicalFilePath();
    setFilePath(canonical.isEmpty() ? path : canonical);
    noteFileContents(*data);
    dropRecoveryCopy();
    updateChangeCount(ChangeType::Cleared);
    return true;
}

bool Document::save()
{
    return saveInPlace(SaveKind::Explicit);
}

bool Document::saveInPlace(SaveKind kind)
{
    if (isUntitled() || !mayOverwriteFile(kind))
        return false;
    return saveTo(filePath_);
}

bool Document::mayOverwriteFile(SaveKind kind)
{
    const FileStamp now = FileStamp::of(filePath_);
    // Deleted or moved away: written again at its path.
    if (!now.exists || now == diskStamp_)
        return true;
    // Declined before and untouched since: autosave does not ask again.
    if (kind == SaveKind::Automatic && declinedStamp_ && *declinedStamp_ == now)
        return false;
    // Touched, copied back or restored from a backup: same bytes, nothing lost.
    QFile file(filePath_);
    if (file.open(QIODevice::ReadOnly) && qHash(file.readAll()) == diskHash_) {
        diskStamp_ = now;
        return true;
    }

    autosaveTimer_.stop();
    asking_ = true;
    const Dialogs::FileChangedChoice choice = Dialogs::instance().askFileChanged(window_.get(), displayName());
    asking_ = false;
    switch (choice) {
    case Dialogs::FileChangedChoice::Overwrite:
        return true;
    case Dialogs::FileChangedChoice::Reload:
        reloadFromFile();
        return false;
    case Dialogs::FileChangedChoice::Cancel:
        break;
    }
    declinedStamp_ = now;
    return false;
}

bool Document::saveWithDialog()
{
    const QString suggested = QDir::home().filePath(displayName() + QStringLiteral(".saldo"));
    QString path = Dialogs::instance().getSaveFileName(
        window_.get(), QStringLiteral("Sichern"), suggested, QStringLiteral("Saldo-Dokumente (*.saldo)"));
    if (path.isEmpty())
        return false;
    if (!path.endsWith(QStringLiteral(".saldo"), Qt::CaseInsensitive))
        path += QStringLiteral(".saldo");
    return saveTo(path);
}

bool Document::saveDocument()
{
    return isUntitled() ? saveWithDialog() : save();
}

void Document::updateChangeCount(ChangeType change)
{
    const bool wasEdited = isDocumentEdited();
    switch (change) {
    case ChangeType::Done:
        ++changeCount_;
        // An edit made during the delay moves the save further out. An
        // untitled document saves its recovery copy after the same delay.
        autosaveTimer_.start();
        break;
    case ChangeType::Undone:
        --changeCount_;
        autosaveTimer_.start();
        break;
    case ChangeType::Cleared:
        changeCount_ = 0;
        autosaveTimer_.stop();
        break;
    }
    if (wasEdited != isDocumentEdited())
        emit editedChanged(isDocumentEdited());
}

void Document::setAutosavingDelay(double seconds)
{
    autosaveTimer_.setInterval(static_cast<int>(std::lround(seconds * 1000.0)));
}

void Document::autosave()
{
    // A question about the file is open: its answer decides.
    if (!isDocumentEdited() || asking_)
        return;
    if (isUntitled())
        writeRecoveryCopy();
    else
        saveInPlace(SaveKind::Automatic);
}

void Document::writeRecoveryCopy()
{
    ViewController* list = entryList();
    if (!list)
        return;
    if (recoveryPath_.isEmpty())
        recoveryPath_ = AutosaveStore::newFilePath(&recoveryLock_);
    if (recoveryPath_.isEmpty())
        return;
    try {
        const std::string bytes = LedgerFile::encode(list->backupEinnahmen());
        AutosaveStore::write(recoveryPath_, QByteArray(bytes.data(), static_cast<qsizetype>(bytes.size())));
    } catch (const std::exception& error) {
        std::cerr << "saldo: " << error.what() << '\n';
    }
}

void Document::dropRecoveryCopy()
{
    if (recoveryPath_.isEmpty())
        return;
    AutosaveStore::remove(recoveryPath_);
    recoveryLock_.reset();
    recoveryPath_.clear();
}

bool Document::canClose()
{
    autosaveTimer_.stop();
    bool agreed = false;
    // A save in place may also end in reloading the file, which leaves the
    // document unchanged: nothing left to ask.
    if (!isDocumentEdited() || (!isUntitled() && save()) || !isDocumentEdited()) {
        agreed = true;
    } else {
        switch (Dialogs::instance().askSaveChanges(window_.get(), displayName())) {
        case Dialogs::SaveChoice::Save:
            agreed = saveWithDialog();
            break;
        case Dialogs::SaveChoice::DontSave:
            agreed = true;
            break;
        case Dialogs::SaveChoice::Cancel:
            break;
        }
    }
    if (agreed) {
        autosaveTimer_.stop();
        dropRecoveryCopy();
    } else if (isDocumentEdited()) {
        autosaveTimer_.start();
    }
    return agreed;
}

} // namespace saldo::gui
