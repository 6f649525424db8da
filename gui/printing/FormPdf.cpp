#include "printing/FormPdf.h"

#include "evaluation/FormTableModel.h"
#include "evaluation/ListedItemsModel.h"
#include "printing/PdfFile.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QPdfWriter>

#include <algorithm>

namespace saldo::gui {

namespace {

// Points on an A4 page (the writer's resolution is set to 72 dpi).
constexpr qreal kPageWidth = 595.0;
constexpr qreal kPageHeight = 842.0;
constexpr qreal kMargin = 48.0;
constexpr qreal kCellPadding = 4.0;

QFont font(qreal points, bool bold = false)
{
    QFont f(QStringLiteral("Helvetica"));
    f.setPointSizeF(points);
    f.setBold(bold);
    return f;
}

class PageWriter {
public:
    explicit PageWriter(QPainter& painter)
        : p_(painter)
    {
    }

    qreal y = kMargin;
    qreal bottom = kPageHeight - kMargin;

    // A paragraph over the whole width; answers false (drawing nothing) when
    // it would not fit.
    bool paragraph(const QString& text, const QFont& f, qreal spaceAfter = 4.0)
    {
        const QRectF box(kMargin, y, kPageWidth - 2 * kMargin, bottom - y);
        p_.setFont(f);
        const QRectF needed = p_.boundingRect(box, Qt::TextWordWrap, text);
        if (y + needed.height() > bottom)
            return false;
        p_.drawText(box, Qt::TextWordWrap, text);
        y += needed.height() + spaceAfter;
        return true;
    }

    void table(const FormTableModel& model)
    {
        const int columns = model.columnCount();
        if (columns == 0)
            return;
        const QFont body = font(8);
        const QFont header = font(8, true);
        // Natural widths; the widest column gets what is left and wraps.
        QList<qreal> widths(columns, 0.0);
        const QFontMetricsF metrics(body, p_.device());
        const QFontMetricsF boldMetrics(header, p_.device());
        for (int c = 0; c < columns; ++c) {
            widths[c] = boldMetrics.horizontalAdvance(model.columns()[c].title);
            for (const FormTableModel::Row& row : model.rows())
                if (c < row.cells.size())
                    widths[c] = std::max(widths[c], boldMetrics.horizontalAdvance(row.cells[c]));
            widths[c] += 2 * kCellPadding + 2.0; // and a little slack against rounding
        }
        const int stretch = static_cast<int>(std::max_element(widths.begin(), widths.end()) - widths.begin());
        qreal others = 0;
        for (int c = 0; c < columns; ++c)
            if (c != stretch)
                others += widths[c];
        widths[stretch] = std::max<qreal>(60.0, kPageWidth - 2 * kMargin - others);

        const auto drawRow = [&](const QStringList& cells, const QFont& f, bool line) {
            p_.setFont(f);
            qreal height = metrics.height();
            qreal x = kMargin;
            QList<QRectF> boxes;
            for (int c = 0; c < columns; ++c) {
                boxes << QRectF(x + kCellPadding, y + 2, widths[c] - 2 * kCellPadding, 1000);
                if (c < cells.size())
                    height = std::max(height, p_.boundingRect(boxes.back(), Qt::TextWordWrap, cells[c]).height());
                x += widths[c];
            }
            for (int c = 0; c < columns && c < cells.size(); ++c) {
                QRectF box = boxes[c];
                box.setHeight(height);
                p_.drawText(box,
                    int(model.columns()[c].alignment & Qt::AlignHorizontal_Mask) | Qt::AlignTop | Qt::TextWordWrap,
                    cells[c]);
            }
            y += height + 2.5;
            if (line)
                p_.drawLine(QPointF(kMargin, y), QPointF(kPageWidth - kMargin, y));
        };
        QStringList titles;
        for (const FormTableModel::Column& column : model.columns())
            titles << column.title;
        drawRow(titles, header, true);
        y += 2;
        QFont note = body;
        note.setItalic(true);
        for (const FormTableModel::Row& row : model.rows())
            drawRow(row.cells, row.bold ? header : row.note ? note : body, false);
        y += 8;
    }

    // As many items as fit, one line each, then how many more there are.
    void list(const FormPdf::List& list, qreal reserve)
    {
        const int count = list.items->rowCount();
        if (count == 0)
            return;
        const QFont f = font(7.5);
        const qreal line = QFontMetricsF(f, p_.device()).height() + 1;
        if (!paragraph(QStringLiteral("%1 (%2)").arg(list.title).arg(count), font(9, true), 2))
            return;
        p_.setFont(f);
        int shown = 0;
        // The last line left free for the number of those that do not fit.
        for (; shown < count && y + line * (shown + 1 < count ? 2 : 1) <= bottom - reserve; ++shown) {
            QStringList cells;
            for (int c = 0; c < list.items->columnCount(); ++c)
                cells << list.items->index(shown, c).data().toString();
            const QString text
                = QStringLiteral("Eintrag %1   %2   %3   %4   %5")
                      .arg(cells[ListedItemsModel::Row], cells[ListedItemsModel::Datum], cells[ListedItemsModel::Name],
                          cells[ListedItemsModel::Betrag], cells[ListedItemsModel::Grund]);
            p_.drawText(QRectF(kMargin + 8, y, kPageWidth - 2 * kMargin - 8, line), Qt::AlignLeft | Qt::AlignTop,
                QFontMetricsF(f, p_.device()).elidedText(text, Qt::ElideRight, kPageWidth - 2 * kMargin - 8));
            y += line;
        }
        if (shown < count) {
            p_.drawText(QRectF(kMargin + 8, y, kPageWidth - 2 * kMargin - 8, line), Qt::AlignLeft | Qt::AlignTop,
                QStringLiteral("… und %1 weitere (in Saldo aufgelistet)").arg(count - shown));
            y += line;
        }
        y += 6;
    }

private:
    QPainter& p_;
};

} // namespace

QByteArray FormPdf::render(const Page& page)
{
    return PdfFile::render([&](QPdfWriter& writer) {
        writer.setTitle(page.title);
        writer.setResolution(72);
        QPainter painter(&writer);
        PageWriter out(painter);
        // The footer first, at the foot of the page; the rest stays above it.
        if (!page.footer.isEmpty()) {
            painter.setFont(font(7));
            const QRectF box(kMargin, 0, kPageWidth - 2 * kMargin, kPageHeight);
            const qreal height = painter.boundingRect(box, Qt::TextWordWrap, page.footer).height();
            painter.drawText(
                QRectF(kMargin, kPageHeight - kMargin - height, box.width(), height), Qt::TextWordWrap, page.footer);
            out.bottom -= height + 8;
        }
        out.paragraph(page.title, font(14, true), 2);
        out.paragraph(page.subtitle, font(9), 12);
        if (page.form)
            out.table(*page.form);
        for (const QString& note : page.notes)
            out.paragraph(note, font(8));
        out.y += 8;
        for (qsizetype i = 0; i < page.lists.size(); ++i) {
            // Each list leaves room for the titles and a line of those after it.
            const qreal reserve = 24.0 * static_cast<qreal>(page.lists.size() - 1 - i);
            if (page.lists[i].items)
                out.list(page.lists[i], reserve);
        }
    });
}

} // namespace saldo::gui
