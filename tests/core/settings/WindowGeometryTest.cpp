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

// At 1366 x 768 a window clamped to the free area grew by its title bar and
// borders beyond it and hid its status bar: the frame is what has to fit.
TEST(WindowGeometryTest, TheFrameFitsTheFreeArea)
{
    using Rect = WindowGeometry::Rect;
    const WindowGeometry::Margins frame { 1, 24, 1, 4 };
    const Rect screen { 0, 0, 1366, 768 };
    const Size minimum { 900, 560 };
    struct Case {
        Rect content;
        Rect available;
        Rect fitted;
    };
    for (const Case& c : {
             // Clamped to the free area, then shrunk by the frame and moved in.
             Case { { 1, 24, 1366, 768 }, screen, { 1, 24, 1364, 740 } },
             // A panel at the top: the frame starts below it.
             Case { { 1, 24, 1366, 740 }, { 0, 28, 1366, 740 }, { 1, 52, 1364, 712 } },
             // Fits: left as it is.
             Case { { 200, 100, 1000, 600 }, screen, { 200, 100, 1000, 600 } },
             // Reaches over the right and bottom edges: moved in, not shrunk.
             Case { { 600, 300, 1000, 600 }, screen, { 365, 164, 1000, 600 } },
             // A free area smaller than the minimum and the frame: the minimum gives way.
             Case { { 0, 0, 900, 560 }, { 0, 0, 640, 480 }, { 1, 24, 638, 452 } },
         }) {
        EXPECT_EQ(WindowGeometry::fittedFrame(c.content, frame, c.available, minimum), c.fitted)
            << c.content.x << "," << c.content.y << " " << c.content.width << "x" << c.content.height;
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
