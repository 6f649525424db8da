#include "model/SnapshotGate.h"

namespace saldo {

void SnapshotGate::open()
{
    std::lock_guard<std::mutex> lock(mutex_);
    kept_.clear();
    open_.store(true, std::memory_order_release);
}

void SnapshotGate::close()
{
    std::lock_guard<std::mutex> lock(mutex_);
    open_.store(false, std::memory_order_release);
    kept_.clear();
}

} // namespace saldo
