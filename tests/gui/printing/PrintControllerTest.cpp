// Printing from a document window, read back from the PDF the way a person
// would see it (pdftotext, pdfinfo): "Als PDF sichern…" and "Drucken…" print
// the complete list in stored order with its split bookings and evaluation,
// whatever the table shows, on every page the layout has; and a tax form's
// PDF over several pages.
#include "printing/PrintController.h"
#include "app/Document.h"
#include "app/DocumentWindow.h"
#include "app/WindowActions.h"
#include "core/support/TestSupport.h"
#include "entrylist/SearchOutcome.h"
#include "gui/support/LedgerFixtures.h"
#include "gui/support/ScriptedDialogs.h"
#include "evaluation/ListedItemsModel.h"
#include "platform/UserDefaults.h"
#include "printing/FormPdf.h"
#include "printing/PdfFile.h"
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

std::size_t count(const std::string& text, const std::string& word)
{
    std::size_t n = 0;
    for (std::size_t at = text.find(word); at != std::string::npos; at = text.find(word, at + 1))
        ++n;
    return n;
}

// A form too long for one page went on below the page's foot, where nobody
// could read it, and the first list took all the room left from the lists
// after it: the form goes on over the next page, under its column titles
// again, and the lists share the room.
TEST(FormPdf, ALongFormGoesOnOverTheNextPageAndTheListsFollowIt)
{
    FormTableModel form;
    QList<FormTableModel::Row> rows;
    for (int i = 1; i <= 70; ++i) {
        FormTableModel::Row row;
        row.cells = { QString::number(i),
            QStringLiteral("Zeilentext %1 mit einer Bezeichnung, die so lang ist wie die laengsten des Formulars und "
                           "daher in zwei Zeilen umbricht")
                .arg(i),
            QStringLiteral("1.234,56") };
        rows << row;
    }
    form.setTable(
        { { QStringLiteral("Zeile") }, { QStringLiteral("Bezeichnung") }, { QStringLiteral("Betrag") } }, rows);
    ListedItemsModel items, others;
    for (auto [model, name] : { std::pair { &items, "Posten " }, std::pair { &others, "Anderer " } }) {
        std::vector<tax::ListedItem> listed;
        for (int i = 1; i <= 200; ++i)
            listed.push_back({ static_cast<std::size_t>(i), std::to_string(i), "Grund", name + std::to_string(i), 0.0,
                1.0f, std::nullopt });
        model->setItems(listed);
    }

    const FormPdf::Page page { QStringLiteral("Formular"), QStringLiteral("Untertitel"), &form,
        { QStringLiteral("Eine Anmerkung.") },
        { { QStringLiteral("Liste"), &items }, { QStringLiteral("Zweite"), &others } }, QStringLiteral("Fusszeile") };
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("form.pdf"));
    PdfFile::write(path, FormPdf::render(page));

    const std::string pdf = "'" + path.toStdString() + "'";
    const auto run = [](const std::string& command) { return ::saldo::testing::runCommand(command).out; };
    const std::string info = run("pdfinfo " + pdf);
    const std::size_t pages = std::stoul(info.substr(info.find("Pages:") + 6));
    ASSERT_GE(pages, 2u) << info;
    std::string text;
    for (std::size_t p = 1; p <= pages; ++p) {
        const std::string one
            = run("pdftotext -layout -f " + std::to_string(p) + " -l " + std::to_string(p) + " " + pdf + " -");
        // Every page ends with the footer; the next ones start with the title
        // and their number, and the form's column titles stand over its rows.
        EXPECT_EQ(count(one, "Fusszeile"), 1u) << "page " << p;
        if (p > 1) {
            EXPECT_NE(one.find("Formular – Seite " + std::to_string(p)), std::string::npos) << one;
        }
        if (one.find("Zeilentext") != std::string::npos) {
            EXPECT_LT(one.find("Bezeichnung"), one.find("Zeilentext")) << one;
        }
        text += one;
    }
    for (int i = 1; i <= 70; ++i)
        EXPECT_EQ(count(text, "Zeilentext " + std::to_string(i) + " mit"), 1u) << i;
    EXPECT_NE(text.find("Eine Anmerkung."), std::string::npos);
    // The lists after the form, sharing the room that is left.
    EXPECT_GT(text.find("Liste (200)"), text.find("Zeilentext 70"));
    EXPECT_GT(text.find("Zweite (200)"), text.find("Liste (200)"));
    const std::size_t shown = count(text, "Posten ");
    EXPECT_GE(shown, 3u);
    EXPECT_LE(shown - count(text, "Anderer "), 1u); // the odd line to the first
    EXPECT_NE(text.find("und " + std::to_string(200 - shown) + " weitere"), std::string::npos) << text;
}

} // namespace
} // namespace saldo::gui
