#pragma once

#include "exchange/DatevPeriod.h"
#include "platform/Clock.h"

#include <array>
#include <cstdint>
#include <string>

namespace saldo {

class Cp1252Text;

// The first two lines of a booking batch (EXTF 700, category 21
// "Buchungsstapel", format version 13): the header of 31 fields, which says
// who made the batch, for which adviser and client, for which days and with
// which chart (four-digit accounts of SKR 03, in euros, not yet fixed), and
// the 125 column headings. The adviser's system reads both by position.
struct DatevBatchHeader {
    static constexpr std::size_t kBezeichnungLength = 30;
    static constexpr int kSachkontenlaenge = 4;

    // The moment the batch was made, written in local time to the millisecond.
    ReferenceSeconds erzeugtAm = 0;
    std::uint32_t beraternummer = 0;
    std::uint32_t mandantennummer = 0;
    DatevPeriod period;
    // The batch's name (UTF-8), and an ASCII ending such as " Teil 1/2":
    // together cut to 30 characters, the name the shorter.
    std::string bezeichnung;
    std::string bezeichnungEnding;

    // Line 1 with its CRLF.
    void appendLine(std::string& out, Cp1252Text& text) const;
    // Line 2 with its CRLF.
    static void appendHeadings(std::string& out, Cp1252Text& text);

    // The headings of the booking columns, in order (UTF-8).
    static const std::array<const char*, 125>& headings();
};

} // namespace saldo
