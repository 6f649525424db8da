#include "app/BackgroundSave.h"

#include "model/LedgerFile.h"
#include "platform/AtomicFileWriter.h"
#include "platform/FileWriteErrorText.h"

#include <QByteArrayView>
#include <QHash>

namespace saldo::gui {

namespace {

BackgroundSave::Outcome writeFile(
    const QString& path, const EinnahmeList& snapshot, const SnapshotGate& gate, const std::optional<FileStamp>& expected)
{
    BackgroundSave::Outcome outcome;
    try {
        const std::string bytes = LedgerFile::encode(snapshot, gate);
        outcome.encoded = true;
        outcome.hash = qHash(QByteArrayView(bytes.data(), static_cast<qsizetype>(bytes.size())));
        AtomicFileWriter::Options options;
        if (expected)
            options.mayReplace = [&] { return FileStamp::of(path) == *expected; };
        AtomicFileWriter::Result result = AtomicFileWriter::write(path.toStdString(), bytes, options);
        if (result.kept) {
            outcome.kept = std::move(result.kept);
        } else {
            outcome.written = true;
            outcome.stamp = FileStamp::of(result.file);
        }
    } catch (const FileWriteError& error) {
        outcome.reason = FileWriteErrorText::reason(error);
    } catch (const std::exception& error) {
        outcome.reason = QStringLiteral("Die Eintraege konnten nicht kodiert werden (%1).").arg(
            QString::fromStdString(error.what()));
    }
    return outcome;
}

} // namespace

BackgroundSave::BackgroundSave(
    EinnahmeList snapshot, SnapshotGate& gate, const QString& path, std::optional<FileStamp> expected, QObject* parent)
    : QObject(parent)
    , gate_(gate)
{
    gate_.open();
    result_ = std::async(std::launch::async, [this, snapshot = std::move(snapshot), path, expected]() mutable {
        Outcome outcome = writeFile(path, snapshot, gate_, expected);
        // The snapshot's hold on the entries ends here, off the main thread.
        EinnahmeList().swap(snapshot);
        done_.store(true, std::memory_order_release);
        QMetaObject::invokeMethod(this, &BackgroundSave::finished, Qt::QueuedConnection);
        return outcome;
    });
}

BackgroundSave::~BackgroundSave()
{
    // An outcome nobody took: its kept bytes go with it.
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

bool BackgroundSave::replaceWithKept(Outcome& outcome)
{
    try {
        outcome.stamp = FileStamp::of(outcome.kept->renameOverTarget());
        outcome.written = true;
    } catch (const FileWriteError& error) {
        outcome.reason = FileWriteErrorText::reason(error);
    }
    outcome.kept.reset();
    return outcome.written;
}

} // namespace saldo::gui
