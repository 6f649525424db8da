#include "entrylist/SortOrdering.h"

#include "model/UnicodeText.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <cstdint>
#include <deque>
#include <limits>

namespace saldo {
namespace {

enum class Key { Name, NonEU, Innergem, Art, Kategorie, Brutto, Netto, Steuersatz, Datum, Rechnungsnummer, Steuernummer, Default };

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
    return k == Key::Name || k == Key::Art || k == Key::Kategorie || k == Key::Rechnungsnummer || k == Key::Steuernummer;
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
template <typename T>
bool numberLess(T a, T b)
{
    if (std::isnan(a))
        return false;
    if (std::isnan(b))
        return true;
    return a < b;
}

// A precomputed sort key beside the entry's position in the list.
template <typename K>
struct Keyed {
    K key;
    std::uint32_t index;
};

struct DefaultKey {
    std::string_view art;
    float brutto;
};

bool defaultLess(const DefaultKey& a, const DefaultKey& b)
{
    const int byArt = a.art.compare(b.art);
    if (byArt != 0)
        return byArt < 0;
    return numberLess(a.brutto, b.brutto);
}

// The NFC form of a text as a view: the text itself when it is ASCII (its own
// NFC form), else a normalised copy kept alive in `storage`. Byte order of the
// views is the order of UnicodeText::compare.
std::string_view nfcView(const std::string& text, std::deque<std::string>& storage)
{
    if (UnicodeText::isAscii(text))
        return text;
    return storage.emplace_back(UnicodeText::nfc(text));
}

template <typename K, typename Less>
void sortByKeys(EinnahmeList& list, std::vector<Keyed<K>>& items, bool ascending, Less less)
{
    if (ascending)
        std::sort(items.begin(), items.end(), [&](const Keyed<K>& a, const Keyed<K>& b) { return less(a.key, b.key); });
    else
        std::sort(items.begin(), items.end(), [&](const Keyed<K>& a, const Keyed<K>& b) { return less(b.key, a.key); });
    EinnahmeList sorted;
    sorted.reserve(list.size());
    for (const auto& item : items)
        sorted.push_back(std::move(list[item.index]));
    list = std::move(sorted);
}

template <typename K, typename MakeKey>
std::vector<Keyed<K>> keysOf(const EinnahmeList& list, MakeKey makeKey)
{
    std::vector<Keyed<K>> items;
    items.reserve(list.size());
    for (std::size_t i = 0; i < list.size(); ++i)
        items.push_back({makeKey(*list[i]), static_cast<std::uint32_t>(i)});
    return items;
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
        std::partition(list.begin(), list.end(),
                       [&](const EinnahmePtr& e) { return flagOf(*e, key) != ascending; });
        return;
    }
    if (isText(key)) {
        std::deque<std::string> storage;
        auto items = keysOf<std::string_view>(list, [&](const Einnahme& e) { return nfcView(textOf(e, key), storage); });
        sortByKeys(list, items, ascending, [](std::string_view a, std::string_view b) { return a < b; });
        return;
    }
    if (isFloat(key)) {
        // The net amount is the same single-precision value however often it
        // is computed, so computing it once per entry orders as computing it
        // in each comparison.
        auto items = keysOf<float>(list, [&](const Einnahme& e) { return floatOf(e, key); });
        sortByKeys(list, items, ascending, numberLess<float>);
        return;
    }
    if (key == Key::Datum) {
        auto items = keysOf<double>(list, [](const Einnahme& e) { return e.datum(); });
        sortByKeys(list, items, ascending, numberLess<double>);
        return;
    }
    std::deque<std::string> storage;
    auto items = keysOf<DefaultKey>(list, [&](const Einnahme& e) {
        return DefaultKey{nfcView(e.art(), storage), e.brutto()};
    });
    sortByKeys(list, items, true, defaultLess);
}

}  // namespace saldo
