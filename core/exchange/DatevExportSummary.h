#pragma once

#include "exchange/DatevExport.h"

#include <cstdint>
#include <string>
#include <vector>

namespace saldo {

// What an export did, in German for the person who made it: the files with
// their days, bookings and the sums of the debit (Soll) and credit (Haben)
// side; the items of 0 cents left out; every item not written with its row
// and reason; every item whose invoice number was changed for the receipt
// field, with the old and the new text; and how many characters were
// written as "?".
class DatevExportSummary {
public:
    static std::string text(const DatevExportResult& result, const std::vector<std::string>& paths);

    // "1.234,56 €": cents with a thousands point and a decimal comma.
    static std::string euros(std::int64_t cents);
};

} // namespace saldo
