#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace saldo {

// The search field's menu as data: which field the typed text is matched
// against and how. The chosen item's title becomes the field's placeholder and
// is the only record of the search mode. Top-level items without a submenu
// choose a mode themselves; the four with a submenu only open it, and their
// submenu items choose the mode. All key equivalents are empty.
class SearchMenu {
public:
    struct Item {
        std::string title;
        // True when choosing the item sets the mode (the item carries the
        // mode-changing action); false for the items that only hold a submenu.
        bool choosesMode = true;
        std::vector<Item> submenu;
    };

    // "Menu".
    static std::string_view title();
    // The top-level items in menu order.
    static const std::vector<Item>& items();
    // The mode in force when a window opens: "Name".
    static std::string_view initialMode();
    // Every title that chooses a mode, in menu order (submenu items in place of
    // their parent).
    static std::vector<std::string> modes();
};

}  // namespace saldo
