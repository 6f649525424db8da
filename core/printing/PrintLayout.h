#pragma once

#include "model/Einnahme.h"
#include "printing/PrintText.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace saldo {

// The printout of an entry list as plain data: how many pages it takes and,
// page by page, which texts go where, in which face and colour. It lays out
// the entries in the order given (the document's complete list, in stored
// order) with their split bookings beneath them, then "Auswertung:" and the
// lines of the evaluation report. The report is taken from the shared engine
// once, when the layout is made (which recomputes the engine, as the
// selection summary does).
//
// Geometry: the layout describes one tall sheet, `pageCount()` paper heights
// high and one paper width wide, measured in points from its top left corner
// with y growing downward. Page k is the slice from k x paper height to
// (k + 1) x paper height; the program keeps no margins of its own. Line
// places are `contentRectHeight()` (paper height / 50) apart: the column
// titles at the top, each entry 20 points below its place with its gray
// category caption 10 points above that, each split booking and each
// evaluation line at its place. Every text's rectangle is one line high and
// starts at its column's x; it is as wide as its column (PrintColumns::width),
// or reaches the paper's right edge for a caption, the heading and the
// evaluation lines, and the text is cut at its right edge.
//
// Painting page k: take `textsOfPage(k)`, move each text up by k x paper
// height and clip to the page. The list holds every text whose rectangle
// meets the page, so a text that crosses the boundary from page k - 1 to k
// is in the lists of both pages (its `page` says where its top edge lies):
// painted clipped on both, its two parts join as on the uncut sheet. A
// painter that would rather cut such a text at the end of its own page skips
// the texts whose `page` is not k. Texts that would lie beyond the sheet
// (further right than the paper is wide, or below the last page) are not in
// the layout; nor is any text of an entry whose own line lies below the last
// page, its caption and split bookings included.
class PrintLayout {
public:
    static constexpr int kTransactionsPerPage = 50;
    static constexpr std::string_view kFontFamily = "Helvetica";
    static constexpr double kFontSize = 7.0;
    static constexpr double kEntryOffset = 20.0; // an entry's line below its place
    static constexpr double kCaptionOffset = 10.0; // its caption below the place
    static constexpr std::string_view kCaptionPrefix = "---> ";
    static constexpr std::string_view kHeading = "Auswertung:";

    // Paper size in points. A size that is not finite and positive gives the
    // page count but no texts.
    PrintLayout(EinnahmeList einnahmen, double paperWidth, double paperHeight);

    // The pages for `entryCount` entries and `extraLines` more lines (split
    // bookings and evaluation lines, summed in single precision): the integer
    // part of (entries + extra lines) / 50, plus one more page unless the
    // list is empty and the integer part of the extra lines is a multiple of
    // 50. So a non-empty list gets one page more than the quotient, also
    // when the lines fill the last page exactly.
    static int pageCount(std::size_t entryCount, float extraLines);

    int pageCount() const { return pages_; }
    double paperWidth() const { return paperWidth_; }
    double paperHeight() const { return paperHeight_; }
    double contentRectHeight() const { return lineHeight_; }
    double sheetHeight() const { return pages_ * paperHeight_; }

    // The texts whose rectangles meet page `page` (0-based), in drawing
    // order; nothing for a page outside the printout.
    std::vector<PrintText> textsOfPage(int page) const;

    const EinnahmeList& einnahmen() const { return einnahmen_; }
    const std::vector<std::string>& evaluationLines() const { return evaluation_; }

private:
    // Top of line place `slot`; a place at a page's start lies exactly on it.
    double placeY(std::uint64_t slot) const;
    // Bottom of everything an entry may draw: its caption, line and split
    // bookings (all of which lie below the top of its place).
    double groupBottom(std::size_t entry) const;
    // The page a top edge lies on.
    int pageOf(double y) const;

    // The slice of the sheet that one page shows.
    struct Window {
        double top, bottom;
    };
    // True when a text's rectangle at (x, y) lies on the sheet and meets the window.
    bool shows(const Window& window, double x, double y) const;
    // A text across the line, or one of a column (its rectangle as wide as the column).
    void add(
        std::vector<PrintText>& out, double x, double y, PrintFont font, PrintColour colour, std::string text) const;
    void addColumn(std::vector<PrintText>& out, std::size_t column, double y, PrintFont font, PrintColour colour,
        std::string text) const;

    EinnahmeList einnahmen_;
    std::vector<std::string> evaluation_;
    // Line place of each entry: its index plus the split bookings before it.
    std::vector<std::uint64_t> slots_;
    std::uint64_t headingSlot_ = 0;
    double paperWidth_ = 0.0;
    double paperHeight_ = 0.0;
    double lineHeight_ = 0.0;
    int pages_ = 0;
    bool drawable_ = false;
};

} // namespace saldo
