#pragma once

#include "model/Einnahme.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace saldo {

// The shown entries as a spreadsheet file, in the form German spreadsheet
// programs open without asking: UTF-8 with a byte-order mark, ";" between
// fields, CRLF after each row, fields quoted as RFC 4180 has it (in double
// quotes when they hold a ";", a double quote, CR or LF; quotes doubled).
//
// One header row, then one row per entry in list order, each followed by its
// split bookings (depth first). The first column, "Teil von", is empty for an
// entry of the list; for a split booking it holds the row number, as the
// spreadsheet counts rows (the header is row 1), of the entry it belongs to.
// Amounts and rates have a decimal comma and two decimals, the tax is gross
// minus net in single precision, the date is dd.MM.yyyy in local time, the two
// flags read "ja" or "nein". An amount that is no finite number is written as
// the report writes it ("nan", "inf", "-inf"), a date outside the years 1 to
// 9999 is left empty, and the last column, "Hinweis", says so; it is empty
// otherwise. A text that begins with "=", "+", "-", "@", a tab
// or a CR gets a leading "'" so that no spreadsheet takes it for a formula;
// nothing else in it changes.
class CsvExport {
public:
    static std::string encode(const EinnahmeList& entries);

    // The same text handed to `sink` piece by piece (about a mebibyte each),
    // so that a large table need not be held whole.
    using Sink = std::function<void(std::string_view piece)>;
    static void encode(const EinnahmeList& entries, const Sink& sink);

    // Further columns after the fixed ones (the statement import's status):
    // their titles, and the texts of each entry of the list by its index
    // (split bookings leave them empty).
    struct ExtraColumns {
        std::vector<std::string> titles;
        std::function<std::vector<std::string>(std::size_t index)> values;
    };
    static void encode(const EinnahmeList& entries, const ExtraColumns& extra, const Sink& sink);

    // Encodes and replaces the file atomically, but never a file that holds a
    // ledger; throws FileWriteError.
    static void write(const std::string& path, const EinnahmeList& entries);
};

} // namespace saldo
