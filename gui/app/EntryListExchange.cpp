#include "app/EntryListExchange.h"

#include "app/Document.h"
#include "exchange/CsvExport.h"
#include "exchange/EntryListExport.h"
#include "model/LedgerFile.h"
#include "platform/Dialogs.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMainWindow>
#include <QPointer>
#include <QStatusBar>
#include <QUndoStack>

#include <exception>
#include <iostream>
#include <string>
#include <string_view>

namespace saldo::gui {

namespace {
const QString kUnreadable = QStringLiteral("Die Datei „%1“ konnte nicht gelesen werden.");
const QString kUnwritable = QStringLiteral("Die Datei „%1“ konnte nicht geschrieben werden.");

// The reason goes to standard error; a write error names its file itself.
void reportError(const std::exception& error)
{
    std::cerr << "saldo: " << error.what() << '\n';
}
} // namespace

EntryListExchange::EntryListExchange(Document& document, QMainWindow& window)
    : QObject(&window)
    , document_(document)
    , window_(window)
{
}

void EntryListExchange::Sichern()
{
    // The panel is the window's child and closes with it; should this object
    // go first, the completion does nothing.
    QPointer<EntryListExchange> self(this);
    Dialogs::instance().beginSaveFileName(
        &window_, QStringLiteral("Eintraege exportieren"), startFolder(), QString(), [self](const QString& path) {
            if (self && !path.isEmpty())
                self->exportEntries(path);
        });
}

void EntryListExchange::exportEntries(const QString& chosenPath)
{
    const std::string chosen = QFile::encodeName(chosenPath).toStdString();
    try {
        EntryListExport::write(chosen, document_.einnahmen());
    } catch (const std::exception& error) {
        reportError(error);
        showFailure(kUnwritable, QFile::decodeName(QByteArray::fromStdString(EntryListExport::filePath(chosen))));
    }
}

void EntryListExchange::Laden()
{
    const QString path = Dialogs::instance().getOpenFileName(&window_, QStringLiteral("Eintraege laden"),
        QStringLiteral("Eintragslisten (*.plist *.saldo);;Alle Dateien (*)"));
    if (path.isEmpty())
        return;
    EinnahmeList entries;
    try {
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly))
            throw LedgerFileError(file.errorString().toStdString());
        const QByteArray bytes = file.readAll();
        if (file.error() != QFileDevice::NoError)
            throw LedgerFileError(file.errorString().toStdString());
        entries = LedgerFile::decode(std::string_view(bytes.constData(), static_cast<std::size_t>(bytes.size())));
    } catch (const std::exception& error) {
        std::cerr << "saldo: " << QFile::encodeName(path).constData() << ": " << error.what() << '\n';
        showFailure(kUnreadable, path);
        return;
    }
    const std::size_t replaced = document_.backupEinnahmen().size();
    const std::size_t loaded = entries.size();
    document_.replaceAllEntries(std::move(entries));
    window_.statusBar()->showMessage(loadedText(loaded, replaced), kLoadedMessageMilliseconds);
    // The message speaks of the load: the next step, its undo included, ends it.
    auto* once = new QObject(this);
    connect(document_.undoManager(), &QUndoStack::indexChanged, once, [this, once] {
        window_.statusBar()->clearMessage();
        once->deleteLater();
    });
}

QString EntryListExchange::loadedText(std::size_t loaded, std::size_t replaced)
{
    const QString entries = loaded == 1 ? QStringLiteral("1 Eintrag") : QStringLiteral("%1 Eintraege").arg(loaded);
    const QString before
        = replaced == 1 ? QStringLiteral("1 bisheriger") : QStringLiteral("%1 bisherige").arg(replaced);
    return QStringLiteral("%1 geladen, %2 ersetzt. Bearbeiten ▸ Widerrufen holt den vorigen Stand zurueck.")
        .arg(entries, before);
}

void EntryListExchange::exportTable()
{
    const QString suggested
        = QDir(startFolder()).filePath(QFileInfo(document_.displayName()).completeBaseName() + QStringLiteral(".csv"));
    QString path = Dialogs::instance().getSaveFileName(
        &window_, QStringLiteral("Als Tabelle exportieren"), suggested, QStringLiteral("CSV-Tabellen (*.csv)"));
    if (path.isEmpty())
        return;
    if (!path.endsWith(QStringLiteral(".csv"), Qt::CaseInsensitive))
        path += QStringLiteral(".csv");
    try {
        CsvExport::write(QFile::encodeName(path).toStdString(), document_.einnahmen());
    } catch (const std::exception& error) {
        reportError(error);
        showFailure(kUnwritable, path);
    }
}

QString EntryListExchange::startFolder() const
{
    return document_.isUntitled() ? QDir::homePath() : QFileInfo(document_.filePath()).absolutePath();
}

void EntryListExchange::showFailure(const QString& format, const QString& path)
{
    window_.statusBar()->showMessage(format.arg(QFileInfo(path).fileName()), kStatusMessageMilliseconds);
}

} // namespace saldo::gui
