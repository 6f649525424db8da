#pragma once

#include <cstdint>
#include <string>

namespace saldo::tax {

// Integer amounts of the tax figures as text, whatever the process locale.
class CentText {
public:
    // As a German reader reads them: thousands grouped with points, a decimal
    // comma and two decimals ("1.234,56", "-0,37").
    static std::string euros(std::int64_t cents);
    // Whole euros the same way ("1.234").
    static std::string wholeEuros(std::int64_t euros);
    // For scripts, in C notation without grouping ("1234.56", "-0.37").
    static std::string cNotation(std::int64_t cents);
};

} // namespace saldo::tax
