#pragma once

#include "app/FileStamp.h"
#include "model/Einnahme.h"
#include "platform/UserDefaults.h"

#include <QObject>
#include <QString>
#include <QTimer>

#include <memory>
#include <optional>

class QByteArray;
class QLockFile;
class QUndoStack;

namespace saldo::gui {

class DocumentWindow;
class ViewController;

// One ledger file and its window. Reads the file into an entry snapshot, makes
// the window and hands the entries to its entry list, keeps the change count
// and the undo stack, and saves the entry list's complete list back into the
// file: by itself a few seconds after the last change, on closing and on
// request. Saving is atomic; a failed save is reported once, leaves the old file
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

    // Decodes a ledger file into the entry snapshot. On failure the snapshot
    // stays as it was, errorCode() is kFileErrorCode and the decoder's own
    // reason goes to standard error only.
    bool readFromData(const QByteArray& data);
    // Reads the file and, on success, makes it the document's file.
    bool readFromFile(const QString& path);
    int errorCode() const { return errorCode_; }

    // The entries read from the file; nothing for a new document.
    const std::optional<EinnahmeList>& einnahmen() const { return einnahmen_; }

    // Makes the window (once) and hands the entries to its entry list.
    void makeWindowControllers();
    void showWindows();
    DocumentWindow* windowController() const { return window_.get(); }
    ViewController* entryList() const;

    // The file's bytes: the entry list's complete list, encoded. Writes
    // "data saved" on success; nothing without a window or when encoding fails.
    std::optional<QByteArray> dataOfType();

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

    // Reads the document's file again into the window: the entry list gets the
    // file's entries, the undo history is dropped, the document is unchanged.
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
    void writeRecoveryCopy();
    void dropRecoveryCopy();
    bool writeFile(const QString& path, const QByteArray& data, QString* reason);
    void reportSaveFailure(const QString& path, const QString& reason);

    UserDefaults& defaults_;
    QString filePath_;
    std::optional<EinnahmeList> einnahmen_;
    std::unique_ptr<DocumentWindow> window_;
    QUndoStack* undoStack_ = nullptr;
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
};

} // namespace saldo::gui
