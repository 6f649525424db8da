#include "model/EntryArena.h"

#include "model/HugePageMemory.h"
#include "model/TextPool.h"

#include <atomic>
#include <new>

namespace saldo {

namespace {
std::atomic<std::size_t> mapped { 0 };
} // namespace

// The head of a chunk, at its start. `holds` counts the entries alive in it,
// plus one while its arena still allocates from it. Every chunk holds the
// arena's text pool, which its entries may borrow from.
struct EntryArena::Chunk {
    std::atomic<std::size_t> holds { 1 };
    std::size_t size = 0; // bytes mapped, this head included
    std::size_t used = 0;
    bool scanned = false;
    TextPool* texts = nullptr;

    void release()
    {
        if (holds.fetch_sub(1, std::memory_order_acq_rel) == 1) {
            const std::size_t bytes = size;
            const bool wasScanned = scanned;
            TextPool* pool = texts;
            this->~Chunk();
            HugePageMemory::release(this, bytes, wasScanned);
            mapped.fetch_sub(bytes, std::memory_order_relaxed);
            pool->release();
        }
    }
};

namespace {

constexpr std::size_t kAlign = 8;
constexpr std::size_t kHead = (sizeof(EntryArena::Chunk) + kAlign - 1) / kAlign * kAlign;
constexpr std::size_t kLargestChunk = 32 << 20;
// The block of one entry: the entry, its reference counts and this allocator.
constexpr std::size_t kBlockRoom = 256;
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
        static_assert(alignof(T) <= kAlign);
        const std::size_t bytes = (n * sizeof(T) + kAlign - 1) / kAlign * kAlign;
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
    return mapped.load(std::memory_order_relaxed) + TextPool::mappedBytes();
}

EntryArena::~EntryArena()
{
    if (chunk_)
        chunk_->release();
    if (texts_)
        texts_->release();
}

void EntryArena::expect(std::size_t entries)
{
    // Entries take about a hundred bytes each.
    if (entries >= (HugePageMemory::kHugePage >> 7)) {
        large_ = true;
        if (nextSize_ < (std::size_t(4) << 20))
            nextSize_ = std::size_t(4) << 20;
    }
}

TextPool& EntryArena::texts()
{
    if (!texts_)
        texts_ = TextPool::create(large_);
    return *texts_;
}

void EntryArena::startChunk()
{
    const std::size_t size = nextSize_;
    const bool huge = large_ || size >= (std::size_t(4) << 20);
    HugePageMemory memory(size, huge ? HugePageMemory::Backing::Huge : HugePageMemory::Backing::Lazy);
    // Entries' owned texts and split-booking lists are heap blocks reached only from here.
    memory.showToLeakChecker();
    TextPool& pool = texts();
    pool.retain();
    if (chunk_)
        chunk_->release();
    mapped.fetch_add(memory.size(), std::memory_order_relaxed);
    chunk_ = new (memory.data()) Chunk;
    chunk_->size = memory.size();
    chunk_->scanned = true;
    chunk_->texts = &pool;
    chunk_->used = kHead;
    memory.detach();
    if (nextSize_ < kLargestChunk)
        nextSize_ *= 2;
}

EinnahmePtr EntryArena::make(Einnahme::Stored&& stored)
{
    if (!chunk_ || chunk_->size - chunk_->used < kBlockRoom)
        startChunk();
    return std::allocate_shared<Einnahme>(ChunkAllocator<Einnahme>(chunk_), std::move(stored));
}

EinnahmePtr EntryArena::make(Einnahme::Fields&& fields)
{
    if (!chunk_ || chunk_->size - chunk_->used < kBlockRoom)
        startChunk();
    return std::allocate_shared<Einnahme>(ChunkAllocator<Einnahme>(chunk_), std::move(fields));
}

} // namespace saldo
