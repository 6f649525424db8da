#include "evaluation/LedgerWorker.h"

#include "app/Document.h"
#include "app/DocumentEntries.h"

namespace saldo::gui {

LedgerWorker::LedgerWorker(Document& document, MakeJob makeJob, QObject* parent)
    : QObject(parent)
    , document_(document)
    , makeJob_(std::move(makeJob))
{
    document_.entries().addReaderGate(gate_);
    connect(&document_, &Document::changed, this, &LedgerWorker::request);
}

LedgerWorker::~LedgerWorker()
{
    if (running_.valid()) {
        running_.wait();
        gate_.close();
    }
    document_.entries().removeReaderGate(gate_);
}

void LedgerWorker::request()
{
    if (running_.valid())
        again_ = true;
    else
        start();
}

void LedgerWorker::start()
{
    // Main thread: the snapshot (which keeps its entries alive), the job with
    // what it depends on now, the gate opened before the worker reads.
    reading_ = document_.backupEinnahmen();
    Job job = makeJob_();
    gate_.open();
    running_ = std::async(std::launch::async, [this, job = std::move(job)] {
        job(reading_, gate_);
        QMetaObject::invokeMethod(this, &LedgerWorker::deliver, Qt::QueuedConnection);
    });
    emit started();
}

void LedgerWorker::deliver()
{
    if (!running_.valid())
        return;
    running_.get();
    gate_.close();
    delivered_ = std::move(reading_);
    reading_.clear();
    emit evaluated();
    if (std::exchange(again_, false))
        start();
}

void LedgerWorker::waitForJob() const
{
    if (running_.valid())
        running_.wait();
}

void LedgerWorker::finish()
{
    while (running_.valid()) {
        running_.wait();
        deliver();
    }
}

} // namespace saldo::gui
