#pragma once

#include <string>

namespace saldo {

// The two faces of the printout, both of the family "Helvetica" at 7.0 points:
// "Helvetica" and "Helvetica Bold". Ask for the bold one as the family with a
// bold weight; fontconfig knows no family of that full name.
enum class PrintFont { Regular, Bold };

// The three text colours of the printout: black, gray (half white) and pure blue.
enum class PrintColour { Black, Gray, Blue };

// One text of the printout as a painter needs it: its rectangle in the tall
// view's top-down coordinates (y is the top edge, measured from the top of the
// first page), the page its top edge lies on, its face, colour and text. The
// text is drawn from the rectangle's top left corner on one line without
// wrapping and cut at the rectangle's right edge: a column's text ends where
// its column does, a line across the page (a category caption, the
// evaluation) at the paper's edge. Evaluation lines hold
// tab characters, and names or categories may hold line breaks: draw them as
// they are (tabs expanded to the painter's tab stops, a line break starting a
// second line below the first).
struct PrintText {
    double x = 0.0;
    double y = 0.0;
    double width = 0.0;
    double height = 0.0;
    int page = 0;
    PrintFont font = PrintFont::Regular;
    PrintColour colour = PrintColour::Black;
    std::string text;
};

} // namespace saldo
