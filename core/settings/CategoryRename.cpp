#include "settings/CategoryRename.h"

#include "model/UnicodeText.h"

#include <unordered_set>

namespace saldo {
namespace {

void collect(const EinnahmeList& entries, std::string_view kategorie, std::unordered_set<const Einnahme*>& seen,
    EinnahmeList& found)
{
    for (const EinnahmePtr& entry : entries) {
        if (!seen.insert(entry.get()).second)
            continue;
        if (UnicodeText::equal(entry->kategorie(), kategorie))
            found.push_back(entry);
        collect(entry->childTransactions(), kategorie, seen, found);
    }
}

} // namespace

EinnahmeList CategoryRename::entriesCarrying(const EinnahmeList& entries, std::string_view kategorie)
{
    EinnahmeList found;
    std::unordered_set<const Einnahme*> seen;
    collect(entries, kategorie, seen, found);
    return found;
}

} // namespace saldo
