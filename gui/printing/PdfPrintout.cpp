#include "printing/PdfPrintout.h"

#include "printing/PdfFile.h"
#include "printing/PrintView.h"

#include <QPainter>
#include <QPdfWriter>

namespace saldo::gui {

QByteArray PdfPrintout::render(const EinnahmeList& einnahmen)
{
    return PdfFile::render([&](QPdfWriter& writer) {
        const PrintView view(einnahmen, PrintView::paperSizeOf(writer));
        if (view.pages() > 0) {
            view.print(writer);
        } else {
            QPainter blank(&writer);
        }
    });
}

void PdfPrintout::write(const QString& path, const EinnahmeList& einnahmen)
{
    PdfFile::write(path, render(einnahmen));
}

} // namespace saldo::gui
