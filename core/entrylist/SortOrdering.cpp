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

template <typename K> bool keyedLess(const Keyed<K>& a, const Keyed<K>& b)
{
    return numberLess(a.key, b.key);
}

template <typename K, typename MakeKey> std::vector<Keyed<K>> keysOf(const EinnahmeList& list, MakeKey makeKey)
{
    std::vector<Keyed<K>> items;
    items.reserve(list.size());
    for (std::size_t i = 0; i < list.size(); ++i)
        items.push_back({ makeKey(*list[i]), static_cast<std::uint32_t>(i) });
    return items;
}

// A precomputed text key: the NFC form of the text in a shared buffer, and its
// first eight bytes also as a big-endian number (zero padded), so that most
// comparisons decide without reaching the buffer. The default ordering also
// reads the gross amount.
struct TextItem {
    std::uint64_t prefix;
    const char* data;
    std::size_t size;
    float brutto;
    std::uint32_t index;

    std::string_view text() const { return { data, size }; }
};

bool textLess(const TextItem& a, const TextItem& b)
{
    if (a.prefix != b.prefix)
        return a.prefix < b.prefix;
    return a.text() < b.text();
}

bool defaultLess(const TextItem& a, const TextItem& b)
{
    if (a.prefix != b.prefix)
        return a.prefix < b.prefix;
    const int byArt = a.text().compare(b.text());
    if (byArt != 0)
        return byArt < 0;
    return numberLess(a.brutto, b.brutto);
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
        items[i].size = buffer.size() - offsets[i];
        items[i].brutto = list[i]->brutto();
        items[i].index = static_cast<std::uint32_t>(i);
    }
    for (std::size_t i = 0; i < list.size(); ++i) {
        TextItem& item = items[i];
        item.data = buffer.data() + offsets[i];
        std::uint64_t prefix = 0;
        for (std::size_t b = 0; b < 8; ++b)
            prefix = (prefix << 8) | (b < item.size ? static_cast<unsigned char>(item.data[b]) : 0u);
        item.prefix = prefix;
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
        sortItems(list, items, ascending, textLess);
        return;
    }
    if (isFloat(key)) {
        // The net amount is the same single-precision value however often it
        // is computed, so computing it once per entry orders as computing it
        // in each comparison.
        auto items = keysOf<float>(list, [&](const Einnahme& e) { return floatOf(e, key); });
        sortItems(list, items, ascending, keyedLess<float>);
        return;
    }
    if (key == Key::Datum) {
        auto items = keysOf<double>(list, [](const Einnahme& e) { return e.datum(); });
        sortItems(list, items, ascending, keyedLess<double>);
        return;
    }
    std::string buffer;
    auto items = textItems(list, buffer, [](const Einnahme& e) -> const std::string& { return e.art(); });
    sortItems(list, items, true, defaultLess);
}

}  // namespace saldo
