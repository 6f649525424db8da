#pragma once

class QCoreApplication;

namespace saldo::gui {

// Qt's own German texts for the standard dialogs, buttons, key names and
// context menus. Saldo speaks German whatever the locale, so they are loaded
// always: English buttons under German labels would be the worst of both.
// Without Debian's translations package the standard texts simply stay English.
class GermanTranslations {
public:
    // Installs the translations into the application; false when none were found.
    static bool install(QCoreApplication& application);
};

} // namespace saldo::gui
