#pragma once

#include <string>

namespace saldo {

// The income limit as an evaluation met it: the gross income of the evaluated
// list and the limit it exceeded. Its text is the summary panel's warning
// line above the report, with both amounts written as the report writes them
// ("€ 1428.00"), so the income reads exactly as the report's total below it.
struct LimitWarning {
    float bruttoEinnahme = 0.0f;
    float limit = 0.0f;

    // "Einnahmegrenze ueberschritten: € X von € Y".
    std::string text() const;

    bool operator==(const LimitWarning&) const = default;
};

} // namespace saldo
