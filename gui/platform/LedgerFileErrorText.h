#pragma once

#include <QString>

namespace saldo {
class LedgerFileError;
}

namespace saldo::gui {

// Says in a few German words why a file could not be read as a ledger, for a
// status bar or after a message: "kein Ledger", "beschaedigt bei Byte 512",
// "groesser als 4 GiB", "keine gewoehnliche Datei", "nicht lesbar (…)".
class LedgerFileErrorText {
public:
    static QString reason(const LedgerFileError& error);
};

} // namespace saldo::gui
