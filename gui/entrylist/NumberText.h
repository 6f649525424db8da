#pragma once

#include <QString>

namespace saldo::gui {

// Number text of the entry table's amount and rate cells. Shown with two
// decimals and a decimal comma ("1234,50"), independent of the process
// locale. Typed text is read by its leading number: optional blanks and sign,
// digits with a decimal comma or point ("12,50" and "12.50" are both 12.5) and
// an optional exponent; whatever follows is ignored, and a text that does not
// begin with a number reads as 0.
class NumberText {
public:
    static QString format(float value);
    // The text a line edit starts with: at least two decimals and as many more
    // as it takes to read back the very same value ("12,50", "12,345"), so that
    // taking the text over unchanged never changes the amount.
    static QString editable(float value);
    static float parseLeading(const QString& text);
};

} // namespace saldo::gui
