#include "printing/PrintLayout.h"

#include "evaluation/CalcEngine.h"
#include "platform/Calendar.h"
#include "printing/PrintColumns.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <utility>
#include <vector>

namespace saldo {
namespace {

// Paper of 600 x 800 points: line places 16 points apart, so that every place
// below is a small sum that can be checked by hand.
constexpr double kWidth = 600.0, kHeight = 800.0;

std::vector<std::string> engineLines(const EinnahmeList& list)
{
    sharedCalcEngine().calculate(list);
    return sharedCalcEngine().ergebnisStringAsArray();
}

// "x y width face colour text", so that a mismatch shows the whole text.
std::string describe(double x, double y, double width, PrintFont font, PrintColour colour, const std::string& text)
{
    return std::to_string(x) + " " + std::to_string(y) + " " + std::to_string(width) + " "
        + std::to_string(static_cast<int>(font)) + " " + std::to_string(static_cast<int>(colour)) + " " + text;
}
std::string describe(const PrintText& t)
{
    return describe(t.x, t.y, t.width, t.font, t.colour, t.text);
}

TEST(PrintLayout, PageCountIsTheQuotientByFiftyAndOneMoreForAnyEntry)
{
    struct Case {
        std::size_t entries;
        float extra;
        int pages;
    } const cases[] = {
        { 0, 0.0f, 0 }, { 1, 39.0f, 1 }, { 1, 48.0f, 1 }, // 0, 40 and 49 lines
        { 10, 40.0f, 2 }, { 4, 96.0f, 3 }, // exactly 50 and 100 lines: one page more than they fill
        { 0, 60.0f, 2 }, { 0, 50.0f, 1 }, // no entries: one page more only when the extra lines leave a rest
    };
    for (const Case& c : cases)
        EXPECT_EQ(PrintLayout::pageCount(c.entries, c.extra), c.pages) << c.entries << " + " << c.extra;

    EXPECT_TRUE(PrintLayout({}, kWidth, kHeight).textsOfPage(0).empty());
}

TEST(PrintLayout, TitlesEntriesCaptionsSplitBookingsAndEvaluationAtTheirPlaces)
{
    const auto R = PrintFont::Regular;
    const auto black = PrintColour::Black, gray = PrintColour::Gray, blue = PrintColour::Blue;
    const std::string check = "\u2714\uFE0E", cross = "\u2715";
    auto entry = [](const char* art, const char* name, const char* kategorie, float brutto, float rate,
                     ReferenceSeconds datum, const char* rgNr) {
        EinnahmePtr e = Einnahme::make(name, kategorie, brutto, rate);
        e->setArt(art);
        e->setDatum(datum);
        e->setRechnungsnummer(rgNr);
        return e;
    };
    EinnahmePtr miete
        = entry("Einnahme", "Miete", "8400 Erloese", 119.0f, 19.0f, *Calendar::localMidnight(2017, 7, 1), "R-17");
    miete->setInnergemeinschaftlicherErwerb(true);
    EinnahmePtr buero = entry(
        "Ausgabe", "Buero", "4930 Bürobedarf", 10.7f, 7.0f, *Calendar::localMidnight(2017, 12, 31) + 86399.0, "");
    buero->setIsNonEU(true);
    buero->setChildTransactions({ entry("Ausgabe", "Papier", "", 10.0f, 0.0f, *Calendar::localMidnight(2018, 1, 2), ""),
        entry("Einnahme", "Toner", "", 0.7f, 7.5f, *Calendar::localMidnight(2018, 10, 11), "T1") });
    const EinnahmeList list { miete, buero };
    const std::vector<std::string> evaluation = engineLines(list);
    ASSERT_GT(evaluation.size(), 46u); // so that it runs on to the second page

    const PrintLayout layout(list, kWidth, kHeight);
    EXPECT_EQ(layout.contentRectHeight(), 16.0);
    EXPECT_EQ(layout.pageCount(), static_cast<int>(4 + evaluation.size()) / 50 + 1); // 2 entries, 2 split bookings
    EXPECT_EQ(layout.evaluationLines(), evaluation);

    // The places of the printout's lines are fixed: an entry's line 20 points
    // below its place, its caption 10, each split booking at its own place.
    // On A4 (16.84 points a line) a split booking therefore starts 3.16 points
    // above its entry's line; that stays. Each column's text is cut 2 points
    // before the next column (a long name used to run over the flags); a
    // caption and the evaluation lines reach the paper's edge.
    std::vector<std::string> expected;
    auto line = [&](double y, PrintFont font, PrintColour colour, std::vector<std::string> texts) {
        const double xs[] = { 0, 50, 120, 155, 195, 235, 270, 320, 365, 405, kWidth + 2 };
        for (std::size_t c = 0; c < texts.size(); ++c)
            expected.push_back(describe(xs[c], y, xs[c + 1] - xs[c] - 2, font, colour, texts[c]));
    };
    auto across = [&](double y, PrintColour colour, const std::string& text) {
        expected.push_back(describe(0, y, kWidth, PrintFont::Regular, colour, text));
    };
    line(0, PrintFont::Bold, black,
        { "Art", "Name", "Innerg.", "Non EU", "Brutto", "Netto", "Steuersatz", "St.betrag", "Datum", "Rg-Nr" });
    // Entry at place 0: caption 10 points, line 20 points below the place.
    across(10, gray, "---> 8400 Erloese");
    line(20, R, black, { "Einnahme", "Miete", check, cross, "119.00", "100.00", "19.0", "19.00", "1.7.2017", "R-17" });
    // Entry at place 1 (16), its split bookings at places 2 and 3 without an offset.
    across(26, gray, "---> 4930 Bürobedarf");
    line(36, R, black, { "Ausgabe", "Buero", cross, check, "10.70", "10.00", "7.0", "0.70", "31.12.2017", "" });
    line(32, R, blue, { "> Ausgabe", "Papier", cross, cross, "10.00", "10.00", "0.0", "0.00", "2.1.2018", "" });
    line(48, R, blue, { "> Einnahme", "Toner", cross, cross, "0.70", "0.65", "7.5", "0.05", "11.10.2018", "T1" });
    across(64, blue, "Auswertung:");
    for (std::size_t e = 0; e < 45; ++e) // places 5 to 49; place 50 starts page 2
        across(80 + 16 * e, blue, evaluation[e]);

    std::vector<std::string> actual;
    for (const PrintText& t : layout.textsOfPage(0)) {
        actual.push_back(describe(t));
        EXPECT_TRUE(t.height == 16.0 && t.page == 0) << t.text;
    }
    EXPECT_EQ(actual, expected);
    EXPECT_EQ(describe(layout.textsOfPage(1).at(0)), describe(0, 800, kWidth, R, blue, evaluation[45]));
    // The last evaluation line at place 4 + evaluation lines ends the last page.
    const std::size_t lastPlace = 4 + evaluation.size();
    EXPECT_EQ(describe(layout.textsOfPage(layout.pageCount() - 1).back()),
        describe(0, (lastPlace / 50) * 800.0 + (lastPlace % 50) * 16.0, kWidth, R, blue, evaluation.back()));
    EXPECT_TRUE(layout.textsOfPage(layout.pageCount()).empty());
    // On paper 300 points wide, the last three columns of the five lines are left out.
    EXPECT_EQ(PrintLayout(list, 300.0, kHeight).textsOfPage(0).size(), expected.size() - 3 * 5);
}

// On A4 (842 points high) the caption of the entry at place 49 starts 6.84
// points above the end of page 1 and runs on into page 2; its line lies on page 2.
TEST(PrintLayout, ATextAcrossAPageEndIsListedOnBothPages)
{
    EinnahmeList list;
    for (int i = 0; i < 50; ++i)
        list.push_back(Einnahme::make("e" + std::to_string(i), "K" + std::to_string(i), 1.0f, 19.0f));
    const PrintLayout layout(list, 595.0, 842.0);
    std::vector<std::string> seen;
    for (int k : { 0, 1 })
        for (const PrintText& t : layout.textsOfPage(k)) {
            EXPECT_TRUE(t.y < (k + 1) * 842.0 && t.y + t.height > k * 842.0) << t.text << " on page " << k;
            if (t.text == "---> K49" || t.text == "e49")
                seen.push_back(std::to_string(k) + ": " + t.text + " of page " + std::to_string(t.page) + " at "
                    + std::to_string(t.y));
        }
    EXPECT_EQ(seen,
        (std::vector<std::string> { "0: ---> K49 of page 0 at 835.160000", "1: ---> K49 of page 0 at 835.160000",
            "1: e49 of page 1 at 845.160000" }));
}

TEST(PrintColumns, RatesInTheirShortestForm)
{
    const float inf = std::numeric_limits<float>::infinity();
    const std::pair<float, const char*> rates[]
        = { { 19.0f, "19.0" }, { 0.0f, "0.0" }, { -0.0f, "-0.0" }, { 7.5f, "7.5" }, { 0.1f, "0.1" },
              { 0.0001f, "0.0001" }, { 16777215.0f, "16777215.0" }, { 16777216.0f, "1.6777216e+07" },
              { 1e-5f, "1.0e-05" }, { std::nanf(""), "nan" }, { inf, "inf" }, { -inf, "-inf" } };
    for (const auto& [value, text] : rates)
        EXPECT_EQ(PrintColumns::rate(value), text);
}

} // namespace
} // namespace saldo
