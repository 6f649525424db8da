#pragma once

#include <cstddef>

namespace saldo {

// One anonymous, zero-filled mapping for the large working memory of reading
// a ledger (the file's bytes, the entries, their texts, the per-object tables).
// On this kind of machine faulting in fresh memory 4 KiB at a time costs more
// than anything done with it afterwards: each fault leaves the virtual machine.
// So a large mapping starts on a 2 MiB boundary and is advised to be backed by
// huge pages (one fault per 2 MiB instead of 512), and memory that will be
// written in full anyway is faulted in by the kernel in one call. Both are only
// advice: without them everything works the same, only slower.
class HugePageMemory {
public:
    static constexpr std::size_t kHugePage = std::size_t(2) << 20;

    // How the mapping is touched, and so how it is backed.
    enum class Backing {
        Lazy, // 4 KiB pages faulted in as they are touched (memory that may stay mostly unused)
        Huge, // huge pages from 2 MiB on, else as Lazy
        Filled, // huge pages from 2 MiB on, else 4 KiB pages faulted in at once: memory written in full
    };

    HugePageMemory() = default;
    // Maps `bytes` zeroed bytes; throws std::bad_alloc when the system refuses.
    HugePageMemory(std::size_t bytes, Backing backing);
    ~HugePageMemory() { unmap(); }
    HugePageMemory(HugePageMemory&& other) noexcept;
    HugePageMemory& operator=(HugePageMemory&& other) noexcept;
    HugePageMemory(const HugePageMemory&) = delete;
    HugePageMemory& operator=(const HugePageMemory&) = delete;

    void* data() const { return data_; }
    std::size_t size() const { return size_; }

    // Under AddressSanitizer, has the leak checker scan this memory for
    // pointers to heap blocks (it scans only the heap, stacks and globals).
    void showToLeakChecker();

    // Gives up the mapping without unmapping it; the caller unmaps it later
    // with release(), telling whether it was shown to the leak checker.
    void* detach();
    static void release(void* data, std::size_t bytes, bool scanned = false);

    // Prepares memory fresh from the system that is about to be written in
    // full (a large vector's storage before it is filled): its whole 2 MiB
    // pages are advised to be huge, the rest is faulted in at once.
    static void prepareToFill(void* data, std::size_t bytes);

private:
    void unmap();

    void* data_ = nullptr;
    std::size_t size_ = 0;
    bool scanned_ = false;
};

} // namespace saldo
