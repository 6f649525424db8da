#include "platform/FileWriteErrorText.h"

#include "platform/FileWriteError.h"
#include "platform/PathText.h"

#include <QFileInfo>

#include <cerrno>

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
        text = error.systemError() == EPIPE
            ? QStringLiteral("Das Programm, das aus der Leitung las, hat vor dem Ende aufgehoert.")
            : QStringLiteral("Die Datei konnte nicht vollstaendig geschrieben werden; ist der Datentraeger voll?");
        break;
    case FileWriteError::Kind::NotRegularFile:
        text = QStringLiteral("Unter diesem Namen steht keine gewoehnliche Datei (ein Ordner, ein Geraet "
                              "oder eine Leitung); dort wird nichts gesichert.");
        break;
    case FileWriteError::Kind::HoldsLedger:
        // The detail is the rule itself, said here in full.
        return QStringLiteral("Die Datei ist ein Saldo-Ledger; darueber sichert nur das Dokument dieses Ledgers.");
    }
    if (!error.detail().empty())
        text += QStringLiteral(" (%1)").arg(QString::fromStdString(error.detail()));
    return text;
}

QString FileWriteErrorText::fileName(const QString& path)
{
    return QString::fromStdString(PathText::oneLine(QFileInfo(path).fileName().toStdString()));
}

} // namespace saldo::gui
