#include "entrylist/SortOrdering.h"

#include "entrylist/InHalves.h"
#include "entrylist/NfcText.h"
#include "model/HugePageMemory.h"
#include "model/UnicodeText.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cassert>
#include <cmath>
#include <cstdint>
#include <deque>
#include <future>
#include <limits>
#include <utility>

namespace saldo {
namespace {

enum class Key {
    Name,
    NonEU,
    Innergem,
    Art,
    Kategorie,
    Brutto,
    Netto,
    Steuersatz,
    Datum,
    Rechnungsnummer,
    Steuernummer,
    Default
};

Key resolve(std::optional<std::string_view> key)
{
    if (!key)
        return Key::Default;
    for (std::size_t i = 0; i < SortOrdering::kColumnKeys.size(); ++i)
        if (*key == SortOrdering::kColumnKeys[i])
            return static_cast<Key>(i);
    return Key::Default;
}

bool isText(Key k)
{
    return k == Key::Name || k == Key::Art || k == Key::Kategorie || k == Key::Rechnungsnummer
        || k == Key::Steuernummer;
}

bool isFloat(Key k)
{
    return k == Key::Brutto || k == Key::Netto || k == Key::Steuersatz;
}

const std::string& textOf(const Einnahme& e, Key k)
{
    switch (k) {
    case Key::Art:
        return e.art();
    case Key::Kategorie:
        return e.kategorie();
    case Key::Rechnungsnummer:
        return e.rechnungsnummer();
    case Key::Steuernummer:
        return e.steuernummer();
    default:
        return e.name();
    }
}

float floatOf(const Einnahme& e, Key k)
{
    switch (k) {
    case Key::Netto:
        return Einnahme::nettoOf(e.brutto(), e.steuersatz());
    case Key::Steuersatz:
        return e.steuersatz();
    default:
        return e.brutto();
    }
}

bool flagOf(const Einnahme& e, Key k)
{
    return k == Key::NonEU ? e.isNonEU() : e.innergemeinschaftlicherErwerb();
}

// Numbers ascending with every NaN after every number and NaNs equivalent to
// each other: a strict weak ordering, unlike the plain `<`.
template <typename T> bool numberLess(T a, T b)
{
    if (std::isnan(a))
        return false;
    if (std::isnan(b))
        return true;
    return a < b;
}

// An allocator whose vectors leave their elements uninitialised until written
// (the key arrays of a sort are written in full by two threads, so zeroing
// them first on one thread would only cost time).
template <typename T> struct KeyAllocator : std::allocator<T> {
    template <typename U> struct rebind {
        using other = KeyAllocator<U>;
    };
    KeyAllocator() = default;
    template <typename U> KeyAllocator(const KeyAllocator<U>&) noexcept { }
    // A large array is a mapping of its own, in huge pages: fresh memory in
    // 4 KiB pages costs one page fault per 4 KiB on first write, which for
    // the tens of megabytes of a million keys is a good part of the sort.
    static bool isLarge(std::size_t n) { return n * sizeof(T) >= 2 * HugePageMemory::kHugePage; }
    T* allocate(std::size_t n)
    {
        if (!isLarge(n))
            return std::allocator<T>::allocate(n);
        HugePageMemory memory(n * sizeof(T), HugePageMemory::Backing::Huge);
        return static_cast<T*>(memory.detach());
    }
    void deallocate(T* p, std::size_t n)
    {
        if (isLarge(n))
            HugePageMemory::release(p, n * sizeof(T));
        else
            std::allocator<T>::deallocate(p, n);
    }
    template <typename U> void construct(U* p) noexcept { ::new (static_cast<void*>(p)) U; }
    template <typename U, typename... Args> void construct(U* p, Args&&... args)
    {
        ::new (static_cast<void*>(p)) U(std::forward<Args>(args)...);
    }
};
template <typename T> using KeyVector = std::vector<T, KeyAllocator<T>>;

// A number key mapped to an unsigned integer whose order is the numbers'
// order: negative numbers below positive ones, -0 beside 0, and every NaN
// equal to every other and above every number.
std::uint32_t orderedBits(float value)
{
    if (std::isnan(value))
        return std::numeric_limits<std::uint32_t>::max();
    const auto bits = std::bit_cast<std::uint32_t>(value);
    return (bits & 0x80000000u) ? ~bits : (bits | 0x80000000u);
}

std::uint64_t orderedBits(double value)
{
    if (std::isnan(value))
        return std::numeric_limits<std::uint64_t>::max();
    const auto bits = std::bit_cast<std::uint64_t>(value);
    return (bits & 0x8000000000000000u) ? ~bits : (bits | 0x8000000000000000u);
}

// An ordered key beside the entry's position in the list.
template <typename K> struct Keyed {
    K key;
    std::uint32_t index;
};

// Sorts by key with a least-significant-byte radix sort: one counting pass for
// all bytes, then one scatter pass for each byte in which the keys differ
// (the high bytes of dates and amounts are mostly the same).
template <typename K> void radixSort(KeyVector<Keyed<K>>& items)
{
    constexpr std::size_t kBytes = sizeof(K);
    std::vector<std::array<std::uint32_t, 256>> counts(kBytes);
    for (auto& c : counts)
        c.fill(0);
    for (const auto& item : items)
        for (std::size_t b = 0; b < kBytes; ++b)
            ++counts[b][(item.key >> (8 * b)) & 0xffu];
    KeyVector<Keyed<K>> scratch(items.size());
    for (std::size_t b = 0; b < kBytes; ++b) {
        auto& count = counts[b];
        if (std::find(count.begin(), count.end(), static_cast<std::uint32_t>(items.size())) != count.end())
            continue; // every key has the same byte here
        std::uint32_t offset = 0;
        for (auto& c : count) {
            const std::uint32_t n = c;
            c = offset;
            offset += n;
        }
        for (const auto& item : items)
            scratch[count[(item.key >> (8 * b)) & 0xffu]++] = item;
        items.swap(scratch);
    }
}

template <typename K, typename MakeKey> KeyVector<Keyed<K>> keysOf(const EinnahmeList& list, MakeKey makeKey)
{
    KeyVector<Keyed<K>> items(list.size());
    inHalves(list.size(), [&](std::size_t first, std::size_t last) {
        for (std::size_t i = first; i < last; ++i) {
            if (i + 16 < last)
                __builtin_prefetch(list[i + 16].get());
            items[i] = { orderedBits(makeKey(*list[i])), static_cast<std::uint32_t>(i) };
        }
    });
    return items;
}

// A precomputed text key: where the NFC form of the text is, sixteen
// of its bytes from `depth` on as two big-endian numbers (zero padded) and how
// many bytes are left from there (at most 17: "more than sixteen"), so that a
// sort of the items by these three numbers alone orders them as far as those
// sixteen bytes go. The default ordering also reads the gross amount.
struct TextItem {
    std::uint64_t head;
    std::uint64_t next;
    std::uint32_t rest;
    std::uint32_t size;
    const char* data;
    float brutto;
    std::uint32_t index;
};

std::uint64_t bigEndianWord(const char* data, std::size_t size, std::size_t from)
{
    std::uint64_t word = 0;
    for (std::size_t i = from; i < from + 8; ++i)
        word = (word << 8) | (i < size ? static_cast<unsigned char>(data[i]) : 0u);
    return word;
}

void loadWords(TextItem& item, std::size_t depth)
{
    item.head = bigEndianWord(item.data, item.size, depth);
    item.next = bigEndianWord(item.data, item.size, depth + 8);
    item.rest = item.size > depth ? std::min<std::uint32_t>(item.size - static_cast<std::uint32_t>(depth), 17) : 0;
}

bool wordsLess(const TextItem& a, const TextItem& b)
{
    if (a.head != b.head)
        return a.head < b.head;
    if (a.next != b.next)
        return a.next < b.next;
    // Equal bytes (a missing byte counting as zero): the shorter text is the
    // start of the longer one and goes first.
    return a.rest < b.rest;
}

bool wordsEqual(const TextItem& a, const TextItem& b)
{
    return a.head == b.head && a.next == b.next && a.rest == b.rest;
}

// The key digit `digit` of an item at its loaded words: the sixteen bytes in
// order, then how many bytes are left (0 to 17), in the order wordsLess reads them.
unsigned digitOf(const TextItem& item, unsigned digit)
{
    if (digit < 8)
        return static_cast<unsigned>(item.head >> (56 - 8 * digit)) & 0xffu;
    if (digit < 16)
        return static_cast<unsigned>(item.next >> (56 - 8 * (digit - 8))) & 0xffu;
    return item.rest;
}

// Below this many items a comparison sort is quicker than a radix pass.
constexpr std::ptrdiff_t kRadixFrom = 256;

// Byte order of the NFC texts, by a most-significant-digit radix sort over the
// items' words (loaded at `depth`): the items of a range are distributed by one
// key digit (through `scratch`, the same positions in a second array), and
// each bucket goes on with the next digit; texts alike in all sixteen bytes
// that go on beyond them load their next sixteen. Every byte of a text is read
// a few times at most, in order, instead of in every comparison. Runs of equal
// texts end in any order (by the gross amount for the default ordering).
// A digit all items share costs one counting pass and no move. Every bucket
// but the largest is sorted by a call of its own and the largest in this one,
// so that no call goes deeper than the logarithm of the list's length.
template <typename Tie>
void radixTexts(TextItem* first, TextItem* last, TextItem* scratch, std::size_t depth, unsigned digit, Tie tie)
{
    for (;;) {
        // Texts alike far beyond sixteen bytes (a long shared beginning) skip
        // a window the items share at once, without a pass per digit.
        if (digit == 0 && last - first > 1 && first->rest > 16
            && std::all_of(first + 1, last, [&](const TextItem& item) { return wordsEqual(item, *first); }))
            digit = 17;
        if (last - first >= kRadixFrom) {
            if (digit == 17) {
                // The sixteen bytes and what is left are the same for all: equal
                // texts, or texts that go on and are told apart further on.
                if (first->rest <= 16) {
                    std::sort(first, last, tie);
                    return;
                }
                depth += 16;
                for (TextItem* item = first; item != last; ++item) {
                    if (last - item > 8)
                        __builtin_prefetch(item[8].data + depth);
                    loadWords(*item, depth);
                }
                digit = 0;
                continue;
            }
            std::array<std::uint32_t, 257> start {};
            for (const TextItem* item = first; item != last; ++item)
                ++start[digitOf(*item, digit) + 1];
            if (std::find(start.begin(), start.end(), static_cast<std::uint32_t>(last - first)) != start.end()) {
                ++digit;
                continue;
            }
            for (std::size_t d = 1; d < start.size(); ++d)
                start[d] += start[d - 1];
            std::array<std::uint32_t, 256> next;
            std::copy(start.begin(), start.end() - 1, next.begin());
            for (const TextItem* item = first; item != last; ++item)
                scratch[next[digitOf(*item, digit)]++] = *item;
            std::copy(scratch, scratch + (last - first), first);
            std::size_t largest = 0;
            for (std::size_t d = 1; d < 256; ++d)
                if (start[d + 1] - start[d] > start[largest + 1] - start[largest])
                    largest = d;
            for (std::size_t d = 0; d < 256; ++d)
                if (d != largest && start[d + 1] - start[d] > 1)
                    radixTexts(first + start[d], first + start[d + 1], scratch + start[d], depth, digit + 1, tie);
            scratch += start[largest];
            last = first + start[largest + 1];
            first += start[largest];
            ++digit;
            continue;
        }
        if (last - first <= 1)
            return;
        // Fewer items: sorted by their words from the start of the window
        // (the digits before `digit` are the same for all of them).
        std::sort(first, last, [&](const TextItem& a, const TextItem& b) {
            if (!wordsEqual(a, b))
                return wordsLess(a, b);
            return a.rest <= 16 && tie(a, b);
        });
        // Runs of texts that go on alike are told apart by their next sixteen
        // bytes: a run that is the whole range here, in this call (so that a
        // long shared beginning costs no depth of calls), any other by a call
        // of its own.
        TextItem* whole = nullptr;
        for (TextItem* run = first; run != last;) {
            TextItem* end = run + 1;
            while (end != last && wordsEqual(*run, *end))
                ++end;
            if (end - run > 1 && run->rest > 16) {
                for (TextItem* item = run; item != end; ++item)
                    loadWords(*item, depth + 16);
                if (run == first && end == last)
                    whole = run;
                else
                    radixTexts(run, end, scratch + (run - first), depth + 16, 0, tie);
            }
            run = end;
        }
        if (!whole)
            return;
        depth += 16;
        digit = 0;
    }
}

// A whole list: for a long one the first two digits are distributed at once
// into 65,536 buckets (each half of the list counted and moved by a thread of
// its own), then each thread sorts the buckets of its half of the items.
template <typename Tie> void sortTexts(KeyVector<TextItem>& items, Tie tie)
{
    const std::size_t n = items.size();
    KeyVector<TextItem> scratch(n);
    if (n < kTwoThreadsFrom) {
        radixTexts(items.data(), items.data() + n, scratch.data(), 0, 0, tie);
        return;
    }
    constexpr std::size_t kBuckets = 1u << 16;
    auto bucketOf = [](const TextItem& item) { return static_cast<std::size_t>(item.head >> 48); };
    std::vector<std::uint32_t> counts[2] = { std::vector<std::uint32_t>(kBuckets), std::vector<std::uint32_t>(kBuckets) };
    inHalves(n, [&](std::size_t first, std::size_t last) {
        std::vector<std::uint32_t>& count = counts[first == 0 ? 0 : 1];
        for (std::size_t i = first; i < last; ++i)
            ++count[bucketOf(items[i])];
    });
    // Where each half's items of a bucket go: the first half's before the second's.
    std::vector<std::uint32_t> starts(kBuckets + 1);
    std::uint32_t offset = 0;
    for (std::size_t b = 0; b < kBuckets; ++b) {
        starts[b] = offset;
        const std::uint32_t inFirst = counts[0][b];
        counts[0][b] = offset;
        offset += inFirst;
        const std::uint32_t inSecond = counts[1][b];
        counts[1][b] = offset;
        offset += inSecond;
    }
    starts[kBuckets] = offset;
    inHalves(n, [&](std::size_t first, std::size_t last) {
        std::vector<std::uint32_t>& next = counts[first == 0 ? 0 : 1];
        for (std::size_t i = first; i < last; ++i)
            scratch[next[bucketOf(items[i])]++] = items[i];
    });
    items.swap(scratch);
    // The bucket at which the second thread's share begins: the first whose
    // items start at or after the middle of the list.
    const auto middle = std::min<std::size_t>(kBuckets,
        static_cast<std::size_t>(
            std::lower_bound(starts.begin(), starts.end(), static_cast<std::uint32_t>(n / 2)) - starts.begin()));
    auto sortBuckets = [&](std::size_t from, std::size_t to) {
        for (std::size_t b = from; b < to; ++b)
            if (starts[b + 1] - starts[b] > 1)
                radixTexts(items.data() + starts[b], items.data() + starts[b + 1], scratch.data() + starts[b], 0, 2, tie);
    };
    auto second = std::async(std::launch::async, [&] { sortBuckets(middle, kBuckets); });
    sortBuckets(0, middle);
    second.get();
}

// The text keys of a list, in list order, with their first words loaded. The
// byte order of NFC forms is the order of UnicodeText::compare (which compares
// NFC forms, or the bytes of a text that is not UTF-8, as UnicodeText::nfc
// gives them). A text that is its own NFC form is read where the entry holds
// it (entries do not change while they are sorted); only the others are
// normalised into `buffer`.
template <typename TextOf>
KeyVector<TextItem> textItems(const EinnahmeList& list, std::deque<std::string> (&buffers)[2], TextOf textOf)
{
    KeyVector<TextItem> items(list.size());
    inHalves(list.size(), [&](std::size_t first, std::size_t last) {
        std::deque<std::string>& buffer = buffers[first == 0 ? 0 : 1];
        for (std::size_t i = first; i < last; ++i) {
            // Three reads depend on each other (the entry, its text, the
            // text's bytes) and the entries lie anywhere in memory: each is
            // asked for well before it is needed.
            if (i + 24 < last)
                __builtin_prefetch(list[i + 24].get());
            if (i + 16 < last)
                __builtin_prefetch(&textOf(*list[i + 16]));
            if (i + 8 < last)
                __builtin_prefetch(textOf(*list[i + 8]).data());
            const std::string* text = &textOf(*list[i]);
            if (!NfcText::isCertainlyNfc(*text)) {
                buffer.push_back(UnicodeText::nfc(*text));
                text = &buffer.back();
            }
            assert(text->size() <= std::numeric_limits<std::uint32_t>::max());
            TextItem& item = items[i];
            item.data = text->data();
            item.size = static_cast<std::uint32_t>(text->size());
            item.brutto = list[i]->brutto();
            item.index = static_cast<std::uint32_t>(i);
            loadWords(item, 0);
        }
    });
    return items;
}

// Puts the entries in the order of the sorted items (reversed for a
// descending sort: entries that compare equal may end in any order).
template <typename Items> void reorder(EinnahmeList& list, const Items& items, bool ascending)
{
    EinnahmeList sorted(list.size());
    const std::size_t n = items.size();
    inHalves(n, [&](std::size_t first, std::size_t last) {
        for (std::size_t i = first; i < last; ++i) {
            if (i + 8 < last)
                __builtin_prefetch(&list[items[ascending ? i + 8 : n - 9 - i].index]);
            sorted[i] = std::move(list[items[ascending ? i : n - 1 - i].index]);
        }
    });
    list = std::move(sorted);
}

}  // namespace

bool SortOrdering::isColumnKey(std::string_view key)
{
    return resolve(key) != Key::Default;
}

bool SortOrdering::before(const Einnahme& a, const Einnahme& b, std::optional<std::string_view> keyName, bool ascending)
{
    const Key key = resolve(keyName);
    if (key == Key::Default) {
        const int byArt = UnicodeText::compare(a.art(), b.art());
        if (byArt != 0)
            return byArt < 0;
        return numberLess(a.brutto(), b.brutto());
    }
    const Einnahme& first = ascending ? a : b;
    const Einnahme& second = ascending ? b : a;
    if (isText(key))
        return UnicodeText::compare(textOf(first, key), textOf(second, key)) < 0;
    if (isFloat(key))
        return numberLess(floatOf(first, key), floatOf(second, key));
    if (key == Key::Datum)
        return numberLess(first.datum(), second.datum());
    return !flagOf(first, key) && flagOf(second, key);
}

void SortOrdering::sortEinnahmen(EinnahmeList& list, std::optional<std::string_view> keyName, bool ascending)
{
    if (list.size() < 2)
        return;
    assert(list.size() <= std::numeric_limits<std::uint32_t>::max());
    const Key key = resolve(keyName);

    if (key == Key::NonEU || key == Key::Innergem) {
        // Two key values: one partition pass is a complete sort.
        std::partition(list.begin(), list.end(), [&](const EinnahmePtr& e) { return flagOf(*e, key) != ascending; });
        return;
    }
    if (isText(key)) {
        std::deque<std::string> buffers[2];
        auto items = textItems(list, buffers, [&](const Einnahme& e) -> const std::string& { return textOf(e, key); });
        sortTexts(items, [](const TextItem&, const TextItem&) { return false; });
        reorder(list, items, ascending);
        return;
    }
    if (isFloat(key)) {
        // The net amount is the same single-precision value however often it
        // is computed, so computing it once per entry orders as computing it
        // in each comparison.
        auto items = keysOf<std::uint32_t>(list, [&](const Einnahme& e) { return floatOf(e, key); });
        radixSort(items);
        reorder(list, items, ascending);
        return;
    }
    if (key == Key::Datum) {
        auto items = keysOf<std::uint64_t>(list, [](const Einnahme& e) { return e.datum(); });
        radixSort(items);
        reorder(list, items, ascending);
        return;
    }
    // The default ordering: kinds ascending, then gross amounts ascending,
    // whatever the direction.
    std::deque<std::string> buffers[2];
    auto items = textItems(list, buffers, [](const Einnahme& e) -> const std::string& { return e.art(); });
    sortTexts(items, [](const TextItem& a, const TextItem& b) { return numberLess(a.brutto, b.brutto); });
    reorder(list, items, true);
}

}  // namespace saldo
