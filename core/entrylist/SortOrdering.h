#pragma once

#include "model/Einnahme.h"

#include <array>
#include <optional>
#include <string_view>

namespace saldo {

// The orderings of the entry table's column headers. A key names the compared
// field; only the first sort key of the table counts. Texts are ordered by
// their NFC code points (uppercase before lowercase, no locale); amounts as
// single-precision numbers, the net amount derived per entry; dates by time;
// flags false before true. Descending reverses every ordering. An amount or
// date that is not a number orders after every number ascending (and so before
// every number descending); two such values are equivalent. A missing or
// unknown key orders by `art` ascending, then `brutto` ascending, whatever the
// direction. Every ordering is a strict weak ordering; entries that compare
// equivalent may end in any order (the sort is not stable).
class SortOrdering {
public:
    // The keys of the first eleven table columns, in column order.
    static constexpr std::array<std::string_view, 11> kColumnKeys = { "name", "noneu", "innergem", "art", "kategorie",
        "brutto", "netto", "steuersatz", "datum", "rechnungsnummer", "steuernummer" };

    static bool isColumnKey(std::string_view key);

    // Whether `a` goes before `b` under the ordering: the per-pair form of what
    // sortEinnahmen does.
    static bool before(const Einnahme& a, const Einnahme& b, std::optional<std::string_view> key, bool ascending);

    // Sorts the list in place. Only references move; no entry is changed. Lists
    // of fewer than two entries are left alone.
    static void sortEinnahmen(EinnahmeList& list, std::optional<std::string_view> key, bool ascending);
};

}  // namespace saldo
