#include "printing/PdfPrintout.h"

#include "model/LedgerFile.h"
#include "printing/PrintView.h"

#include <QBuffer>
#include <QFile>
#include <QPageLayout>
#include <QPainter>
#include <QPdfWriter>

namespace saldo::gui {

QByteArray PdfPrintout::render(const EinnahmeList& einnahmen)
{
    QByteArray bytes;
    {
        QBuffer buffer(&bytes);
        buffer.open(QIODevice::WriteOnly);
        QPdfWriter writer(&buffer);
        writer.setCreator(QStringLiteral("Saldo"));
        writer.setPageLayout(
            QPageLayout(QPageSize(QPageSize::A4), QPageLayout::Portrait, QMarginsF(), QPageLayout::Point));
        const PrintView view(einnahmen, PrintView::paperSizeOf(writer));
        if (view.pages() > 0) {
            view.print(writer);
        } else {
            QPainter blank(&writer);
        }
    }
    return bytes;
}

void PdfPrintout::write(const QString& path, const EinnahmeList& einnahmen)
{
    const QByteArray bytes = render(einnahmen);
    LedgerFile::writeBesideLedgers(QFile::encodeName(path).toStdString(),
        std::string_view(bytes.constData(), static_cast<std::size_t>(bytes.size())));
}

} // namespace saldo::gui
