#pragma once

#include "tax/EuerEvaluation.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace saldo::tax {

// The Anlage EÜR as text: the form as a person reads it (German amounts,
// the lines that are not zero, the sums, the remarks and the lists), and a
// tab-separated form for scripts. Independent of the process locale.
class EuerReport {
public:
    // "1.234,56", "-0,05": the amount as the form's columns take it.
    static std::string euros(std::int64_t cents);
    // "1234.56", "-0.05": C notation with two decimals.
    static std::string cNotation(std::int64_t cents);

    // One line "ZEILE<TAB>KZ<TAB>VALUE" per line that is not zero, in the
    // form's order, the three sums always; then one line
    // "offen<TAB>ROW<TAB>REASON" per item that is not assigned.
    static std::string tsv(const EuerResult& result);

    // The form for a person, under a heading naming `title` (the ledger).
    static std::string text(const EuerResult& result, std::string_view title);

    // A line's text, with its column for the lines of the form that have two
    // ("Bewirtungsaufwendungen (abziehbar)").
    static std::string label(const EuerForm& form, const EuerLine& line);
    // How the amounts are taken: gross for a Kleinunternehmer, else net with
    // the VAT on lines of its own.
    static std::string taxationNote(bool kleinunternehmer);

    // The remarks beside the form, with the form year's line numbers.
    static std::string reverseChargeNote(const EuerForm& form);
    static std::string correctionsNote(const EuerForm& form);
    static std::string geringwertigNote(const EuerForm& form);
};

} // namespace saldo::tax
