#pragma once

#include <QPixmap>

namespace saldo::gui {

// The status circles of the name column, looked up by the entry's image name
// ("greenCircle", "redCircle") in the program's resources (:/images/NAME.png)
// and scaled to the row. When a resource is missing a circle of that colour is
// drawn instead. Each pixmap is made once and then shared.
class StatusImages {
public:
    static constexpr int kSize = 12;
    static QPixmap pixmap(const char* imageName);
};

} // namespace saldo::gui
