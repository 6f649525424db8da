#pragma once

#include "model/Einnahme.h"
#include "model/SnapshotGate.h"

#include <QObject>

#include <functional>
#include <future>

namespace saldo::gui {

class Document;

// Evaluates a document's complete list (every entry in the ledger's own
// order, whatever the table shows) on a worker thread, first when asked and
// again after every change of the ledger, so that a window over a tax
// evaluation follows the ledger while its computation stays off the main
// thread. The worker reads a snapshot of the list through a gate of its own,
// added to the document's entries: the main thread goes on changing entries
// meanwhile. At most one evaluation runs; changes during it ask for one more
// when it is done.
//
// makeJob() runs on the main thread as an evaluation starts and captures what
// the evaluation depends on (a period, a setting) and where it puts its
// result; the job it returns runs on the worker. evaluated() follows on the
// main thread, after which the result may be read.
class LedgerWorker : public QObject {
    Q_OBJECT
public:
    using Job = std::function<void(const EinnahmeList& snapshot, const SnapshotGate& gate)>;
    using MakeJob = std::function<Job()>;

    LedgerWorker(Document& document, MakeJob makeJob, QObject* parent = nullptr);
    ~LedgerWorker() override;

    // Asks for an evaluation: now, or after the one under way.
    void request();
    // Waits until no evaluation runs or is asked for, delivering each one.
    void finish();
    // Waits until the evaluation under way is done without delivering it:
    // evaluated() follows from the event loop (or finish()).
    void waitForJob() const;
    bool isRunning() const { return running_.valid(); }

    // The entries the last delivered evaluation read, in the ledger's order:
    // the rows of its results point into it, and it keeps them alive.
    const EinnahmeList& snapshot() const { return delivered_; }

signals:
    // An evaluation started; evaluated() follows when it is done.
    void started();
    void evaluated();

private:
    void start();
    void deliver();

    Document& document_;
    MakeJob makeJob_;
    SnapshotGate gate_;
    std::future<void> running_;
    EinnahmeList reading_;
    EinnahmeList delivered_;
    bool again_ = false;
};

} // namespace saldo::gui
