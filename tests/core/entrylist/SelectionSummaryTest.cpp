#include "entrylist/SelectionSummary.h"
#include "evaluation/CalcEngine.h"

#include <gtest/gtest.h>

namespace saldo {
namespace {

TEST(SelectionSummaryTest, HeadingThenTheReportOfTheSelectedRowsInRowOrder)
{
    EinnahmeList shown;
    for (auto [brutto, steuersatz] :
        { std::pair { 119.0f, 19.0f }, { 10.0f, 7.0f }, { 50.0f, 0.0f }, { 30.0f, 19.0f } })
        shown.push_back(Einnahme::make("e", "", brutto, steuersatz));
    shown[1]->setArt("Ausgabe");

    // Rows out of order, one twice, one outside the list.
    const std::string text = selectionSummary(shown, { 3, 1, 3, 9 });
    const std::string heading = "Selektion: \n\n";
    ASSERT_EQ(text.substr(0, heading.size()), heading);
    EXPECT_EQ(sharedCalcEngine().einnahmen(), (EinnahmeList { shown[1], shown[3] }));

    sharedCalcEngine().calculate({ shown[1], shown[3] });
    const std::string expected = sharedCalcEngine().ergebnisString();
    EXPECT_FALSE(expected.empty());
    EXPECT_EQ(text.substr(heading.size()), expected);

    // Nothing selected: the heading alone, as the engine writes nothing for no entries.
    EXPECT_EQ(selectionSummary(shown, {}), heading);
    EXPECT_EQ(selectionSummary(shown, { 4 }), heading);
}

} // namespace
} // namespace saldo
