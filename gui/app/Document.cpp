#include "app/Document.h"

#include "app/AutosaveStore.h"
#include "app/DocumentController.h"
#include "app/DocumentEntries.h"
#include "app/DocumentWindow.h"
#include "app/commands/AddEntryCommand.h"
#include "app/commands/AppendEntriesCommand.h"
#include "app/commands/AppendSeriesCommand.h"
#include "app/commands/ChangeEntryCommand.h"
#include "app/commands/DeleteEntriesCommand.h"
#include "app/commands/DuplicateEntryCommand.h"
#include "app/commands/LoadEntriesCommand.h"
#include "app/commands/RenameKategorieCommand.h"
#include "app/commands/ReplaceEntryCommand.h"
#include "entrylist/EntryTableModel.h"
#include "entrylist/SearchOutcome.h"
#include "model/InterruptedSaves.h"
#include "model/LedgerFile.h"
#include "platform/Diagnostics.h"
#include "platform/Dialogs.h"
#include "platform/LedgerFileErrorText.h"
#include "platform/PathText.h"
#include "platform/Sound.h"
#include "settings/CategoryRename.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QApplication>
#include <QEventLoop>
#include <QHash>
#include <QLockFile>
#include <QStatusBar>
#include <QUndoStack>

#include <cmath>
#include <iostream>


namespace saldo::gui {

QString Document::unreadableFileReason()
{
    return QStringLiteral("Die Datei ist keine lesbare Saldo-Datei.");
}

Document::Document(UserDefaults& defaults, QObject* parent)
    : QObject(parent)
    , defaults_(defaults)
    , entries_(new DocumentEntries(*this, defaults, this))
    , undoStack_(new QUndoStack(this))
{
    connect(entries_, &DocumentEntries::aboutToChange, this, &Document::aboutToChange);
    connect(entries_, &DocumentEntries::changed, this, &Document::changed);
    autosaveTimer_.setSingleShot(true);
    // Each change restarts the full delay; a coarse timer could round it away.
    autosaveTimer_.setTimerType(Qt::PreciseTimer);
    setAutosavingDelay(DocumentController::kDefaultAutosavingDelay);
    connect(&autosaveTimer_, &QTimer::timeout, this, &Document::autosave);
    // Every step, its undo and its redo change the entries, so each marks the
    // document changed; clearing the history and loading a list do not.
    connect(undoStack_, &QUndoStack::indexChanged, this, [this] {
        if (!quietStep_)
            updateChangeCount(ChangeType::Done);
    });
}

Document::~Document()
{
    autosaveTimer_.stop();
    // A save still under way ends before the entries it reads go.
    saving_.reset();
    // The window and its panes go first, while the entries they show live.
    window_.reset();
}

const EinnahmeList& Document::einnahmen() const
{
    return entries_->einnahmen();
}

const EinnahmeList& Document::backupEinnahmen() const
{
    return entries_->backupEinnahmen();
}

EntryTableModel* Document::model() const
{
    return entries_->model();
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
        entries_->setEntries(std::move(entries));
        errorCode_ = 0;
        return true;
    } catch (const std::exception& error) {
        std::cerr << "saldo: " << error.what() << '\n';
    }
    errorCode_ = kFileErrorCode;
    return false;
}

bool Document::readEntries(const QString& path, std::size_t* hash)
{
    try {
        EinnahmeList entries = LedgerFile::read(QFile::encodeName(path).toStdString(), {}, [&](std::string_view bytes) {
            if (hash)
                *hash = qHash(QByteArrayView(bytes.data(), static_cast<qsizetype>(bytes.size())));
        });
        entries_->setEntries(std::move(entries));
        errorCode_ = 0;
        readFailure_.clear();
        return true;
    } catch (const LedgerFileError& error) {
        std::cerr << "saldo: " << error.what() << '\n';
        readFailure_ = LedgerFileErrorText::reason(error);
    } catch (const std::bad_alloc&) {
        std::cerr << "saldo: " << PathText::oneLine(QFile::encodeName(path).toStdString()) << ": out of memory\n";
        readFailure_ = QStringLiteral("zu gross fuer den Arbeitsspeicher");
    }
    errorCode_ = kFileErrorCode;
    return false;
}

QString Document::unreadableFileText() const
{
    return readFailure_.isEmpty() ? unreadableFileReason()
                                  : QStringLiteral("Die Datei ist keine lesbare Saldo-Datei (%1).").arg(readFailure_);
}

bool Document::readFromFile(const QString& path)
{
    std::size_t hash = 0;
    if (!readEntries(path, &hash))
        return false;
    const QString canonical = QFileInfo(path).canonicalFilePath();
    setFilePath(canonical.isEmpty() ? QFileInfo(path).absoluteFilePath() : canonical);
    noteFileContents(hash);
    return true;
}

void Document::noteFileContents(std::size_t hash)
{
    diskStamp_ = FileStamp::of(filePath_);
    diskHash_ = hash;
    declinedStamp_.reset();
}

bool Document::reloadFromFile()
{
    if (isUntitled())
        return false;
    finishBackgroundSave();
    std::size_t hash = 0;
    if (!readEntries(filePath_, &hash)) {
        // Nothing replaced: the window keeps its entries, still to be saved.
        declinedStamp_ = FileStamp::of(filePath_);
        Dialogs::instance().showError(window_.get(),
            QStringLiteral("Das Dokument „%1“ konnte nicht neu geladen werden.").arg(displayName()),
            unreadableFileText() + QStringLiteral(" Die Eintraege im Fenster bleiben erhalten."));
        return false;
    }
    noteFileContents(hash);
    // The undo history belongs to the entries that were replaced.
    clearUndoHistory();
    updateChangeCount(ChangeType::Cleared);
    return true;
}

bool Document::adoptRecoveryCopy(const QString& path, std::unique_ptr<QLockFile> lock)
{
    if (!readEntries(path, nullptr))
        return false;
    recoveryPath_ = path;
    recoveryLock_ = std::move(lock);
    changedWhenShown_ = true;
    return true;
}

void Document::takeEntriesOfInterruptedSave(EinnahmeList entries)
{
    entries_->setEntries(std::move(entries));
    changedWhenShown_ = true;
}

void Document::makeWindowControllers()
{
    if (window_)
        return;
    window_ = std::make_unique<DocumentWindow>(*this, defaults_);
    // Restored work (a recovery copy, an interrupted save) is not in the file yet.
    if (changedWhenShown_)
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

// --- verbs ---------------------------------------------------------------------

std::size_t Document::addEntry()
{
    undoStack_->push(new AddEntryCommand(*entries_));
    return einnahmen().empty() ? 0 : einnahmen().size() - 1;
}

void Document::duplicateEntry(std::size_t row)
{
    if (row < einnahmen().size())
        undoStack_->push(new DuplicateEntryCommand(*entries_, row));
}

void Document::deleteRows(std::vector<std::size_t> rows)
{
    undoStack_->push(new DeleteEntriesCommand(*entries_, std::move(rows)));
}

bool Document::pushFieldChange(const EinnahmePtr& entry, Einnahme::Stored after)
{
    if (Einnahme::sameValues(entry->stored(), after))
        return false;
    undoStack_->push(new ChangeEntryCommand(*entries_, entry, entry->stored(), std::move(after)));
    return true;
}

CellEdit::Outcome Document::editCell(int row, EntryColumn::Id column, const CellEdit::Value& value)
{
    if (row < 0 || static_cast<std::size_t>(row) >= einnahmen().size())
        return CellEdit::Outcome::Dropped;
    const EinnahmePtr entry = einnahmen()[static_cast<std::size_t>(row)];
    if (const auto* text = std::get_if<CellEdit::Text>(&value); text && EntryColumn::isTextField(column))
        diagnosticLine(CellEdit::diagnosticText(row, column, text->text));

    Einnahme edited(entry->stored());
    const CellEdit::Outcome outcome = CellEdit::apply(edited, column, value);
    if (outcome == CellEdit::Outcome::Refused)
        playSound("Basso");
    if (outcome == CellEdit::Outcome::Refused || outcome == CellEdit::Outcome::Dropped)
        return outcome;
    pushFieldChange(entry, edited.stored());
    emit cellEditCompleted(row);
    return outcome;
}

FormEdit::Result Document::editForm(const EinnahmePtr& entry, const FormEdit::Texts& texts)
{
    if (!entry)
        return {};
    Einnahme edited(entry->stored());
    const FormEdit::Result result = FormEdit::apply(edited, texts);
    if (result.taken)
        pushFieldChange(entry, edited.stored());
    return result;
}

bool Document::editEntry(const EinnahmePtr& entry, const std::function<void(Einnahme&)>& change)
{
    if (!entry)
        return false;
    Einnahme edited(entry->stored());
    change(edited);
    return pushFieldChange(entry, edited.stored());
}

void Document::replaceEntry(const EinnahmePtr& source, EinnahmePtr replacement)
{
    if (source && replacement && source != replacement)
        undoStack_->push(new ReplaceEntryCommand(*entries_, source, std::move(replacement)));
}

void Document::appendSeries(std::size_t templateRow, EinnahmeList copies)
{
    if (templateRow < einnahmen().size() && !copies.empty())
        undoStack_->push(new AppendSeriesCommand(*entries_, templateRow, std::move(copies)));
}

void Document::appendStatementEntries(EinnahmeList entries)
{
    if (!entries.empty())
        undoStack_->push(new AppendEntriesCommand(*entries_, std::move(entries), QStringLiteral("Kontoauszug")));
}

void Document::replaceAllEntries(EinnahmeList entries)
{
    quietStep_ = true;
    undoStack_->push(new LoadEntriesCommand(*entries_, std::move(entries)));
    quietStep_ = false;
}

EinnahmeList Document::entriesWithKategorie(const std::string& kategorie) const
{
    return CategoryRename::entriesCarrying(backupEinnahmen(), kategorie);
}

std::size_t Document::renameKategorie(const std::string& from, const std::string& to)
{
    EinnahmeList renamed = entriesWithKategorie(from);
    const std::size_t count = renamed.size();
    if (count > 0)
        undoStack_->push(new RenameKategorieCommand(*entries_, std::move(renamed), to));
    return count;
}

void Document::noteChangeOutsideVerbs()
{
    updateChangeCount(ChangeType::Done);
}

SnapshotGate& Document::summaryGate() const
{
    return entries_->summaryGate();
}

void Document::changeInPlace(Einnahme& entry, const std::function<void(Einnahme&)>& change)
{
    entries_->changeEntry(entry, change);
}

void Document::clearUndoHistory()
{
    quietStep_ = true;
    undoStack_->clear();
    quietStep_ = false;
}

void Document::applySearch(const SearchOutcome& outcome)
{
    entries_->applySearch(outcome);
}

void Document::sortEinnahmen(std::optional<std::string_view> key, bool ascending)
{
    entries_->sortEinnahmen(key, ascending);
}

void Document::reportSaveFailure(const QString& path, const QString& reason)
{
    std::cerr << "saldo: " << PathText::oneLine(path.toStdString()) << ": " << reason.toStdString() << '\n';
    if (saveFailureShown_)
        return;
    saveFailureShown_ = true;
    Dialogs::instance().showError(window_.get(),
        QStringLiteral("Das Dokument „%1“ konnte nicht gesichert werden.").arg(QFileInfo(path).fileName()),
        QStringLiteral("%1\nDie Aenderungen bleiben im Fenster erhalten. Saldo versucht alle paar Sekunden, "
                       "erneut zu sichern, und meldet sich, sobald es wieder scheitert, nachdem es einmal "
                       "gelungen ist.")
            .arg(reason));
}

bool Document::saveTo(const QString& path)
{
    // One save by hand at a time.
    if (waitingForSave_)
        return false;
    autosaveTimer_.stop();
    if (saving_) {
        waitWithWindowPainting();
        finishBackgroundSave();
    }
    startBackgroundSave(path, SaveTarget::File);
    waitWithWindowPainting();
    if (!finishBackgroundSave())
        return false;
    const QString canonical = QFileInfo(path).canonicalFilePath();
    setFilePath(canonical.isEmpty() ? path : canonical);
    dropRecoveryCopy();
    // A change that came while the save waited on a question.
    if (saveAgain_ && isDocumentEdited())
        autosaveTimer_.start();
    saveAgain_ = false;
    return true;
}

bool Document::noteSaved(const QString& path, const BackgroundSave::Outcome& outcome, long long changeCountSaved)
{
    if (outcome.encoded)
        diagnosticLine("data saved");
    if (!outcome.written) {
        errorCode_ = kFileErrorCode;
        reportSaveFailure(path, outcome.reason);
        // Try again at the next autosave, whether or not anything changes.
        if (isDocumentEdited())
            autosaveTimer_.start();
        return false;
    }
    saveFailureShown_ = false;
    // What saves killed before left beside the file is older than it now.
    InterruptedSaves::sweep(QFile::encodeName(path).toStdString(), false);
    diskStamp_ = outcome.stamp;
    diskHash_ = outcome.hash;
    declinedStamp_.reset();
    // A change made while the entries were written is saved by the next save.
    if (changeCount_ == changeCountSaved)
        updateChangeCount(ChangeType::Cleared);
    return true;
}

void Document::startBackgroundSave(const QString& path, SaveTarget target)
{
    savingTarget_ = target;
    savingPath_ = path;
    changeCountAtSave_ = changeCount_;
    // The stamp the file has now, while the snapshot is taken: the worker
    // renames over the file only if it still has it.
    // (A new name chosen in the save panel is the user's own decision.)
    std::optional<FileStamp> expected;
    if (target == SaveTarget::File && path == filePath_)
        expected = FileStamp::of(path);
    saving_ = std::make_unique<BackgroundSave>(backupEinnahmen(), entries_->saveGate(), path, expected);
    const unsigned number = ++saveNumber_;
    connect(saving_.get(), &BackgroundSave::finished, this, [this, number] {
        // A save by hand takes its outcome itself.
        if (number != saveNumber_ || !saving_ || waitingForSave_)
            return;
        finishBackgroundSave();
        if (saveAgain_) {
            saveAgain_ = false;
            autosave();
        }
    });
}

void Document::waitWithWindowPainting()
{
    if (!saving_ || saving_->isDone())
        return;
    waitingForSave_ = true;
    QApplication::setOverrideCursor(Qt::BusyCursor);
    if (window_)
        window_->statusBar()->showMessage(QStringLiteral("Sichern…"));
    QEventLoop loop;
    // (A window closed meanwhile by the window manager may take the save in.)
    while (saving_ && !saving_->isDone())
        loop.processEvents(QEventLoop::ExcludeUserInputEvents | QEventLoop::WaitForMoreEvents);
    if (window_)
        window_->statusBar()->clearMessage();
    QApplication::restoreOverrideCursor();
    waitingForSave_ = false;
}

bool Document::isSaving() const
{
    return saving_ != nullptr;
}

void Document::waitForBackgroundSave() const
{
    if (saving_)
        saving_->waitForWorker();
}

bool Document::finishBackgroundSave()
{
    if (!saving_)
        return false;
    BackgroundSave::Outcome outcome = saving_->wait();
    saving_.reset();
    if (savingTarget_ == SaveTarget::Recovery) {
        if (!outcome.written)
            std::cerr << "saldo: " << PathText::oneLine(savingPath_.toStdString()) << ": "
                      << outcome.reason.toStdString() << '\n';
        return outcome.written;
    }
    if (outcome.kept)
        return resolveOutsideChange(std::move(outcome));
    return noteSaved(savingPath_, outcome, changeCountAtSave_);
}

bool Document::resolveOutsideChange(BackgroundSave::Outcome outcome)
{
    const FileStamp now = FileStamp::of(savingPath_);
    // Removed meanwhile, or written again with the same bytes: nothing of
    // the other program's is lost. Else the user decides, unless the program
    // is ending: then the kept bytes go, and the changes into a recovery copy.
    if (quitting_ || !(!now.exists || holdsKnownBytes(now) || askOverwrite(now))) {
        diagnosticLine("data saved");
        return false;
    }
    BackgroundSave::replaceWithKept(outcome);
    return noteSaved(savingPath_, outcome, changeCountAtSave_);
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
    return holdsKnownBytes(now) || askOverwrite(now);
}

bool Document::holdsKnownBytes(const FileStamp& now)
{
    // Touched, copied back or restored from a backup: same bytes, nothing lost.
    QFile file(filePath_);
    if (!file.open(QIODevice::ReadOnly) || qHash(file.readAll()) != diskHash_)
        return false;
    diskStamp_ = now;
    return true;
}

bool Document::askOverwrite(const FileStamp& now)
{
    if (quitting_)
        return false;
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
    // A new ledger is proposed in the folder of the last one, a named one under its own name.
    const DocumentController* controller = DocumentController::sharedDocumentController();
    const QDir folder(controller ? controller->ledgerFolder() : QDir::homePath());
    const QString suggested = isUntitled() ? folder.filePath(displayName() + QStringLiteral(".saldo")) : filePath_;
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
    // One save at a time: a change made meanwhile is saved right after it.
    if (saving_) {
        saveAgain_ = true;
        return;
    }
    // The entries are coded and written on a worker thread; the window goes
    // on meanwhile (see BackgroundSave).
    if (isUntitled()) {
        startRecoveryCopy();
        return;
    }
    if (mayOverwriteFile(SaveKind::Automatic))
        startBackgroundSave(filePath_, SaveTarget::File);
}

bool Document::startRecoveryCopy()
{
    if (recoveryPath_.isEmpty())
        recoveryPath_ = AutosaveStore::newFilePath(&recoveryLock_);
    if (recoveryPath_.isEmpty())
        return false;
    startBackgroundSave(recoveryPath_, SaveTarget::Recovery);
    return true;
}

bool Document::keepChangesWithoutAsking()
{
    quitting_ = true;
    autosaveTimer_.stop();
    finishBackgroundSave();
    if (!isDocumentEdited())
        return true;
    if (!isUntitled()) {
        const FileStamp now = FileStamp::of(filePath_);
        if (!now.exists || now == diskStamp_ || holdsKnownBytes(now)) {
            startBackgroundSave(filePath_, SaveTarget::File);
            if (finishBackgroundSave() && !isDocumentEdited())
                return true;
        }
    }
    return startRecoveryCopy() && finishBackgroundSave();
}

void Document::dropRecoveryCopy()
{
    if (recoveryPath_.isEmpty())
        return;
    finishBackgroundSave();
    AutosaveStore::remove(recoveryPath_);
    recoveryLock_.reset();
    recoveryPath_.clear();
}

bool Document::canClose()
{
    autosaveTimer_.stop();
    waitWithWindowPainting();
    finishBackgroundSave();
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
