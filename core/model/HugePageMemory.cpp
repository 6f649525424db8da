#include "model/HugePageMemory.h"

#include <cstdint>
#include <new>
#include <sys/mman.h>
#include <utility>

#if defined(__SANITIZE_ADDRESS__)
#define SALDO_LEAK_CHECKER 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define SALDO_LEAK_CHECKER 1
#endif
#endif
#ifdef SALDO_LEAK_CHECKER
#include <sanitizer/lsan_interface.h>
#endif

namespace saldo {

namespace {

#ifndef MADV_POPULATE_WRITE
#define MADV_POPULATE_WRITE 23 // Linux 5.14
#endif

// Faults in the whole pages of [data, data + bytes) in one call (where the
// kernel can; else they are faulted in when touched).
void populate(void* data, std::size_t bytes)
{
    const std::uintptr_t page = 4096;
    const auto start = reinterpret_cast<std::uintptr_t>(data);
    const std::uintptr_t first = (start + page - 1) / page * page;
    const std::uintptr_t last = (start + bytes) / page * page;
    if (last > first)
        ::madvise(reinterpret_cast<void*>(first), last - first, MADV_POPULATE_WRITE);
}

} // namespace

HugePageMemory::HugePageMemory(std::size_t bytes, Backing backing)
{
    if (bytes == 0)
        return;
    if (bytes < kHugePage || backing == Backing::Lazy) {
        void* p = ::mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        if (p == MAP_FAILED)
            throw std::bad_alloc();
        data_ = p;
        size_ = bytes;
        if (backing == Backing::Filled)
            populate(data_, size_);
        return;
    }
    // Map a huge page more than asked and trim both ends to 2 MiB boundaries.
    const std::size_t size = (bytes + kHugePage - 1) / kHugePage * kHugePage;
    if (size < bytes || size + kHugePage < size)
        throw std::bad_alloc();
    void* raw = ::mmap(nullptr, size + kHugePage, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (raw == MAP_FAILED)
        throw std::bad_alloc();
    const auto start = reinterpret_cast<std::uintptr_t>(raw);
    const std::uintptr_t aligned = (start + kHugePage - 1) / kHugePage * kHugePage;
    if (aligned > start)
        ::munmap(raw, aligned - start);
    const std::size_t after = start + size + kHugePage - (aligned + size);
    if (after > 0)
        ::munmap(reinterpret_cast<void*>(aligned + size), after);
    data_ = reinterpret_cast<void*>(aligned);
    size_ = size;
    ::madvise(data_, size_, MADV_HUGEPAGE);
}

HugePageMemory::HugePageMemory(HugePageMemory&& other) noexcept
    : data_(std::exchange(other.data_, nullptr))
    , size_(std::exchange(other.size_, 0))
    , scanned_(std::exchange(other.scanned_, false))
{
}

HugePageMemory& HugePageMemory::operator=(HugePageMemory&& other) noexcept
{
    if (this != &other) {
        unmap();
        data_ = std::exchange(other.data_, nullptr);
        size_ = std::exchange(other.size_, 0);
        scanned_ = std::exchange(other.scanned_, false);
    }
    return *this;
}

void HugePageMemory::showToLeakChecker()
{
#ifdef SALDO_LEAK_CHECKER
    if (data_ && !scanned_)
        __lsan_register_root_region(data_, size_);
#endif
    scanned_ = data_ != nullptr;
}

void* HugePageMemory::detach()
{
    size_ = 0;
    scanned_ = false;
    return std::exchange(data_, nullptr);
}

void HugePageMemory::release(void* data, std::size_t bytes, bool scanned)
{
    if (!data)
        return;
#ifdef SALDO_LEAK_CHECKER
    if (scanned)
        __lsan_unregister_root_region(data, bytes);
#else
    (void)scanned;
#endif
    ::munmap(data, bytes);
}

void HugePageMemory::unmap()
{
    release(data_, size_, scanned_);
    data_ = nullptr;
    size_ = 0;
    scanned_ = false;
}

void HugePageMemory::prepareToFill(void* data, std::size_t bytes)
{
    const auto start = reinterpret_cast<std::uintptr_t>(data);
    const std::uintptr_t first = (start + kHugePage - 1) / kHugePage * kHugePage;
    const std::uintptr_t last = (start + bytes) / kHugePage * kHugePage;
    if (last > first) {
        ::madvise(reinterpret_cast<void*>(first), last - first, MADV_HUGEPAGE);
        populate(data, first - start);
        populate(reinterpret_cast<void*>(last), start + bytes - last);
    } else {
        populate(data, bytes);
    }
}

} // namespace saldo
