#pragma once

#include "app/FileStamp.h"
#include "model/Einnahme.h"
#include "model/SnapshotGate.h"

#include <QObject>
#include <QString>

#include <cstddef>
#include <future>

namespace saldo::gui {

// Writing a document's entries into a file: coded as a ledger, written
// atomically, and what became of it (the hash of the bytes and the file's
// stamp afterwards, for the outside-change check, or the reason in German).
// writeNow() does it at once; a BackgroundSave does it on a worker thread over
// a snapshot of the list, reading entries that change meanwhile through the
// gate (open from its construction until the save is finished), and signals
// finished() on the main thread when it is done. Destroying one waits for it.
class BackgroundSave : public QObject {
    Q_OBJECT
public:
    struct Outcome {
        bool encoded = false;  // the entries could be coded ("data saved")
        bool written = false;
        std::size_t hash = 0;  // of the bytes written
        FileStamp stamp;       // of the file right after the write
        QString reason;        // why not, in the program's words
    };

    static Outcome writeNow(const EinnahmeList& entries, const QString& path);

    BackgroundSave(EinnahmeList snapshot, SnapshotGate& gate, const QString& path, QObject* parent = nullptr);
    ~BackgroundSave() override;

    // Waits for the worker (at once when it is done) and answers its outcome;
    // the gate is closed then. Only once.
    Outcome wait();
    // Waits for the worker only; wait() still answers the outcome.
    void waitForWorker() const { result_.wait(); }

signals:
    void finished();

private:
    SnapshotGate& gate_;
    std::future<Outcome> result_;
    bool waited_ = false;
};

} // namespace saldo::gui
