#pragma once

#include "model/Einnahme.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace saldo {

// The evaluation report: turns an entry list into one plain German text of
// gross, net and tax amounts, in total, per VAT class, per tax flag, per
// category, per month and per quarter. One shared instance serves the whole
// process; every calculate replaces the results of the previous one.
class CalcEngine {
public:
    void calculate(EinnahmeList entries);

    const EinnahmeList& einnahmen() const { return einnahmen_; }
    const std::string& ergebnisString() const { return ergebnisString_; }
    std::int64_t ergebnisStringRows() const { return ergebnisStringRows_; }
    const std::vector<std::string>& ergebnisStringAsArray() const { return ergebnisStringAsArray_; }

private:
    EinnahmeList einnahmen_;
    std::string ergebnisString_;
    std::int64_t ergebnisStringRows_ = 0;
    std::vector<std::string> ergebnisStringAsArray_;
};

// The one engine of the process, made on first use.
CalcEngine& sharedCalcEngine();

// The process-wide income limit: unset at start, never stored. When set, every
// calculate whose gross income is greater than it plays "Ping".
std::optional<float>& einnahmenLimit();

}  // namespace saldo
