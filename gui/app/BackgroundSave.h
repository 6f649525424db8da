#pragma once

#include "app/FileStamp.h"
#include "model/Einnahme.h"
#include "model/SnapshotGate.h"

#include <QObject>
#include <QString>

#include <atomic>
#include <cstddef>
#include <future>
#include <memory>
#include <optional>

namespace saldo {
class TemporaryFile;
}

namespace saldo::gui {

// Writing a document's entries into a file on a worker thread, over a
// snapshot of the list: coded as a ledger and written atomically, reading
// entries that change meanwhile through the gate (open from its construction
// until the save is finished). Given the file's stamp at the moment the
// snapshot was taken, the worker looks at the file once more just before it
// renames its bytes over it: when another program wrote the file meanwhile,
// nothing is renamed and the outcome holds the complete temporary file, for
// the main thread to ask the user about. The outcome also says what became of
// the save (the hash of the bytes and the stamp of the file written, taken
// from the written file itself, for the outside-change check; or the reason in
// German). finished() is signalled on the main thread when the worker is
// done. Destroying one waits for it and removes a temporary file nobody took.
class BackgroundSave : public QObject {
    Q_OBJECT
public:
    struct Outcome {
        bool encoded = false;  // the entries could be coded ("data saved")
        bool written = false;
        std::size_t hash = 0;  // of the bytes written
        FileStamp stamp;       // of the file written, right after the rename
        QString reason;        // why not, in the program's words
        // The file changed since the snapshot: the bytes, complete and
        // flushed, wait in this temporary file beside it.
        std::shared_ptr<TemporaryFile> kept;
    };

    // `expected`: the file's stamp when the snapshot was taken; nothing for a
    // file only this program writes (a recovery copy).
    BackgroundSave(EinnahmeList snapshot, SnapshotGate& gate, const QString& path, std::optional<FileStamp> expected,
        QObject* parent = nullptr);
    ~BackgroundSave() override;

    // True once the worker is done (finished() may still be on its way).
    bool isDone() const { return done_.load(std::memory_order_acquire); }
    // Waits for the worker (at once when it is done) and answers its outcome;
    // the gate is closed then. Only once.
    Outcome wait();
    // Waits for the worker only; wait() still answers the outcome.
    void waitForWorker() const { result_.wait(); }

    // Renames kept bytes over their file after all; false with the reason
    // when that fails.
    static bool replaceWithKept(Outcome& outcome);

signals:
    void finished();

private:
    SnapshotGate& gate_;
    std::atomic<bool> done_ { false };
    std::future<Outcome> result_;
    bool waited_ = false;
};

} // namespace saldo::gui
