#include "printing/PrintView.h"

#include <QColor>
#include <QFont>
#include <QFontMetricsF>
#include <QPageLayout>
#include <QPagedPaintDevice>
#include <QPainter>
#include <QRegularExpression>

#include <algorithm>
#include <cmath>

namespace saldo::gui {
namespace {

QFont fontOf(PrintFont face)
{
    // Fontconfig maps the family to its metric-compatible stand-in; the bold
    // face is the family with a bold weight.
    QFont font(QString::fromUtf8(PrintLayout::kFontFamily.data(), PrintLayout::kFontFamily.size()));
    font.setPointSizeF(PrintLayout::kFontSize);
    font.setWeight(face == PrintFont::Bold ? QFont::Bold : QFont::Normal);
    return font;
}

QColor colourOf(PrintColour colour)
{
    switch (colour) {
    case PrintColour::Gray:
        return QColor::fromRgbF(0.5f, 0.5f, 0.5f);
    case PrintColour::Blue:
        return QColor::fromRgbF(0.0f, 0.0f, 1.0f);
    case PrintColour::Black:
        break;
    }
    return QColor::fromRgbF(0.0f, 0.0f, 0.0f);
}

} // namespace

PrintView::PrintView(EinnahmeList transactionsArray, QSizeF paperSize)
    : layout_(std::move(transactionsArray), paperSize.width(), paperSize.height())
{
}

QSizeF PrintView::paperSizeOf(const QPagedPaintDevice& device)
{
    return device.pageLayout().fullRect(QPageLayout::Point).size();
}

void PrintView::drawPage(QPainter& painter, int page) const
{
    // Layout points to device pixels: the font's point size is resolved for
    // the device by the painter, so the painter itself is not scaled.
    const double perPointX = painter.device()->logicalDpiX() / 72.0;
    const double perPointY = painter.device()->logicalDpiY() / 72.0;
    const double pageTop = page * layout_.paperHeight();
    const QFont fonts[] = { fontOf(PrintFont::Regular), fontOf(PrintFont::Bold) };
    const QFontMetricsF metrics[]
        = { QFontMetricsF(fonts[0], painter.device()), QFontMetricsF(fonts[1], painter.device()) };

    painter.save();
    const QRectF paper(0.0, 0.0, layout_.paperWidth() * perPointX, layout_.paperHeight() * perPointY);
    for (const PrintText& text : layout_.textsOfPage(page)) {
        const int face = text.font == PrintFont::Bold ? 1 : 0;
        painter.setFont(fonts[face]);
        painter.setPen(colourOf(text.colour));
        // Each text ends where its rectangle does, and the page where the paper does.
        painter.setClipRect(
            paper.intersected(QRectF(text.x * perPointX, 0.0, text.width * perPointX, paper.height())));
        drawText(painter, metrics[face], QPointF(text.x * perPointX, (text.y - pageTop) * perPointY),
            QString::fromStdString(text.text), kTabStopDistance * perPointX);
    }
    painter.restore();
}

void PrintView::drawText(
    QPainter& painter, const QFontMetricsF& metrics, QPointF topLeft, const QString& text, double tabStop)
{
    static const QRegularExpression lineBreak(QStringLiteral("\\r\\n|[\\n\\r\\x{2028}\\x{2029}]"));
    double baseline = topLeft.y() + metrics.ascent();
    for (const QString& line : text.split(lineBreak)) {
        double x = 0.0;
        const QStringList pieces = line.split(QLatin1Char('\t'));
        for (qsizetype i = 0; i < pieces.size(); ++i) {
            // A tab moves on to the next stop right of where the text stands.
            if (i > 0)
                x = (std::floor(x / tabStop) + 1.0) * tabStop;
            if (!pieces[i].isEmpty()) {
                painter.drawText(QPointF(topLeft.x() + x, baseline), pieces[i]);
                x += metrics.horizontalAdvance(pieces[i]);
            }
        }
        baseline += metrics.lineSpacing();
    }
}

bool PrintView::print(QPagedPaintDevice& device, int first, int last) const
{
    first = std::max(first, 0);
    last = last < 0 ? pages() - 1 : std::min(last, pages() - 1);
    if (first > last)
        return true;
    QPainter painter;
    if (!painter.begin(&device))
        return false;
    for (int page = first; page <= last; ++page) {
        if (page > first && !device.newPage())
            return false;
        drawPage(painter, page);
    }
    return painter.end();
}

} // namespace saldo::gui
