#pragma once
// Reads a booking batch back as the tax adviser's system would and lists
// every finding: the character set (Windows-1252, no control characters but
// the CRLF that ends each line), the ";" fields with their quotes, the header
// of 31 fields, the 125 headings, 125 fields per booking, the amount's form,
// the side, DDMM dates inside the header's days, the receipt field's
// characters and the texts' lengths. Written against the format's facts
// alone, it shares no code with the writer.
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace saldo::testing {

struct DatevBatchCheck {
    struct Booking {
        std::int64_t cents = 0;
        char side = '?';
        std::string konto;
        std::string gegenkonto;
        std::string buSchluessel;
        std::string belegdatum; // DDMM
        std::string belegfeld;
        std::string buchungstext; // Windows-1252, quotes undone
    };
    std::vector<std::string> findings;
    std::vector<std::string> header; // the 31 fields, quotes undone
    std::vector<Booking> bookings;
    std::int64_t sollCents = 0;
    std::int64_t habenCents = 0;
};

DatevBatchCheck checkDatevBatch(std::string_view bytes);

} // namespace saldo::testing
