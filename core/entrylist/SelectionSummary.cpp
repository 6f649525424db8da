#include "entrylist/SelectionSummary.h"

#include "evaluation/CalcEngine.h"

#include <algorithm>

namespace saldo {

EinnahmeList SelectionSummary::selectedEntries(const EinnahmeList& einnahmen, const std::vector<std::size_t>& rows)
{
    std::vector<std::size_t> sorted;
    sorted.reserve(rows.size());
    for (std::size_t row : rows)
        if (row < einnahmen.size())
            sorted.push_back(row);
    std::sort(sorted.begin(), sorted.end());
    sorted.erase(std::unique(sorted.begin(), sorted.end()), sorted.end());
    EinnahmeList result;
    result.reserve(sorted.size());
    for (std::size_t row : sorted)
        result.push_back(einnahmen[row]);
    return result;
}

std::string SelectionSummary::text(const EinnahmeList& einnahmen, const std::vector<std::size_t>& rows)
{
    CalcEngine& engine = sharedCalcEngine();
    engine.calculate(selectedEntries(einnahmen, rows));
    std::string result(kHeading);
    result += engine.ergebnisString();
    return result;
}

}  // namespace saldo
