#include "printing/PrintLayout.h"

#include "evaluation/CalcEngine.h"
#include "platform/Calendar.h"

#include <gtest/gtest.h>

#include <vector>

namespace saldo {
namespace {

// Paper of 600 x 800 points: line places 16 points apart, so every place below
// is a small sum that can be checked by hand.
constexpr double kWidth = 600.0, kHeight = 800.0;

std::vector<std::string> engineLines(const EinnahmeList& list)
{
    sharedCalcEngine().calculate(list);
    return sharedCalcEngine().ergebnisStringAsArray();
}

EinnahmeList withSplits(EinnahmePtr entry, std::size_t count)
{
    EinnahmeList splits;
    for (std::size_t i = 0; i < count; ++i)
        splits.push_back(Einnahme::make("Teil", "", 1.0f, 19.0f));
    entry->setChildTransactions(splits);
    return { entry };
}

TEST(PrintLayout, PageCountIsTheQuotientByFiftyAndOneMoreForAnyEntry)
{
    struct Case {
        std::size_t entries;
        float extra;
        int pages;
    } const cases[] = {
        { 0, 0.0f, 0 }, // nothing to print
        { 1, 39.0f, 1 }, // 40 lines
        { 1, 48.0f, 1 }, // 49 lines
        { 10, 40.0f, 2 }, // exactly 50 lines: the full page and one more
        { 4, 95.0f, 2 }, { 4, 96.0f, 3 }, // exactly 100
        { 0, 60.0f, 2 }, // no entries, but extra lines that do not end a page
        { 0, 50.0f, 1 }, // no entries and extra lines that end one
    };
    for (const Case& c : cases)
        EXPECT_EQ(PrintLayout::pageCount(c.entries, c.extra), c.pages) << c.entries << " + " << c.extra;
}

TEST(PrintLayout, AnEmptyListPrintsNothing)
{
    const PrintLayout layout({}, kWidth, kHeight);
    EXPECT_EQ(layout.pageCount(), 0);
    EXPECT_EQ(layout.sheetHeight(), 0.0);
    EXPECT_TRUE(layout.textsOfPage(0).empty());
}

struct Expected {
    double x, y;
    PrintFont font;
    PrintColour colour;
    std::string text;
};

void expectTexts(const std::vector<PrintText>& actual, const std::vector<Expected>& expected)
{
    ASSERT_EQ(actual.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        SCOPED_TRACE("text " + std::to_string(i) + ": " + expected[i].text);
        EXPECT_EQ(actual[i].x, expected[i].x);
        EXPECT_DOUBLE_EQ(actual[i].y, expected[i].y);
        EXPECT_EQ(actual[i].font, expected[i].font);
        EXPECT_EQ(actual[i].colour, expected[i].colour);
        EXPECT_EQ(actual[i].text, expected[i].text);
    }
}

TEST(PrintLayout, TitlesEntriesCaptionsSplitBookingsAndEvaluationAtTheirPlaces)
{
    const auto R = PrintFont::Regular;
    const auto black = PrintColour::Black, gray = PrintColour::Gray, blue = PrintColour::Blue;
    const std::string check = "\u2714\uFE0E", cross = "\u2715";

    EinnahmePtr miete = Einnahme::make("Miete", "8400 Erloese", 119.0f, 19.0f);
    miete->setInnergemeinschaftlicherErwerb(true);
    miete->setDatum(*Calendar::localMidnight(2017, 7, 1));
    miete->setRechnungsnummer("R-17");
    EinnahmePtr buero = Einnahme::make("Buero", "4930 Bürobedarf", 10.7f, 7.0f);
    buero->setArt("Ausgabe");
    buero->setIsNonEU(true);
    buero->setDatum(*Calendar::localMidnight(2017, 12, 31) + 86399.0);
    EinnahmePtr papier = Einnahme::make("Papier", "", 10.0f, 0.0f);
    papier->setArt("Ausgabe");
    papier->setDatum(*Calendar::localMidnight(2018, 1, 2));
    EinnahmePtr toner = Einnahme::make("Toner", "", 0.7f, 7.5f);
    toner->setRechnungsnummer("T1");
    toner->setDatum(*Calendar::localMidnight(2018, 10, 11));
    buero->setChildTransactions({ papier, toner });
    const EinnahmeList list { miete, buero };
    const std::vector<std::string> evaluation = engineLines(list);
    ASSERT_GT(evaluation.size(), 46u); // so that it runs on to the second page

    const PrintLayout layout(list, kWidth, kHeight);
    EXPECT_EQ(layout.contentRectHeight(), 16.0);
    // 2 entries, 2 split bookings and the evaluation lines.
    EXPECT_EQ(layout.pageCount(), static_cast<int>(4 + evaluation.size()) / 50 + 1);
    EXPECT_EQ(layout.evaluationLines(), evaluation);

    std::vector<Expected> expected;
    auto line = [&](double y, PrintFont font, PrintColour colour, std::vector<std::string> texts) {
        const double xs[] = { 0, 50, 120, 155, 195, 235, 270, 320, 365, 405 };
        for (std::size_t c = 0; c < texts.size(); ++c)
            expected.push_back({ xs[c], y, font, colour, texts[c] });
    };
    line(0, PrintFont::Bold, black,
        { "Art", "Name", "Innerg.", "Non EU", "Brutto", "Netto", "Steuersatz", "St.betrag", "Datum", "Rg-Nr" });
    // Entry at place 0: caption 10 points, line 20 points below the place.
    line(10, R, gray, { "---> 8400 Erloese" });
    line(20, R, black, { "Einnahme", "Miete", check, cross, "119.00", "100.00", "19.0", "19.00", "1.7.2017", "R-17" });
    // Entry at place 1 (16), its split bookings at places 2 and 3 without an offset.
    line(26, R, gray, { "---> 4930 Bürobedarf" });
    line(36, R, black, { "Ausgabe", "Buero", cross, check, "10.70", "10.00", "7.0", "0.70", "31.12.2017", "" });
    line(32, R, blue, { "> Ausgabe", "Papier", cross, cross, "10.00", "10.00", "0.0", "0.00", "2.1.2018", "" });
    line(48, R, blue, { "> Einnahme", "Toner", cross, cross, "0.70", "0.65", "7.5", "0.05", "11.10.2018", "T1" });
    line(64, R, blue, { "Auswertung:" });
    // Places 5 to 49 hold the first 45 evaluation lines; place 50 starts page 2.
    for (std::size_t e = 0; e < 45; ++e)
        line(80 + 16 * e, R, blue, { evaluation[e] });

    const std::vector<PrintText> page0 = layout.textsOfPage(0);
    expectTexts(page0, expected);
    for (const PrintText& text : page0) {
        EXPECT_EQ(text.width, kWidth);
        EXPECT_EQ(text.height, 16.0);
        EXPECT_EQ(text.page, 0);
    }

    const std::vector<PrintText> page1 = layout.textsOfPage(1);
    ASSERT_FALSE(page1.empty());
    EXPECT_EQ(page1.front().y, 800.0);
    EXPECT_EQ(page1.front().page, 1);
    EXPECT_EQ(page1.front().text, evaluation[45]);

    // On paper narrower than a column's x, that column is left out.
    const PrintLayout narrow(list, 300.0, kHeight);
    EXPECT_EQ(narrow.textsOfPage(0).front().width, 300.0);
    EXPECT_EQ(narrow.textsOfPage(0).size(), page0.size() - 3 * 5); // three columns on five lines
}

// One entry with enough split bookings that entries, split bookings and
// evaluation lines add up to exactly 150 lines (and to one fewer).
TEST(PrintLayout, TheLastEvaluationLineEndsOnTheLastPage)
{
    const std::size_t evaluationSize = engineLines({ Einnahme::make("e", "", 1.0f, 19.0f) }).size();
    ASSERT_LE(evaluationSize, 98u); // so that split bookings fill places 1 to 50
    struct Case {
        std::size_t lines;
        int pages;
        double lastY; // of the last evaluation line, at place `lines`
        int lastPage;
    } const cases[] = {
        { 150, 4, 3 * 800.0, 3 }, // place 150 is the top of page 4
        { 149, 3, 2 * 800.0 + 49 * 16.0, 2 }, // place 149 is the last of page 3
    };
    for (const Case& c : cases) {
        const EinnahmeList list = withSplits(Einnahme::make("e", "", 1.0f, 19.0f), c.lines - 1 - evaluationSize);
        const PrintLayout layout(list, kWidth, kHeight);
        ASSERT_EQ(layout.pageCount(), c.pages) << c.lines;
        const std::vector<PrintText> last = layout.textsOfPage(c.lastPage);
        ASSERT_FALSE(last.empty());
        EXPECT_EQ(last.back().text, layout.evaluationLines().back());
        EXPECT_DOUBLE_EQ(last.back().y, c.lastY);
        EXPECT_EQ(last.back().page, c.lastPage);
        EXPECT_TRUE(layout.textsOfPage(c.pages).empty());
        // The split booking at place 50 opens page 2, the one at 49 closes page 1.
        const std::vector<PrintText> second = layout.textsOfPage(1);
        ASSERT_FALSE(second.empty());
        EXPECT_EQ(second.front().y, 800.0);
        EXPECT_EQ(second.front().text, "> Einnahme");
        EXPECT_EQ(layout.textsOfPage(0).back().y, 49 * 16.0);
    }
}

// On A4 (842 points high) the caption of the entry at place 49 starts 6.84
// points above the end of page 1 and runs on into page 2.
TEST(PrintLayout, ATextAcrossAPageEndIsListedOnBothPages)
{
    EinnahmeList list;
    for (int i = 0; i < 50; ++i)
        list.push_back(Einnahme::make("e" + std::to_string(i), "K" + std::to_string(i), 1.0f, 19.0f));
    const double height = 842.0, h = height / 50;
    const PrintLayout layout(list, 595.0, height);

    auto find = [](const std::vector<PrintText>& texts, const std::string& text) -> const PrintText* {
        for (const PrintText& t : texts)
            if (t.text == text)
                return &t;
        return nullptr;
    };
    for (int k : { 0, 1 }) {
        const std::vector<PrintText> texts = layout.textsOfPage(k);
        const PrintText* caption = find(texts, "---> K49");
        ASSERT_NE(caption, nullptr) << "page " << k;
        EXPECT_DOUBLE_EQ(caption->y, 49 * h + 10);
        EXPECT_EQ(caption->page, 0);
        for (const PrintText& t : texts) {
            EXPECT_LT(t.y, (k + 1) * height) << t.text;
            EXPECT_GT(t.y + t.height, k * height) << t.text;
        }
    }
    // The entry's own line lies wholly on page 2.
    EXPECT_EQ(find(layout.textsOfPage(0), "e49"), nullptr);
    const PrintText* line = find(layout.textsOfPage(1), "e49");
    ASSERT_NE(line, nullptr);
    EXPECT_DOUBLE_EQ(line->y, 49 * h + 20);
    EXPECT_EQ(line->page, 1);
}

} // namespace
} // namespace saldo
