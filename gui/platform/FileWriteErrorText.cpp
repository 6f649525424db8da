#include "platform/FileWriteErrorText.h"

#include "platform/FileWriteError.h"

namespace saldo::gui {

QString FileWriteErrorText::reason(const FileWriteError& error)
{
    QString text;
    switch (error.kind()) {
    case FileWriteError::Kind::ReadOnly:
        text = QStringLiteral("Die Datei ist schreibgeschuetzt.");
        break;
    case FileWriteError::Kind::CannotCreate:
        text = QStringLiteral("Die Datei kann in diesem Ordner nicht angelegt werden.");
        break;
    case FileWriteError::Kind::WriteFailed:
        text = QStringLiteral("Die Datei konnte nicht vollstaendig geschrieben werden; ist der Datentraeger voll?");
        break;
    case FileWriteError::Kind::NotRegularFile:
        text = QStringLiteral("Unter diesem Namen steht keine gewoehnliche Datei (ein Ordner, ein Geraet "
                              "oder eine Leitung); dort wird nichts gesichert.");
        break;
    case FileWriteError::Kind::HoldsLedger:
        // The detail is the rule itself, said here in full.
        return QStringLiteral("Die Datei ist ein Saldo-Ledger; nur das Dokument selbst sichert darueber.");
    }
    if (!error.detail().empty())
        text += QStringLiteral(" (%1)").arg(QString::fromStdString(error.detail()));
    return text;
}

} // namespace saldo::gui
