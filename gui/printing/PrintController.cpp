#include "printing/PrintController.h"

#include "app/Document.h"
#include "platform/Dialogs.h"
#include "printing/PdfFile.h"
#include "printing/PdfPrintout.h"
#include "printing/PrintView.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QPageSize>
#include <QPrinter>

#include <langinfo.h>

#include <cstdint>

namespace saldo::gui {
namespace {

// The paper of the user's locale (LC_PAPER: A4 in most of the world, Letter
// in North America), or A4 where the C library cannot tell.
QPageSize localePaper()
{
#ifdef __GLIBC__
    // These two items hold numbers of millimetres in place of the text pointer.
    const auto width = static_cast<int>(reinterpret_cast<std::intptr_t>(nl_langinfo(_NL_PAPER_WIDTH)));
    const auto height = static_cast<int>(reinterpret_cast<std::intptr_t>(nl_langinfo(_NL_PAPER_HEIGHT)));
    if (width > 0 && height > 0)
        return QPageSize(QSizeF(width, height), QPageSize::Millimeter, QString(), QPageSize::FuzzyMatch);
#endif
    return QPageSize(QPageSize::A4);
}

} // namespace

PrintController::PrintController(Document& document, QWidget* window, QObject* parent)
    : QObject(parent)
    , document_(document)
    , window_(window)
{
}

QPrinter& PrintController::sharedPrinter()
{
    static QPrinter* printer = nullptr;
    if (!printer) {
        printer = new QPrinter(QPrinter::HighResolution);
        printer->setFullPage(true);
        // A printer of the system brings its own paper; printing to a file
        // takes the locale's.
        if (printer->printerName().isEmpty())
            printer->setPageSize(localePaper());
        qAddPostRoutine([] {
            delete printer;
            printer = nullptr;
        });
    }
    return *printer;
}

void PrintController::drucken()
{
    QPrinter& printer = sharedPrinter();
    printer.setDocName(document_.displayName());
    const int pages = PrintView(document_.backupEinnahmen(), PrintView::paperSizeOf(printer)).pages();
    if (Dialogs::instance().askPrintSettings(window_, printer, pages))
        printOn(printer);
}

void PrintController::printOn(QPrinter& printer) const
{
    // The paper may have changed in the dialog: the pages are laid out anew.
    const PrintView view(document_.backupEinnahmen(), PrintView::paperSizeOf(printer));
    const bool range = printer.printRange() == QPrinter::PageRange && printer.fromPage() > 0;
    const bool printed
        = range ? view.print(printer, printer.fromPage() - 1, printer.toPage() - 1) : view.print(printer);
    if (!printed)
        Dialogs::instance().showError(window_, QStringLiteral("Der Ausdruck konnte nicht gedruckt werden."),
            QStringLiteral("Der Drucker oder die Ausgabedatei nimmt keine Seiten an."));
}

void PrintController::druckvorschau()
{
    QPrinter& printer = sharedPrinter();
    printer.setDocName(document_.displayName());
    Dialogs::instance().showPrintPreview(window_, printer, [this](QPrinter& target) {
        PrintView(document_.backupEinnahmen(), PrintView::paperSizeOf(target)).print(target);
    });
}

bool PrintController::alsPdfSichern()
{
    const QString name = QFileInfo(document_.displayName()).completeBaseName() + QStringLiteral(".pdf");
    const QString folder = document_.isUntitled() ? QDir::homePath() : QFileInfo(document_.filePath()).path();
    return PdfFile::saveWithDialog(
        window_, QDir(folder).filePath(name), [this] { return PdfPrintout::render(document_.backupEinnahmen()); });
}

} // namespace saldo::gui
