#pragma once

#include <cstddef>

namespace saldo {

// One anonymous, zero-filled mapping for the large working memory of reading
// a ledger (the file's bytes, the entries, their texts, the per-object tables).
// On this kind of machine faulting in fresh memory 4 KiB at a time costs more
// than anything done with it afterwards, so a large mapping starts on a 2 MiB
// boundary and is advised to be backed by huge pages: it is touched with one
// fault per 2 MiB instead of 512. The advice is only advice: without huge pages
// everything works the same, only slower. Untouched pages cost nothing, so a
// mapping may be made larger than what is finally used.
class HugePageMemory {
public:
    // Mappings at least this large are advised to use huge pages.
    static constexpr std::size_t kHugeFrom = std::size_t(2) << 20;
    static constexpr std::size_t kHugePage = std::size_t(2) << 20;

    HugePageMemory() = default;
    // Maps `bytes` zeroed bytes; throws std::bad_alloc when the system refuses.
    // With `huge` false the mapping is left to 4 KiB pages (for memory that
    // may stay mostly untouched).
    explicit HugePageMemory(std::size_t bytes, bool huge = true);
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

    // Advises the whole 2 MiB pages inside [data, data + bytes) of memory not
    // touched yet (for example a large vector's storage before it is filled)
    // to be backed by huge pages.
    static void advise(void* data, std::size_t bytes);

private:
    void unmap();

    void* data_ = nullptr;
    std::size_t size_ = 0;
    bool scanned_ = false;
};

} // namespace saldo
