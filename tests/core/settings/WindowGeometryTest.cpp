#include "settings/WindowGeometry.h"

#include <gtest/gtest.h>

namespace saldo {
namespace {

using Size = WindowGeometry::Size;

TEST(WindowGeometryTest, SizesFitTheScreen)
{
    const Size preferred { 1440, 900 };
    const Size minimum { 900, 560 };
    struct Case {
        Size available;
        Size first;
        Size remembered; // a size remembered on another screen
        Size restored;
    };
    for (const Case& c : {
             // Large screen: the preferred size; the remembered one as it was.
             Case { { 2560, 1400 }, { 1440, 900 }, { 2000, 1200 }, { 2000, 1200 } },
             // 1600 x 1000: 90 % is exactly the preferred size.
             Case { { 1600, 1000 }, { 1440, 900 }, { 2000, 1200 }, { 1600, 1000 } },
             // A laptop's 1366 x 768 less a panel: 90 % of it, the remembered size clamped.
             Case { { 1366, 740 }, { 1229, 666 }, { 2000, 1200 }, { 1366, 740 } },
             // Smaller than the minimum: the minimum shrinks to 90 % as well.
             Case { { 800, 600 }, { 720, 540 }, { 300, 200 }, { 720, 540 } },
             Case { { 640, 480 }, { 576, 432 }, { 2000, 100 }, { 640, 432 } },
         }) {
        EXPECT_EQ(WindowGeometry::firstSize(preferred, c.available), c.first) << c.available.width;
        EXPECT_EQ(WindowGeometry::clampedSize(c.remembered, minimum, c.available), c.restored) << c.available.width;
    }
}

TEST(WindowGeometryTest, OnlyAListOfWholeNumbersOfTheRightLengthIsRead)
{
    InMemoryUserDefaults defaults;
    WindowGeometry::writeNumbers(defaults, "Fenster", { 1229, -5, 0 });
    EXPECT_EQ(defaults.stringArray("Fenster"), (std::vector<std::string> { "1229", "-5", "0" }));
    EXPECT_EQ(WindowGeometry::readNumbers(defaults, "Fenster", 3), (std::vector<int> { 1229, -5, 0 }));
    EXPECT_EQ(WindowGeometry::readNumbers(defaults, "Fenster", 2), std::nullopt);
    EXPECT_EQ(WindowGeometry::readNumbers(defaults, "Fehlt", 0), std::nullopt);

    for (const std::vector<std::string>& stored : std::vector<std::vector<std::string>> {
             { "12", "" }, { "12", "3.5" }, { "12", " 3" }, { "12", "3px" }, { "12", "99999999999" } }) {
        defaults.setStringArray("Fenster", stored);
        EXPECT_EQ(WindowGeometry::readNumbers(defaults, "Fenster", 2), std::nullopt) << stored[1];
    }
    defaults.setRawValue("Fenster", { false, {} });
    EXPECT_EQ(WindowGeometry::readNumbers(defaults, "Fenster", 0), std::nullopt);
}

} // namespace
} // namespace saldo
