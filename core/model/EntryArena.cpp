#include "model/EntryArena.h"

#include <new>
#include <sys/mman.h>

// Under AddressSanitizer the leak checker scans only the heap, stacks and
// globals; chunks are mapped by hand, so they are shown to it as roots
// (entries' texts are reachable only through them).
#if defined(__SANITIZE_ADDRESS__)
#define SALDO_SCAN_CHUNKS 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define SALDO_SCAN_CHUNKS 1
#endif
#endif
#ifdef SALDO_SCAN_CHUNKS
#include <sanitizer/lsan_interface.h>
#endif

namespace saldo {

namespace {
std::atomic<std::size_t> mapped { 0 };
} // namespace

// The head of a chunk, at its start. `holds` counts the entries alive in it,
// plus one while its arena still allocates from it.
struct EntryArena::Chunk {
    std::atomic<std::size_t> holds { 1 };
    std::size_t size = 0; // bytes mapped, this head included
    std::size_t used = 0;

    void release()
    {
        if (holds.fetch_sub(1, std::memory_order_acq_rel) == 1) {
            const std::size_t bytes = size;
            this->~Chunk();
#ifdef SALDO_SCAN_CHUNKS
            __lsan_unregister_root_region(this, bytes);
#endif
            ::munmap(this, bytes);
            mapped.fetch_sub(bytes, std::memory_order_relaxed);
        }
    }
};

namespace {

constexpr std::size_t kAlign = alignof(std::max_align_t);
constexpr std::size_t kHead = (sizeof(EntryArena::Chunk) + kAlign - 1) / kAlign * kAlign;
constexpr std::size_t kLargestChunk = 32 << 20;
// The block of one entry: the entry, its reference counts and this allocator.
constexpr std::size_t kBlockRoom = 512;
static_assert(sizeof(Einnahme) + 64 <= kBlockRoom);

// Hands out the one block of a shared entry from the chunk the arena made
// sure has room for it, and releases the chunk's hold when the block goes.
template <class T>
struct ChunkAllocator {
    using value_type = T;

    explicit ChunkAllocator(EntryArena::Chunk* c)
        : chunk(c)
    {
    }
    template <class U>
    ChunkAllocator(const ChunkAllocator<U>& other)
        : chunk(other.chunk)
    {
    }

    T* allocate(std::size_t n)
    {
        const std::size_t bytes = (n * sizeof(T) + kAlign - 1) / kAlign * kAlign;
        static_assert(alignof(T) <= kAlign);
        if (bytes > chunk->size - chunk->used)
            throw std::bad_alloc();
        T* p = reinterpret_cast<T*>(reinterpret_cast<char*>(chunk) + chunk->used);
        chunk->used += bytes;
        chunk->holds.fetch_add(1, std::memory_order_relaxed);
        return p;
    }
    void deallocate(T*, std::size_t) { chunk->release(); }

    template <class U>
    bool operator==(const ChunkAllocator<U>& other) const
    {
        return chunk == other.chunk;
    }

    EntryArena::Chunk* chunk;
};

} // namespace

std::size_t EntryArena::mappedBytes()
{
    return mapped.load(std::memory_order_relaxed);
}

EntryArena::~EntryArena()
{
    if (chunk_)
        chunk_->release();
}

void EntryArena::startChunk()
{
    const std::size_t size = nextSize_;
    void* p = ::mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (p == MAP_FAILED)
        throw std::bad_alloc();
    if (size >= (4u << 20))
        ::madvise(p, size, MADV_HUGEPAGE); // advice only: without huge pages it works the same
#ifdef SALDO_SCAN_CHUNKS
    __lsan_register_root_region(p, size);
#endif
    if (chunk_)
        chunk_->release();
    mapped.fetch_add(size, std::memory_order_relaxed);
    chunk_ = new (p) Chunk;
    chunk_->size = size;
    chunk_->used = kHead;
    if (nextSize_ < kLargestChunk)
        nextSize_ *= 2;
}

EinnahmePtr EntryArena::make(Einnahme::Stored&& stored)
{
    if (!chunk_ || chunk_->size - chunk_->used < kBlockRoom)
        startChunk();
    return std::allocate_shared<Einnahme>(ChunkAllocator<Einnahme>(chunk_), std::move(stored));
}

} // namespace saldo
