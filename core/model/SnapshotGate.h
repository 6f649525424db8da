#pragma once

#include "model/Einnahme.h"

#include <atomic>
#include <memory>
#include <mutex>
#include <unordered_map>

namespace saldo {

// Lets a worker thread read the entries of a snapshot (a copy of a list,
// which keeps the entries alive) while the main thread goes on changing them.
// The reader reads in batches, each under lockBatch(), and every entry, split
// bookings included, through values(). The main thread changes an entry only
// through change(): while the gate is open, the change waits for the reader's
// current batch and first keeps the entry's values as they were when the gate
// opened (once per entry), so the reader sees exactly the snapshot's values.
// close() drops the kept values. Closed, change() only runs the change.
class SnapshotGate {
public:
    // Main thread, before the reader starts and after it finished.
    void open();
    void close();
    bool isOpen() const { return open_.load(std::memory_order_acquire); }

    // Reader: the lock of one batch, and the values of an entry under it.
    std::unique_lock<std::mutex> lockBatch() const { return std::unique_lock<std::mutex>(mutex_); }
    const Einnahme& values(const Einnahme& entry) const
    {
        if (kept_.empty())
            return entry;
        const auto it = kept_.find(&entry);
        return it == kept_.end() ? entry : *it->second;
    }

    // Main thread: changes the entry (`mutate(entry)`) as described above.
    template <typename Mutate> void change(Einnahme& entry, Mutate&& mutate)
    {
        if (!isOpen()) {
            mutate(entry);
            return;
        }
        std::lock_guard<std::mutex> lock(mutex_);
        if (!kept_.count(&entry))
            kept_.emplace(&entry, std::make_unique<Einnahme>(entry));
        mutate(entry);
    }

private:
    mutable std::mutex mutex_;
    std::atomic<bool> open_ { false };
    std::unordered_map<const Einnahme*, std::unique_ptr<Einnahme>> kept_;
};

} // namespace saldo
