#pragma once

#include <cstddef>
#include <future>

namespace saldo {

// Lists from this length on are walked by two threads: the calling thread and
// one more (the machines the program runs on have two cores or more).
inline constexpr std::size_t kTwoThreadsFrom = 1u << 16;

// Runs `work(first, last)` over [0, n): in two halves on two threads for a
// long list, else at once. An exception of the second thread is rethrown here.
template <typename Work> void inHalves(std::size_t n, Work work)
{
    if (n < kTwoThreadsFrom) {
        work(std::size_t(0), n);
        return;
    }
    auto second = std::async(std::launch::async, [&] { work(n / 2, n); });
    work(std::size_t(0), n / 2);
    second.get();
}

}  // namespace saldo
