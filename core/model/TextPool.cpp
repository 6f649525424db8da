#include "model/TextPool.h"

#include <new>

namespace saldo {

namespace {
std::atomic<std::size_t> mapped { 0 };
} // namespace

TextPool* TextPool::create(bool large)
{
    return new TextPool(large);
}

void TextPool::release()
{
    if (holders_.fetch_sub(1, std::memory_order_acq_rel) == 1)
        delete this;
}

TextPool::~TextPool()
{
    for (std::size_t i = 0; i < size_; ++i)
        blocks_[i >> kBlockShift][i & kBlockMask].~basic_string();
    for (const HugePageMemory& block : memory_)
        mapped.fetch_sub(block.size(), std::memory_order_relaxed);
}

std::string& TextPool::add()
{
    if ((size_ & kBlockMask) == 0) {
        // A small pool's first block is touched a page at a time; later blocks fill up.
        const std::size_t bytes = sizeof(std::string) << kBlockShift;
        memory_.reserve(memory_.size() + 1);
        blocks_.reserve(blocks_.size() + 1);
        memory_.emplace_back(
            bytes, large_ || !blocks_.empty() ? HugePageMemory::Backing::Huge : HugePageMemory::Backing::Lazy);
        memory_.back().showToLeakChecker(); // long texts point to heap blocks
        mapped.fetch_add(memory_.back().size(), std::memory_order_relaxed);
        blocks_.push_back(static_cast<std::string*>(memory_.back().data()));
    }
    std::string* text = new (&blocks_[size_ >> kBlockShift][size_ & kBlockMask]) std::string;
    ++size_;
    return *text;
}

std::size_t TextPool::mappedBytes()
{
    return mapped.load(std::memory_order_relaxed);
}

} // namespace saldo
