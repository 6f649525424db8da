#pragma once

#include "model/Einnahme.h"

#include <QByteArray>
#include <QString>

namespace saldo::gui {

// The printout as a PDF file: the pages PrintView paints, on A4 paper in
// portrait, without margins. An empty list gives one empty page, so that the
// file is still a PDF that every viewer opens. The file is written
// atomically: a failure leaves an earlier file of that name as it was.
class PdfPrintout {
public:
    // The bytes of the PDF of the entries, in this order.
    static QByteArray render(const EinnahmeList& einnahmen);

    // Writes the PDF to `path` through AtomicFileWriter, never over a file
    // that holds a ledger; throws FileWriteError when it cannot be written.
    static void write(const QString& path, const EinnahmeList& einnahmen);
};

} // namespace saldo::gui
