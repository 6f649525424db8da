#pragma once

#include "bank/CsvProfile.h"
#include "bank/Statement.h"

#include <string_view>

namespace saldo {

// Reads the bookings of a bank's CSV export with the bank's profile. The
// header is the first of the first kMaxLinesBeforeHeader rows that holds every
// cell of the profile's header (or the row after the profile's count of lines
// before it); columns are found by name, so a bank may add columns. Rows
// after it: a blank row is passed over, a footer row ends the table, a row the
// profile marks pending becomes a pending booking, and a row whose date or
// amount does not read is counted as skipped. A row in another currency than
// EUR refuses the file, and so does a file in which no row reads.
class CsvStatementReader {
public:
    static constexpr std::size_t kMaxLinesBeforeHeader = 50;

    // True when the text (already UTF-8) has the profile's header.
    static bool hasHeader(std::string_view text, const CsvProfile& profile);

    // The bookings of the text (already UTF-8). With `byPosition` a header
    // whose names differ is accepted when it has as many cells as the
    // profile's, and the columns are taken by their place in the profile's
    // header line (for a file the person assigned to the profile).
    static Statement read(std::string_view text, const CsvProfile& profile, bool byPosition = false);
};

} // namespace saldo
