#pragma once

#include "platform/UserDefaults.h"
#include "settings/WindowGeometry.h"

namespace saldo::gui {

class DocumentWindow;

// The document window's layout as the user left it: the window's size, the
// positions of its three splitters (the outer one, the inner one between
// detail and summary, and the entry list's between table and selection
// summary) and the entry table's column widths. Closing a window keeps its
// layout in the user's preferences, beside the category list; a new window
// takes the layout kept last, its size clamped to the screen it opens on and
// its columns no wider than that screen. With nothing kept, a window opens at
// its preferred size, at most 90 % of the screen.
class WindowLayout {
public:
    static constexpr const char* kSizeKey = "Fenstergroesse";
    static constexpr const char* kSplittersKey = "Teiler";
    static constexpr const char* kColumnsKey = "Spaltenbreiten";
    static constexpr WindowGeometry::Size kPreferredSize { 1440, 900 };
    static constexpr WindowGeometry::Size kMinimumSize { 900, 560 };

    // The size and the column widths, for a window being made.
    static void restore(DocumentWindow& window, const UserDefaults& defaults);
    // The splitters, once the window has its size (when it is first shown):
    // a splitter resized later shares the change by its stretch factors, not
    // in the proportions it was given.
    static void restoreSplitters(DocumentWindow& window, const UserDefaults& defaults);
    // Keeps the layout of a shown window.
    static void save(const DocumentWindow& window, UserDefaults& defaults);
    // Fits the shown window's frame, title bar and borders included, into the
    // screen's free area, once the window manager has framed it. Answers
    // false while the frame is not known yet.
    static bool fitFrame(DocumentWindow& window);
};

} // namespace saldo::gui
