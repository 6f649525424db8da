// A 64 MiB name took 56 s and 2.6 GB to open in a window: cells and the form
// show at most the first 10,000 characters of a text.
#include "entrylist/ShownText.h"

#include <gtest/gtest.h>

#include <string>

namespace saldo {
namespace {

TEST(ShownTextTest, AtMostTenThousandCharactersNeverACharacterCutInTwo)
{
    const std::size_t most = ShownText::kMostShown;
    const struct {
        std::string text;
        std::size_t shownBytes;
    } cases[] = {
        { "Miete", 5 },
        { std::string(most, 'x'), most },
        { std::string(most + 1, 'x'), most },
        // Two-byte and four-byte characters: the view ends after whole characters.
        { std::string(most - 1, 'x') + "üü", most + 1 },
        { "😀" + std::string(most, 'x'), 4 + most - 1 },
        { std::string(most - 1, 'x') + "😀", most + 3 },
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text.size());
        EXPECT_EQ(ShownText::of(c.text), std::string_view(c.text).substr(0, c.shownBytes));
        EXPECT_EQ(ShownText::isCut(c.text), c.shownBytes < c.text.size());
    }
}

} // namespace
} // namespace saldo
