#pragma once

#include <QList>
#include <QString>

class QMainWindow;

namespace saldo::gui {

// The keyboard shortcuts of a window, read from its actions at the moment
// they are asked for, so the list shows what the keys do now: first the
// items of the menu bar, menu by menu in menu order (a submenu's items under
// its menu), then the window's other actions that have a shortcut, as
// "Weitere". Titles lose their mnemonic marks and ellipses; keys are written
// as the desktop writes them ("Strg+Umschalt+Z"), several of one action
// separated by commas.
class ShortcutList {
public:
    static constexpr const char* kOtherGroup = "Weitere";

    struct Row {
        QString menu;
        QString command;
        QString keys;
    };

    static QList<Row> of(const QMainWindow& window);
    // A title as shown: "&Oeffnen…" is "Oeffnen", "A && B" is "A & B".
    static QString plainTitle(const QString& title);
};

} // namespace saldo::gui
