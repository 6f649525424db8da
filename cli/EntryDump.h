#pragma once

#include "model/Einnahme.h"

#include <cstdio>
#include <string>

namespace saldo::cli {

// Writes entries as text for people and scripts: one line per entry with all
// twelve stored fields and the net amount, split bookings on the lines below
// their entry, indented by two blanks per level. Numbers are written the same
// in every locale: floats in their shortest form that reads back to the same
// value, the date as local ISO time followed by its raw seconds since
// 2001-01-01 00:00:00 UTC.
class EntryDump {
public:
    // Writes the lines to `out`, in pieces, so a million entries need no
    // second copy in memory. Returns false when writing failed.
    static bool write(const EinnahmeList& entries, std::FILE* out);

    // The line of one entry (without indentation and newline).
    static std::string line(const Einnahme& entry);

    // "2024-03-01T10:30:00+01:00 (730978200)"; the ISO part is "-" for a
    // date that local time cannot express.
    static std::string datum(double seconds);
};

} // namespace saldo::cli
