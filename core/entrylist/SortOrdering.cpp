#include "entrylist/SortOrdering.h"

#include "entrylist/NfcText.h"
#include "model/UnicodeText.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <cstdint>
#include <limits>

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

// A precomputed number key beside the entry's position in the list.
template <typename K> struct Keyed {
    K key;
    std::uint32_t index;
};

template <typename K> struct KeyedLess {
    bool operator()(const Keyed<K>& a, const Keyed<K>& b) const { return numberLess(a.key, b.key); }
};

template <typename K, typename MakeKey> std::vector<Keyed<K>> keysOf(const EinnahmeList& list, MakeKey makeKey)
{
    std::vector<Keyed<K>> items;
    items.reserve(list.size());
    for (std::size_t i = 0; i < list.size(); ++i)
        items.push_back({ makeKey(*list[i]), static_cast<std::uint32_t>(i) });
    return items;
}

// A precomputed text key: the NFC form of the text in a shared buffer, and its
// first sixteen bytes also as two big-endian numbers (zero padded), so that
// most comparisons decide without reaching the buffer. The default ordering
// also reads the gross amount.
struct TextItem {
    std::uint64_t head;
    std::uint64_t next;
    const char* data;
    std::uint32_t size;
    float brutto;
    std::uint32_t index;
};

// Byte order of the two texts: -1, 0, 1.
int compareText(const TextItem& a, const TextItem& b)
{
    if (a.head != b.head)
        return a.head < b.head ? -1 : 1;
    if (a.next != b.next)
        return a.next < b.next ? -1 : 1;
    // The first sixteen bytes agree, counting a missing byte as zero: a text
    // of at most sixteen bytes is then the start of the other one.
    if (a.size > 16 && b.size > 16) {
        const int rest = std::string_view(a.data + 16, a.size - 16).compare({ b.data + 16, b.size - 16 });
        return rest < 0 ? -1 : (rest > 0 ? 1 : 0);
    }
    return a.size < b.size ? -1 : (a.size > b.size ? 1 : 0);
}

struct TextLess {
    bool operator()(const TextItem& a, const TextItem& b) const { return compareText(a, b) < 0; }
};

struct DefaultLess {
    bool operator()(const TextItem& a, const TextItem& b) const
    {
        const int byArt = compareText(a, b);
        if (byArt != 0)
            return byArt < 0;
        return numberLess(a.brutto, b.brutto);
    }
};

std::uint64_t bigEndianWord(const char* data, std::size_t size, std::size_t from)
{
    std::uint64_t word = 0;
    for (std::size_t i = from; i < from + 8; ++i)
        word = (word << 8) | (i < size ? static_cast<unsigned char>(data[i]) : 0u);
    return word;
}

// The text keys of a list, in list order. The byte order of NFC forms is the
// order of UnicodeText::compare (which compares NFC forms, or the bytes of a
// text that is not UTF-8, as UnicodeText::nfc gives them).
template <typename TextOf> std::vector<TextItem> textItems(const EinnahmeList& list, std::string& buffer, TextOf textOf)
{
    std::vector<TextItem> items(list.size());
    std::vector<std::size_t> offsets(list.size());
    for (std::size_t i = 0; i < list.size(); ++i) {
        const std::string& text = textOf(*list[i]);
        offsets[i] = buffer.size();
        if (NfcText::isCertainlyNfc(text))
            buffer += text;
        else
            buffer += UnicodeText::nfc(text);
        assert(buffer.size() - offsets[i] <= std::numeric_limits<std::uint32_t>::max());
        items[i].size = static_cast<std::uint32_t>(buffer.size() - offsets[i]);
        items[i].brutto = list[i]->brutto();
        items[i].index = static_cast<std::uint32_t>(i);
    }
    for (std::size_t i = 0; i < list.size(); ++i) {
        TextItem& item = items[i];
        item.data = buffer.data() + offsets[i];
        item.head = bigEndianWord(item.data, item.size, 0);
        item.next = bigEndianWord(item.data, item.size, 8);
    }
    return items;
}

// Sorts the keys, then puts the entries in their order.
template <typename Item, typename Less>
void sortItems(EinnahmeList& list, std::vector<Item>& items, bool ascending, Less less)
{
    if (ascending)
        std::sort(items.begin(), items.end(), less);
    else
        std::sort(items.begin(), items.end(), [&](const Item& a, const Item& b) { return less(b, a); });
    EinnahmeList sorted;
    sorted.reserve(list.size());
    for (const auto& item : items)
        sorted.push_back(std::move(list[item.index]));
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
        std::string buffer;
        auto items = textItems(list, buffer, [&](const Einnahme& e) -> const std::string& { return textOf(e, key); });
        sortItems(list, items, ascending, TextLess());
        return;
    }
    if (isFloat(key)) {
        // The net amount is the same single-precision value however often it
        // is computed, so computing it once per entry orders as computing it
        // in each comparison.
        auto items = keysOf<float>(list, [&](const Einnahme& e) { return floatOf(e, key); });
        sortItems(list, items, ascending, KeyedLess<float>());
        return;
    }
    if (key == Key::Datum) {
        auto items = keysOf<double>(list, [](const Einnahme& e) { return e.datum(); });
        sortItems(list, items, ascending, KeyedLess<double>());
        return;
    }
    std::string buffer;
    auto items = textItems(list, buffer, [](const Einnahme& e) -> const std::string& { return e.art(); });
    sortItems(list, items, true, DefaultLess());
}

}  // namespace saldo
