#pragma once

#include "model/Einnahme.h"
#include "model/LedgerFile.h"

#include <QByteArray>
#include <QFile>
#include <QString>

#include <string>

namespace saldo::gui::testing {

// A few entries of different kinds and rates, each with its own name.
inline EinnahmeList sampleEntries(int count)
{
    EinnahmeList entries;
    for (int i = 0; i < count; ++i) {
        auto entry = Einnahme::make("Posten " + std::to_string(i + 1), "8400 Erlöse 19 % USt Erl19 ",
            119.0f * static_cast<float>(i + 1), i % 3 == 2 ? 7.0f : 19.0f);
        if (i % 2 == 1)
            entry->setArt(kArtAusgabe);
        entry->setDatum(788918400.0 + 86400.0 * 31.0 * i);  // 2026-01-01 onwards
        entries.push_back(entry);
    }
    return entries;
}

inline QByteArray encoded(const EinnahmeList& entries)
{
    const std::string bytes = LedgerFile::encode(entries);
    return QByteArray(bytes.data(), static_cast<qsizetype>(bytes.size()));
}

inline bool writeBytes(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

inline QByteArray readBytes(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

inline EinnahmeList decodeFile(const QString& path)
{
    const QByteArray bytes = readBytes(path);
    return LedgerFile::decode(std::string_view(bytes.constData(), static_cast<std::size_t>(bytes.size())));
}

}  // namespace saldo::gui::testing
