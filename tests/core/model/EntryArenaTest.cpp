// Entries made in chunks: they live like any shared entry, and every chunk
// goes back once nothing refers to anything in it.
#include "model/EntryArena.h"

#include <gtest/gtest.h>

#include <thread>

namespace saldo {
namespace {

TEST(EntryArenaTest, ChunksGoBackOnceTheirEntriesAndTheirArenaAreGone)
{
    const std::size_t before = EntryArena::mappedBytes();
    EinnahmePtr kept;
    std::weak_ptr<Einnahme> watched;
    {
        EinnahmeList entries;
        {
            EntryArena arena;
            for (int i = 0; i < 5000; ++i) {
                Einnahme::Stored stored;
                stored.name = "Eintrag " + std::to_string(i);
                stored.brutto = static_cast<float>(i);
                entries.push_back(arena.make(std::move(stored)));
            }
            EXPECT_GT(EntryArena::mappedBytes(), before + (512 << 10)) << "several chunks";
        }
        // The entries outlive their arena and are independent of each other.
        EXPECT_EQ(entries[4999]->name(), "Eintrag 4999");
        entries[3]->setBrutto(7.5f);
        EXPECT_EQ(entries[3]->brutto(), 7.5f);
        EXPECT_EQ(entries[4]->brutto(), 4.0f);

        kept = entries[10];
        watched = entries[4000];
        // Released on another thread than the one that made them.
        std::thread([list = std::move(entries)]() mutable { list.clear(); }).join();
    }
    EXPECT_GT(EntryArena::mappedBytes(), before) << "the chunks of the kept entry and of the watched one";
    const std::size_t withBoth = EntryArena::mappedBytes();
    kept.reset();
    EXPECT_LT(EntryArena::mappedBytes(), withBoth);
    EXPECT_TRUE(watched.expired());
    EXPECT_GT(EntryArena::mappedBytes(), before) << "a weak reference keeps its entry's block";
    watched.reset();
    EXPECT_EQ(EntryArena::mappedBytes(), before);
}

} // namespace
} // namespace saldo
