// A form too long for one page went on below the page's foot, where nobody
// could read it, and the first list took all the room left from the lists
// after it: the form goes on over the next page, under its column titles
// again, and the lists share the room.
#include "printing/FormPdf.h"

#include "core/support/TestSupport.h"
#include "evaluation/FormTableModel.h"
#include "evaluation/ListedItemsModel.h"
#include "printing/PdfFile.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <string>

namespace saldo::gui {
namespace {

std::size_t count(const std::string& text, const std::string& word)
{
    std::size_t n = 0;
    for (std::size_t at = text.find(word); at != std::string::npos; at = text.find(word, at + 1))
        ++n;
    return n;
}

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
