#pragma once

#include "platform/UserDefaults.h"

#include <optional>
#include <string>
#include <vector>

namespace saldo {

// How big a document window opens and how what it remembers is kept. A window
// with nothing remembered opens at its preferred size, shrunk to at most 90 %
// of the screen's free area in each direction; a remembered size is clamped
// between the window's minimum and the free area, and the minimum itself is
// shrunk like a first size, so that a first window always fits. Sizes, splitter positions and column widths are kept in
// the user's preferences beside the category list, each as a list of whole
// numbers written as decimal texts; a stored value that is not exactly such a
// list of the expected length counts as nothing remembered.
class WindowGeometry {
public:
    struct Size {
        int width = 0;
        int height = 0;
        bool operator==(const Size&) const = default;
    };

    // A window's place on the screen, and the margins the window manager's
    // frame (title bar and borders) adds around it.
    struct Rect {
        int x = 0;
        int y = 0;
        int width = 0;
        int height = 0;
        bool operator==(const Rect&) const = default;
    };
    struct Margins {
        int left = 0;
        int top = 0;
        int right = 0;
        int bottom = 0;
    };

    static constexpr int kScreenPercent = 90;

    static Size firstSize(Size preferred, Size available);
    static Size clampedSize(Size wanted, Size minimum, Size available);
    static Size clampedMinimum(Size minimum, Size available);
    // The window's content place whose frame lies inside the free area: the
    // content shrunk by what the frame needs (never below the clamped
    // minimum), then moved in where the frame reaches over an edge. A window
    // that fits stays where and as big as it is.
    static Rect fittedFrame(Rect content, Margins frame, Rect available, Size minimum);

    // The list stored under `key` when it holds exactly `count` whole numbers.
    static std::optional<std::vector<int>> readNumbers(
        const UserDefaults& defaults, const std::string& key, std::size_t count);
    static void writeNumbers(UserDefaults& defaults, const std::string& key, const std::vector<int>& numbers);
};

} // namespace saldo
