#pragma once

#include "tax/UstvaCalculation.h"

#include <string>
#include <vector>

namespace saldo::tax {

// The VAT return's figures as texts: the rows a person copies into the form,
// and the lines a script reads.
class UstvaText {
public:
    // One filled line of the form: its number, its Kennzahl ("81", "35 / 36"),
    // its label, the base in whole euros and the tax in euros and cents, German
    // style ("1.234", "234,46"); empty where the line has none.
    struct Row {
        int zeile = 0;
        std::string kennzahl;
        std::string label;
        std::string base;
        std::string tax;
        // The remaining payment (Kz 83), the last row.
        bool result = false;
    };
    // The lines whose base or tax is not zero, in the form's order, then Kz 83.
    static std::vector<Row> rows(const UstvaResult& result);

    // For scripts: one line "KZ<TAB>VALUE" per Kennzahl that is not zero, in
    // ascending order, bases as whole numbers and taxes with two decimals in
    // C notation, Kz 83 always; then one line "offen<TAB>ROW<TAB>REASON" per
    // item that is not placed, in the ledger's order.
    static std::string tsv(const UstvaResult& result);

    // One sentence each on the VAT as booked and on its difference to Kz 83,
    // and on reverse-charge amounts, which the report divides by (1 + rate).
    static const char* bookedTaxExplanation();
    static const char* differenceExplanation();
    static const char* reverseChargeExplanation();
};

} // namespace saldo::tax
