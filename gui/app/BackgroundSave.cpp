#include "app/BackgroundSave.h"

#include "model/LedgerFile.h"
#include "platform/AtomicFileWriter.h"
#include "platform/FileWriteErrorText.h"

#include <QByteArrayView>
#include <QHash>

namespace saldo::gui {

namespace {

// Codes and writes; `encode` gives the bytes of the entries.
template <typename Encode> BackgroundSave::Outcome writeFile(const QString& path, Encode encode)
{
    BackgroundSave::Outcome outcome;
    try {
        const std::string bytes = encode();
        outcome.encoded = true;
        outcome.hash = qHash(QByteArrayView(bytes.data(), static_cast<qsizetype>(bytes.size())));
        AtomicFileWriter::write(path.toStdString(), bytes);
        outcome.written = true;
        outcome.stamp = FileStamp::of(path);
    } catch (const FileWriteError& error) {
        outcome.reason = FileWriteErrorText::reason(error);
    } catch (const std::exception& error) {
        outcome.reason = QStringLiteral("Die Eintraege konnten nicht kodiert werden (%1).").arg(
            QString::fromStdString(error.what()));
    }
    return outcome;
}

} // namespace

BackgroundSave::Outcome BackgroundSave::writeNow(const EinnahmeList& entries, const QString& path)
{
    return writeFile(path, [&] { return LedgerFile::encode(entries); });
}

BackgroundSave::BackgroundSave(EinnahmeList snapshot, SnapshotGate& gate, const QString& path, QObject* parent)
    : QObject(parent)
    , gate_(gate)
{
    gate_.open();
    result_ = std::async(std::launch::async, [this, snapshot = std::move(snapshot), path]() mutable {
        Outcome outcome = writeFile(path, [&] { return LedgerFile::encode(snapshot, gate_); });
        // The snapshot's hold on the entries ends here, off the main thread.
        EinnahmeList().swap(snapshot);
        QMetaObject::invokeMethod(this, &BackgroundSave::finished, Qt::QueuedConnection);
        return outcome;
    });
}

BackgroundSave::~BackgroundSave()
{
    if (!waited_)
        wait();
}

BackgroundSave::Outcome BackgroundSave::wait()
{
    waited_ = true;
    Outcome outcome = result_.get();
    gate_.close();
    return outcome;
}

} // namespace saldo::gui
