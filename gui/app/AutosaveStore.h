#pragma once

#include <QString>
#include <QStringList>

#include <memory>

class QByteArray;
class QLockFile;

namespace saldo::gui {

// The folder where untitled documents with changes are kept safe against a
// crash (in the application data folder: ~/.local/share/Saldo/Autosave):
// one ledger file per untitled document, written a few seconds after its last change and removed when the
// document is saved under a name or closed without saving. Each file has a
// lock file beside it, held by the running program that writes it, so that a
// second running Saldo neither offers nor deletes the files of the first; the
// lock of a program that crashed is stale and can be taken over.
class AutosaveStore {
public:
    // The folder (made on first write); tests point it elsewhere.
    static QString folder();
    static void setFolder(const QString& folder);

    // A new, unused file name in the folder for one untitled document, with its
    // lock taken; nullptr lock when the folder cannot be made.
    static QString newFilePath(std::unique_ptr<QLockFile>* lock);

    // Takes the lock of a file found in the folder; nullptr while a running
    // program holds it.
    static std::unique_ptr<QLockFile> claim(const QString& filePath);

    // The ledger files in the folder, oldest first.
    static QStringList files();

    // Removes the file; the lock goes with its owner.
    static void remove(const QString& filePath);
};

} // namespace saldo::gui
