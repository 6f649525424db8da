#include "app/AutosaveStore.h"

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>
#include <QSaveFile>
#include <QStandardPaths>
#include <QUuid>

#include <iostream>

namespace saldo::gui {

namespace {
QString& replacedFolder()
{
    static QString folder;
    return folder;
}

QString lockPathOf(const QString& filePath)
{
    return filePath + QStringLiteral(".lock");
}
} // namespace

QString AutosaveStore::folder()
{
    if (!replacedFolder().isEmpty())
        return replacedFolder();
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + QStringLiteral("/Saldo/Autosave");
}

void AutosaveStore::setFolder(const QString& folder)
{
    replacedFolder() = folder;
}

QString AutosaveStore::newFilePath(std::unique_ptr<QLockFile>* lock)
{
    const QString dir = folder();
    if (!QDir().mkpath(dir)) {
        std::cerr << "saldo: cannot make the folder " << dir.toStdString() << '\n';
        lock->reset();
        return QString();
    }
    for (;;) {
        const QString path = QDir(dir).filePath(
            QStringLiteral("Unbenannt-%1.saldo").arg(QUuid::createUuid().toString(QUuid::WithoutBraces)));
        if (QFileInfo::exists(path))
            continue;
        auto candidate = std::make_unique<QLockFile>(lockPathOf(path));
        if (!candidate->tryLock(0)) {
            lock->reset();
            return QString();
        }
        *lock = std::move(candidate);
        return path;
    }
}

std::unique_ptr<QLockFile> AutosaveStore::claim(const QString& filePath)
{
    auto lock = std::make_unique<QLockFile>(lockPathOf(filePath));
    // A lock left by a program that is no longer running counts as stale at once.
    if (!lock->tryLock(0))
        return nullptr;
    return lock;
}

QStringList AutosaveStore::files()
{
    QStringList paths;
    const QFileInfoList found
        = QDir(folder()).entryInfoList({ QStringLiteral("*.saldo") }, QDir::Files, QDir::Time | QDir::Reversed);
    for (const QFileInfo& info : found)
        paths << info.absoluteFilePath();
    return paths;
}

void AutosaveStore::remove(const QString& filePath)
{
    QFile::remove(filePath);
}

} // namespace saldo::gui
