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

// Writes the page's parts from the top down. A form too long for one page
// goes on over the next ones, each with the footer at its foot and a line
// naming the title and the page at its head, and the form's column titles
// again above its rows.
class PageWriter {
public:
    PageWriter(QPainter& painter, QPagedPaintDevice& device, const FormPdf::Page& page)
        : p_(painter)
        , device_(device)
        , page_(page)
    {
        startPage();
    }

    qreal y = kMargin;
    qreal bottom = kPageHeight - kMargin;

    void nextPage()
    {
        device_.newPage();
        ++number_;
        startPage();
    }

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

    // A paragraph, on the next page when it does not fit on this one.
    void flowingParagraph(const QString& text, const QFont& f)
    {
        if (!paragraph(text, f)) {
            nextPage();
            paragraph(text, f);
        }
    }

    void table(const FormTableModel& model)
    {
        const int columns = model.columnCount();
        if (columns == 0)
            return;
        const QFont body = font(8);
        const QFont header = font(8, true);
        // Natural widths; the widest column gets what is left and wraps.
        widths_ = QList<qreal>(columns, 0.0);
        const QFontMetricsF boldMetrics(header, p_.device());
        for (int c = 0; c < columns; ++c) {
            widths_[c] = boldMetrics.horizontalAdvance(model.columns()[c].title);
            for (const FormTableModel::Row& row : model.rows())
                if (c < row.cells.size())
                    widths_[c] = std::max(widths_[c], boldMetrics.horizontalAdvance(row.cells[c]));
            widths_[c] += 2 * kCellPadding + 2.0; // and a little slack against rounding
        }
        const int stretch = static_cast<int>(std::max_element(widths_.begin(), widths_.end()) - widths_.begin());
        qreal others = 0;
        for (int c = 0; c < columns; ++c)
            if (c != stretch)
                others += widths_[c];
        widths_[stretch] = std::max<qreal>(60.0, kPageWidth - 2 * kMargin - others);

        QStringList titles;
        for (const FormTableModel::Column& column : model.columns())
            titles << column.title;
        QFont note = body;
        note.setItalic(true);
        drawRow(model, titles, header, true);
        for (const FormTableModel::Row& row : model.rows()) {
            const QFont& f = row.bold ? header : row.note ? note : body;
            if (y + rowHeight(row.cells, f) > bottom) {
                // The rest of the form on the next page, under its column titles.
                nextPage();
                drawRow(model, titles, header, true);
            }
            drawRow(model, row.cells, f, false);
        }
        y += 8;
    }

    // The lists below the form, each with an equal share of the room left
    // (one that needs less leaves the rest to the others), one line per item,
    // then how many more there are. On a page of their own when fewer than
    // three items of each would fit under the form.
    void lists(const QList<FormPdf::List>& all)
    {
        QList<const FormPdf::List*> shown;
        QList<int> counts;
        for (const FormPdf::List& list : all) {
            if (list.items && list.items->rowCount() > 0) {
                shown << &list;
                counts << list.items->rowCount();
            }
        }
        if (shown.isEmpty())
            return;
        const QFont title = font(9, true);
        const qreal line = QFontMetricsF(font(7.5), p_.device()).height() + 1;
        // Besides its items a list takes its title, the line of those left out and a gap.
        const qreal overhead = QFontMetricsF(title, p_.device()).height() + 2 + line + 6;
        const auto itemLines
            = [&] { return std::max(0, static_cast<int>((bottom - y - overhead * shown.size()) / line)); };
        if (itemLines() < 3 * static_cast<int>(shown.size()))
            nextPage();
        QList<int> shares(shown.size(), 0);
        for (int left = itemLines(); left > 0;) {
            int open = 0;
            for (qsizetype i = 0; i < shown.size(); ++i)
                open += shares[i] < counts[i] ? 1 : 0;
            if (open == 0)
                break;
            const int each = std::max(1, left / open);
            for (qsizetype i = 0; i < shown.size() && left > 0; ++i) {
                const int more = std::min({ each, counts[i] - shares[i], left });
                shares[i] += more;
                left -= more;
            }
        }
        for (qsizetype i = 0; i < shown.size(); ++i)
            list(*shown[i], shares[i], title, line);
    }

private:
    void list(const FormPdf::List& list, int items, const QFont& title, qreal line)
    {
        const int count = list.items->rowCount();
        const QFont f = font(7.5);
        paragraph(QStringLiteral("%1 (%2)").arg(list.title).arg(count), title, 2);
        p_.setFont(f);
        const QRectF width(kMargin + 8, 0, kPageWidth - 2 * kMargin - 8, line);
        for (int shown = 0; shown < items; ++shown) {
            QStringList cells;
            for (int c = 0; c < list.items->columnCount(); ++c)
                cells << list.items->index(shown, c).data().toString();
            const QString text
                = QStringLiteral("Eintrag %1   %2   %3   %4   %5")
                      .arg(cells[ListedItemsModel::Row], cells[ListedItemsModel::Datum], cells[ListedItemsModel::Name],
                          cells[ListedItemsModel::Betrag], cells[ListedItemsModel::Grund]);
            p_.drawText(width.translated(0, y), Qt::AlignLeft | Qt::AlignTop,
                QFontMetricsF(f, p_.device()).elidedText(text, Qt::ElideRight, width.width()));
            y += line;
        }
        if (items < count) {
            p_.drawText(width.translated(0, y), Qt::AlignLeft | Qt::AlignTop,
                QStringLiteral("… und %1 weitere (in Saldo aufgelistet)").arg(count - items));
            y += line;
        }
        y += 6;
    }

    QRectF cellBox(qreal x, int column) const
    {
        return QRectF(x + kCellPadding, y + 2, widths_[column] - 2 * kCellPadding, 1000);
    }

    // A row's height with its gap below, its cells wrapped in their columns.
    qreal rowHeight(const QStringList& cells, const QFont& f)
    {
        p_.setFont(f);
        qreal height = QFontMetricsF(f, p_.device()).height();
        qreal x = kMargin;
        for (int c = 0; c < widths_.size(); ++c) {
            if (c < cells.size())
                height = std::max(height, p_.boundingRect(cellBox(x, c), Qt::TextWordWrap, cells[c]).height());
            x += widths_[c];
        }
        return height + 2.5;
    }

    void drawRow(const FormTableModel& model, const QStringList& cells, const QFont& f, bool line)
    {
        const qreal height = rowHeight(cells, f);
        qreal x = kMargin;
        for (int c = 0; c < widths_.size(); ++c) {
            if (c < cells.size()) {
                QRectF box = cellBox(x, c);
                box.setHeight(height);
                p_.drawText(box,
                    int(model.columns()[c].alignment & Qt::AlignHorizontal_Mask) | Qt::AlignTop | Qt::TextWordWrap,
                    cells[c]);
            }
            x += widths_[c];
        }
        y += height;
        if (line) {
            p_.drawLine(QPointF(kMargin, y), QPointF(kPageWidth - kMargin, y));
            y += 2;
        }
    }

    // The footer at the foot of the page (the rest stays above it), and from
    // the second page on the title and the page's number at its head.
    void startPage()
    {
        y = kMargin;
        bottom = kPageHeight - kMargin;
        if (!page_.footer.isEmpty()) {
            p_.setFont(font(7));
            const QRectF box(kMargin, 0, kPageWidth - 2 * kMargin, kPageHeight);
            const qreal height = p_.boundingRect(box, Qt::TextWordWrap, page_.footer).height();
            p_.drawText(
                QRectF(kMargin, kPageHeight - kMargin - height, box.width(), height), Qt::TextWordWrap, page_.footer);
            bottom -= height + 8;
        }
        if (number_ > 1)
            paragraph(QStringLiteral("%1 – Seite %2").arg(page_.title).arg(number_), font(8), 10);
    }

    QPainter& p_;
    QPagedPaintDevice& device_;
    const FormPdf::Page& page_;
    int number_ = 1;
    QList<qreal> widths_;
};

} // namespace

QByteArray FormPdf::render(const Page& page)
{
    return PdfFile::render([&](QPdfWriter& writer) {
        writer.setTitle(page.title);
        writer.setResolution(72);
        QPainter painter(&writer);
        PageWriter out(painter, writer, page);
        out.paragraph(page.title, font(14, true), 2);
        out.paragraph(page.subtitle, font(9), 12);
        if (page.form)
            out.table(*page.form);
        for (const QString& note : page.notes)
            out.flowingParagraph(note, font(8));
        out.y += 8;
        out.lists(page.lists);
    });
}

} // namespace saldo::gui
