#pragma once

#include "app/Document.h"
#include "app/DocumentWindow.h"
#include "evaluation/FormTableModel.h"
#include "model/Einnahme.h"
#include "model/LedgerFile.h"
#include "platform/Calendar.h"

#include <QByteArray>
#include <QFile>
#include <QString>
#include <gtest/gtest.h>

#include <memory>

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

// An entry of the kind given, dated noon of the 15th of the month.
inline EinnahmePtr datedEntry(
    const char* name, const char* kategorie, const char* art, float brutto, float rate, int year = 2025, int month = 6)
{
    auto e = Einnahme::make(name, kategorie, brutto, rate);
    e->setArt(art);
    e->setDatum(Calendar::fromLocalFields({ year, month, 15, 12, 0, 0 }));
    return e;
}

// The texts of one column of a tax form's table, top to bottom.
inline QStringList formColumn(const FormTableModel& form, int column)
{
    QStringList cells;
    for (int row = 0; row < form.rowCount(); ++row)
        cells << form.index(row, column).data().toString();
    return cells;
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

// A document opened from a file at `path` of `count` sample entries, window made.
inline std::unique_ptr<Document> openedDocument(UserDefaults& defaults, const QString& path, int count)
{
    EXPECT_TRUE(writeBytes(path, encoded(sampleEntries(count))));
    auto document = std::make_unique<Document>(defaults);
    EXPECT_TRUE(document->readFromFile(path));
    document->makeWindowControllers();
    return document;
}

// A document read from `count` sample entries, its window shown.
inline std::unique_ptr<Document> shownDocument(UserDefaults& defaults, int count)
{
    auto document = std::make_unique<Document>(defaults);
    EXPECT_TRUE(document->readFromData(encoded(sampleEntries(count))));
    document->makeWindowControllers();
    document->windowController()->show();
    return document;
}

}  // namespace saldo::gui::testing
