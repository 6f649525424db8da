// Printing from a document window, read back from the PDF the way a person
// would see it (pdftotext, pdfinfo): "Als PDF sichern…" and "Drucken…" print
// the complete list in stored order with its split bookings and evaluation,
// whatever the table shows, on every page the layout has.
#include "printing/PrintController.h"
#include "app/Document.h"
#include "app/DocumentWindow.h"
#include "app/WindowActions.h"
#include "entrylist/SearchOutcome.h"
#include "gui/support/LedgerFixtures.h"
#include "gui/support/ScriptedDialogs.h"
#include "platform/UserDefaults.h"
#include "printing/PrintLayout.h"

#include <QAction>
#include <QFileInfo>
#include <QPrinter>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace saldo::gui {
namespace {

using namespace testing;

// A4 in points, as the PDF and (here, without a printer) the printer have it.
constexpr double kA4Width = 595.276;
constexpr double kA4Height = 841.89;

// The output of a poppler tool; fails the test when it cannot run.
QString popplerOutput(const QString& tool, const QStringList& arguments)
{
    QProcess process;
    process.start(tool, arguments);
    EXPECT_TRUE(process.waitForFinished(30000)) << qPrintable(tool) << " did not run (poppler-utils)";
    EXPECT_EQ(process.exitCode(), 0) << qPrintable(QString::fromUtf8(process.readAllStandardError()));
    return QString::fromUtf8(process.readAllStandardOutput());
}

int pageCountOf(const QString& pdf)
{
    const QString info = popplerOutput(QStringLiteral("pdfinfo"), { pdf });
    const QRegularExpressionMatch pages = QRegularExpression(QStringLiteral("Pages:\\s+(\\d+)")).match(info);
    return pages.hasMatch() ? pages.captured(1).toInt() : -1;
}

// The text of the pages, one printed line per line, with runs of blanks made one.
QStringList linesOf(const QString& pdf, int first = 0, int last = 0)
{
    QStringList arguments { QStringLiteral("-layout"), QStringLiteral("-enc"), QStringLiteral("UTF-8") };
    if (first > 0)
        arguments << QStringLiteral("-f") << QString::number(first) << QStringLiteral("-l") << QString::number(last);
    arguments << pdf << QStringLiteral("-");
    QStringList lines;
    for (const QString& line : popplerOutput(QStringLiteral("pdftotext"), arguments).split(QLatin1Char('\n')))
        if (const QString simple = line.simplified(); !simple.isEmpty())
            lines << simple;
    return lines;
}

class PrintControllerTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(dir.isValid());
        // Seventy entries over several pages; the third has two split bookings.
        entries = sampleEntries(70);
        auto first = Einnahme::make("Teil Papier", "4930 Bürobedarf Gesch. ", 59.5f, 19.0f);
        auto second = Einnahme::make("Teil Toner", "4930 Bürobedarf Gesch. ", 11.9f, 19.0f);
        second->setArt(kArtAusgabe);
        entries[2]->setChildTransactions({ first, second });
        document = std::make_unique<Document>(defaults);
        ASSERT_TRUE(document->readFromData(encoded(entries)));
        document->makeWindowControllers();
        actions = document->windowController()->actions();
        // The table shows a few entries, last first: the printout ignores that.
        document->applySearch(SearchOutcome::decide("Name", "Posten 1"));
        document->sortEinnahmen("name", false);
        ASSERT_LT(document->einnahmen().size(), 20u);
    }

    PrintLayout layout() const { return PrintLayout(document->backupEinnahmen(), kA4Width, kA4Height); }

    InMemoryUserDefaults defaults;
    QTemporaryDir dir;
    ScriptedDialogs dialogs;
    EinnahmeList entries;
    std::unique_ptr<Document> document;
    WindowActions* actions = nullptr;
};

TEST_F(PrintControllerTest, PdfHoldsTheCompleteListWithSplitBookingsAndEvaluationOnA4)
{
    // The name without ".pdf" gets it.
    dialogs.saveFileNames = { dir.filePath(QStringLiteral("Ausdruck")) };
    actions->savePdfAction()->trigger();
    const QString pdf = dir.filePath(QStringLiteral("Ausdruck.pdf"));
    ASSERT_TRUE(QFileInfo::exists(pdf));
    EXPECT_TRUE(dialogs.errors.isEmpty()) << qPrintable(dialogs.errors.join(QLatin1Char('\n')));

    ASSERT_GT(layout().pageCount(), 2);
    EXPECT_EQ(pageCountOf(pdf), layout().pageCount());
    EXPECT_TRUE(popplerOutput(QStringLiteral("pdfinfo"), { pdf }).contains(QStringLiteral("(A4)")));
    // Where things stand is the layout's rule; here every entry, split booking
    // and evaluation line reaches the paper, whatever the table shows.
    const QStringList lines = linesOf(pdf);
    const QString all = lines.join(QLatin1Char(' '));
    for (const QString& text : { QStringLiteral("> Ausgabe Teil Toner"), QStringLiteral("Posten 70 ") })
        EXPECT_TRUE(all.contains(text)) << qPrintable(text);
    const PrintLayout printed = layout();
    for (const std::string& line : printed.evaluationLines())
        EXPECT_TRUE(all.contains(QString::fromStdString(line).simplified())) << line;
    // Titles, flags, amounts, rate and date of an entry line.
    EXPECT_TRUE(
        lines.contains(QStringLiteral("Art Name Innerg. Non EU Brutto Netto Steuersatz St.betrag Datum Rg-Nr")));
    EXPECT_TRUE(lines.contains(QStringLiteral("Einnahme Posten 1 ✕ ✕ 119.00 100.00 19.0 19.00 1.1.2026")));
}

TEST_F(PrintControllerTest, DruckenPrintsTheChosenPagesWithTheSharedPrinterOrNothingWhenCancelled)
{
    QPrinter& printer = PrintController::sharedPrinter();
    const QString printed = dir.filePath(QStringLiteral("Drucker.pdf"));
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(printed);

    actions->printAction()->trigger(); // cancelled
    EXPECT_FALSE(QFileInfo::exists(printed));
    EXPECT_EQ(dialogs.printPageCount, layout().pageCount());

    printer.setPrintRange(QPrinter::PageRange);
    printer.setFromTo(2, 2);
    dialogs.printAnswers = { true };
    actions->printAction()->trigger();
    printer.setPrintRange(QPrinter::AllPages);
    printer.setOutputFileName(QString());

    ASSERT_TRUE(QFileInfo::exists(printed));
    EXPECT_EQ(pageCountOf(printed), 1);
    dialogs.saveFileNames = { dir.filePath(QStringLiteral("Alle.pdf")) };
    actions->savePdfAction()->trigger();
    EXPECT_EQ(linesOf(printed), linesOf(dir.filePath(QStringLiteral("Alle.pdf")), 2, 2));
}

} // namespace
} // namespace saldo::gui
