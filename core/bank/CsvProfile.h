#pragma once

#include "bank/TextEncoding.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace saldo {

// How one bank writes its statements as CSV, as data: the encoding, the
// separator, the header line that identifies the format, which of its columns
// hold what, the date format, the decimal and thousands marks, which rows are
// pending and where the table ends. Profiles are small text files of
// "Schluessel = Wert" lines (see the README's "Kontoauszuege"); parse() reads
// one and refuses it whole, naming the line, when anything is wrong.
struct CsvProfile {
    std::string name;
    std::string source; // the file it was read from
    std::vector<TextEncoding::Kind> encodings { TextEncoding::Kind::Utf8 }; // tried in order
    char separator = ';';
    std::vector<std::string> header; // the header's cells, as the bank writes them
    std::optional<std::size_t> linesBeforeHeader;

    // Column names (cells of the header); empty when the format has none.
    std::string datum;
    std::string valuta;
    std::string betrag;
    std::string soll;
    std::string haben;
    std::string partner;
    std::string partnerIn; // the counterparty's column on money in, when it depends on the direction
    std::string partnerOut; // and on money out
    std::string iban;
    std::string text;
    std::string referenz;
    std::string buchungsart;
    std::string waehrung;

    std::string dateFormat;
    char decimalMark = ',';
    char thousandsMark = '.'; // 0: none

    // Rows whose column holds this value are pending: shown, never proposed.
    std::vector<std::pair<std::string, std::string>> pending;
    // A row whose first cell begins with one of these ends the table.
    std::vector<std::string> footers;

    // Fields some banks write inside the text column after a marker
    // ("Auftraggeber: Name IBAN: DE.. Buchungstext: ..."); each value runs
    // to the next marker of any kind.
    std::vector<std::string> partnerMarkers;
    std::vector<std::string> ibanMarkers;
    std::vector<std::string> textMarkers;
    std::vector<std::string> otherMarkers;

    bool hasMarkers() const { return !partnerMarkers.empty() || !ibanMarkers.empty() || !textMarkers.empty(); }

    // Reads a profile file's text (UTF-8). Throws StatementError naming
    // `source` and the line.
    static CsvProfile parse(std::string_view text, const std::string& source);

    // The cells of one line split at the separator, with quotes removed and
    // blanks trimmed (how the header line is compared).
    static std::vector<std::string> cellsOf(std::string_view line, char separator);
};

} // namespace saldo
