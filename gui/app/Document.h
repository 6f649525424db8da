#pragma once

#include "app/BackgroundSave.h"
#include "app/DocumentChange.h"
#include "app/FileStamp.h"
#include "entrylist/CellEdit.h"
#include "entrylist/FormEdit.h"
#include "model/Einnahme.h"
#include "platform/UserDefaults.h"

#include <QObject>
#include <QString>
#include <QTimer>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

class QByteArray;
class QLockFile;
class QUndoStack;

namespace saldo {
class SearchOutcome;
class SnapshotGate;
}

namespace saldo::gui {

class DocumentEntries;
class DocumentWindow;
class EntryTableModel;


// One ledger file: its entries (the two lists and the entry table's model
// over them), its undo history and its change count, and its window once one
// is made. A document opens, changes, saves and autosaves without any window.
// Every change of the entries is a verb below, and every verb that changes
// them is one command on the undo stack; the panes of the window are handed
// the document and hear of every change through changed(). The document saves
// its complete list back into the file: by itself a few seconds after the last
// change, on closing and on request. Saving is atomic; a failed save is reported once, leaves the old file
// as it was and the document marked changed, and is tried again at each
// autosave until it succeeds. Before it overwrites its file it checks that no
// other program changed it since it was last read or written, and asks when one
// did; a file deleted meanwhile is written again. An untitled document with
// changes is kept as a recovery copy in the autosave folder. Reading and
// writing fail with one fixed error, whatever went wrong.
class Document : public QObject {
    Q_OBJECT
public:
    enum class ChangeType { Done, Undone, Cleared };

    // The one error of a failed read or write (an unimplemented-operation status).
    static constexpr int kFileErrorCode = -4;
    static QString unreadableFileReason();

    explicit Document(UserDefaults& defaults, QObject* parent = nullptr);
    ~Document() override;

    // The file of the document; empty while untitled.
    QString filePath() const { return filePath_; }
    void setFilePath(const QString& path);
    bool isUntitled() const { return filePath_.isEmpty(); }
    // The file name, or "Unbenannt".
    QString displayName() const;

    // Decodes a ledger file and makes its entries the document's. On failure
    // the entries stay as they were, errorCode() is kFileErrorCode and the
    // decoder's own reason goes to standard error only. A new document holds
    // the starting entry "Neu" until then.
    bool readFromData(const QByteArray& data);
    // Reads the file and, on success, makes it the document's file.
    bool readFromFile(const QString& path);
    int errorCode() const { return errorCode_; }

    // The shown list (a search shows a subset, a sort an order) and the
    // complete list that is saved and printed.
    const EinnahmeList& einnahmen() const;
    const EinnahmeList& backupEinnahmen() const;
    DocumentEntries& entries() const { return *entries_; }
    // The gate through which the summary panel's worker reads the shown
    // entries while the window goes on.
    SnapshotGate& summaryGate() const;
    EntryTableModel* model() const;

    // --- verbs: each change is one command on the undo stack (push runs it) ---
    // Appends a new entry "Neu" and selects it; answers its row.
    std::size_t addEntry();
    // Puts a copy of the entry at a shown row right after it and selects it.
    void duplicateEntry(std::size_t row);
    // Deletes the entries at these shown rows (asking is the window's business).
    void deleteRows(std::vector<std::size_t> rows);
    // A table cell's edit: writes the "Row:" line of a text cell, applies the
    // cell rules to the entry at the shown row, plays "Basso" when an amount
    // is refused, and pushes "Eingabe" when a value changed.
    CellEdit::Outcome editCell(int row, EntryColumn::Id column, const CellEdit::Value& value);
    // The detail form taken over (name of at least three characters).
    FormEdit::Result editForm(const EinnahmePtr& entry, const FormEdit::Texts& texts);
    // Any other edit of one entry's fields (a pop-up, the date, a flag of the
    // form): `change` is applied to the entry's values, and an "Eingabe" step
    // is pushed when something changed. Answers whether it did.
    bool editEntry(const EinnahmePtr& entry, const std::function<void(Einnahme&)>& change);
    // The split-booking editor's write-back ("Splitbuchung").
    void replaceEntry(const EinnahmePtr& source, EinnahmePtr replacement);
    // A recurring series: appends the copies, selects them and takes the
    // template at the shown row out ("Serienbuchung").
    void appendSeries(std::size_t templateRow, EinnahmeList copies);
    // A statement's proposals taken over: appends the entries and selects
    // them ("Kontoauszug"); nothing happens for none.
    void appendStatementEntries(EinnahmeList entries);
    // An imported list replaces all entries ("Eintraege laden"), and the
    // selected row numbers stay selected. The load is one step that can be
    // undone, bringing every entry back, but it does not mark the document
    // changed: only its undo and redo do.
    void replaceAllEntries(EinnahmeList entries);
    // The entries (split bookings included) that carry this category.
    EinnahmeList entriesWithKategorie(const std::string& kategorie) const;
    // A category of the list was renamed: the entries that carry the old text
    // take the new one, as one step ("Kategorie umbenennen"). Answers how
    // many entries were renamed; none leaves no step.
    std::size_t renameKategorie(const std::string& from, const std::string& to);
    // A change the user made outside the verbs (a split booking edited in
    // place in the split-booking editor): only marks the document changed.
    void noteChangeOutsideVerbs();
    // Changes an entry the document holds (a split booking edited in place)
    // without a verb, past the workers that may be reading it meanwhile.
    void changeInPlace(Einnahme& entry, const std::function<void(Einnahme&)>& change);

    // Not changes of the ledger: a search shows a subset, a sort an order.
    void applySearch(const SearchOutcome& outcome);
    void sortEinnahmen(std::optional<std::string_view> key, bool ascending);

    // Makes the window (once).
    void makeWindowControllers();
    void showWindows();
    DocumentWindow* windowController() const { return window_.get(); }
    // The preferences the document's window reads (the category list).
    UserDefaults& defaults() const { return defaults_; }

    // True while an automatic save runs on its worker thread.
    bool isSaving() const;
    // Waits for a save under way and takes its outcome in.
    void finishBackgroundSave();
    // Waits for a save under way without taking its outcome in (benchmarks).
    void waitForBackgroundSave() const;

    // Saves into the document's file now. False for an untitled document, a
    // failed write (reported once until a save succeeds again), or a file
    // changed by another program that the user chose not to overwrite.
    bool save();
    // Saves into another file, which becomes the document's file on success.
    bool saveTo(const QString& path);
    // Asks for a file name (".saldo" is added when missing) and saves there.
    bool saveWithDialog();
    // "Sichern": in place, or through the save panel while untitled.
    bool saveDocument();

    // Change count. Done restarts the autosave delay; Cleared marks the
    // document saved.
    void updateChangeCount(ChangeType change);
    bool isDocumentEdited() const { return changeCount_ != 0; }

    QUndoStack* undoManager() const { return undoStack_; }

    // The delay between the last change and the automatic save.
    void setAutosavingDelay(double seconds);
    QTimer& autosaveTimer() { return autosaveTimer_; }

    // Reads the document's file again: its entries replace the document's,
    // the undo history is dropped, the document is unchanged.
    bool reloadFromFile();

    // Makes this untitled document the owner of a recovery copy found at
    // start-up (its lock already taken): reads it and marks the document changed
    // once its window exists.
    bool adoptRecoveryCopy(const QString& path, std::unique_ptr<QLockFile> lock);
    // The recovery copy of this untitled document; empty until first written.
    QString recoveryFilePath() const { return recoveryPath_; }

    // Decides whether the document may close: saves a changed document in
    // place, and asks (save / discard / cancel) for a changed untitled one or
    // when saving failed. False means the close is cancelled.
    bool canClose();

signals:
    void editedChanged(bool edited);
    void filePathChanged(const QString& path);
    // Before and after every change of the entries.
    void aboutToChange();
    void changed(const saldo::gui::DocumentChange& change);
    // A table cell's edit was taken (also one that stored nothing).
    void cellEditCompleted(int row);

public slots:
    // What the autosave timer runs: saves a changed named document in place, or
    // writes the recovery copy of a changed untitled one.
    void autosave();

private:
    enum class SaveKind { Explicit, Automatic };
    bool saveInPlace(SaveKind kind);
    // True when the file may be written: unchanged since we last knew it,
    // missing (then it is written again), or the user chose to overwrite it.
    bool mayOverwriteFile(SaveKind kind);
    void noteFileContents(const QByteArray& bytes);
    enum class SaveTarget { File, Recovery };
    void startBackgroundSave(const QString& path, SaveTarget target);
    // Takes a save's outcome in: "data saved", the file's stamp and hash, the
    // document saved unless it changed since `changeCountSaved`; or the
    // failure reported. Answers whether the file was written.
    bool noteSaved(const QString& path, const BackgroundSave::Outcome& outcome, long long changeCountSaved);
    void dropRecoveryCopy();
    void reportSaveFailure(const QString& path, const QString& reason);
    // Pushes an "Eingabe" step from the entry's values to `after`, unless they are the same.
    bool pushFieldChange(const EinnahmePtr& entry, Einnahme::Stored after);
    void clearUndoHistory();

    UserDefaults& defaults_;
    QString filePath_;
    DocumentEntries* entries_ = nullptr;
    std::unique_ptr<DocumentWindow> window_;
    QUndoStack* undoStack_ = nullptr;
    // True while the undo stack moves without the document changing: its
    // history cleared, or a load pushed.
    bool quietStep_ = false;
    QTimer autosaveTimer_;
    long long changeCount_ = 0;
    int errorCode_ = 0;
    bool saveFailureShown_ = false;

    // What the file held when we last read or wrote it, and the outside
    // change the user declined to overwrite (not asked again by autosave
    // until the file changes once more).
    FileStamp diskStamp_;
    std::size_t diskHash_ = 0;
    std::optional<FileStamp> declinedStamp_;
    bool asking_ = false;

    QString recoveryPath_;
    std::unique_ptr<QLockFile> recoveryLock_;

    // The automatic save under way, where it writes, and the change count it saves.
    std::unique_ptr<BackgroundSave> saving_;
    SaveTarget savingTarget_ = SaveTarget::File;
    QString savingPath_;
    long long changeCountAtSave_ = 0;
    bool saveAgain_ = false;
};

} // namespace saldo::gui
