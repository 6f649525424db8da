#pragma once

#include "model/Einnahme.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace saldo {

// The text beside the entry table that evaluates the selected rows: the heading
// "Selektion: " and an empty line, then the shared engine's report of the
// entries at the selected rows of the shown list, in ascending row order. Rows
// outside the list are ignored and a row selected twice counts once. The
// shared engine is recomputed with the selected entries.
class SelectionSummary {
public:
    static constexpr std::string_view kHeading = "Selektion: \n\n";

    // The entries of `einnahmen` at the given rows, ascending, each row once.
    static EinnahmeList selectedEntries(const EinnahmeList& einnahmen, const std::vector<std::size_t>& rows);

    static std::string text(const EinnahmeList& einnahmen, const std::vector<std::size_t>& rows);
};

inline std::string selectionSummary(const EinnahmeList& einnahmen, const std::vector<std::size_t>& rows)
{
    return SelectionSummary::text(einnahmen, rows);
}

}  // namespace saldo
