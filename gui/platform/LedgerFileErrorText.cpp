#include "platform/LedgerFileErrorText.h"

#include "model/LedgerFile.h"

namespace saldo::gui {

QString LedgerFileErrorText::reason(const LedgerFileError& error)
{
    switch (error.kind()) {
    case LedgerFileError::Kind::NotALedger:
        return QStringLiteral("kein Ledger");
    case LedgerFileError::Kind::Damaged:
        if (error.byte())
            return QStringLiteral("beschaedigt bei Byte %1").arg(*error.byte());
        return QStringLiteral("beschaedigt");
    case LedgerFileError::Kind::TooLarge:
        return QStringLiteral("groesser als 4 GiB");
    case LedgerFileError::Kind::NotRegularFile:
        return QStringLiteral("keine gewoehnliche Datei");
    case LedgerFileError::Kind::CannotRead:
        break;
    }
    return QStringLiteral("nicht lesbar: %1").arg(QString::fromStdString(error.reason()));
}

} // namespace saldo::gui
