#pragma once

#include "model/Einnahme.h"
#include "printing/PrintLayout.h"

#include <QPointF>
#include <QSizeF>
#include <QString>

class QFontMetricsF;
class QPagedPaintDevice;
class QPainter;

namespace saldo::gui {

// Paints the printout of an entry list, as PrintLayout lays it out, on a
// printer or a PDF writer. The printout is one tall sheet a whole number of
// paper heights high; page k shows its slice from k paper heights down, with
// no margins of its own: the device is used in full-page mode, its origin at
// the paper's top left corner, and each page is clipped to the paper. A text
// that crosses a page boundary is painted on both pages, each showing its own
// part. All texts are 7-point "Helvetica" (regular, or bold for the column
// titles) in black, gray or blue; tabs in the evaluation lines stop every 28
// points, and a line break in a name starts a second line below the first.
// A text is cut at its rectangle's right edge, so that a long name ends at
// the next column instead of running over it.
class PrintView {
public:
    // The points between two tab stops.
    static constexpr double kTabStopDistance = 28.0;

    // Lays out the entries, in this order, on paper of this size in points.
    PrintView(EinnahmeList transactionsArray, QSizeF paperSize);

    // The paper of a printer or PDF writer in points, turned as it prints.
    static QSizeF paperSizeOf(const QPagedPaintDevice& device);

    const PrintLayout& layout() const { return layout_; }
    int pages() const { return layout_.pageCount(); }

    // Paints page `page` (0-based) with a painter open on a device whose
    // origin is the top left corner of the paper.
    void drawPage(QPainter& painter, int page) const;

    // Paints the pages `first` to `last` (0-based, clamped to the printout)
    // on the device, a new page between two. Nothing at all when no page is
    // left, as for an empty list. False when the painter could not begin or
    // finish on the device.
    bool print(QPagedPaintDevice& device, int first = 0, int last = -1) const;

private:
    // Draws a text from its top left corner with the painter's font: a tab
    // moves on to the next multiple of `tabStop` from the text's start, a
    // line break starts a line below. Nothing wraps or is cut here.
    static void drawText(
        QPainter& painter, const QFontMetricsF& metrics, QPointF topLeft, const QString& text, double tabStop);

    PrintLayout layout_;
};

} // namespace saldo::gui
