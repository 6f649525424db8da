#include "platform/SettingsUserDefaults.h"

#include <QFile>
#include <QFileInfo>
#include <QStringDecoder>

#include <iostream>

namespace saldo::gui {

namespace {
QString keyOf(const std::string& key)
{
    return QString::fromStdString(key);
}

// True when the text is something QSettings writes: UTF-8 without control
// characters, every line blank, a [section], a comment, a key=value or the
// continuation of a line ending in a backslash. QSettings reads anything else
// without complaint and drops what it did not understand when it writes.
bool looksLikeSettingsText(const QByteArray& bytes)
{
    QStringDecoder decoder(QStringDecoder::Utf8);
    const QString text = decoder(bytes);
    if (decoder.hasError())
        return false;
    for (const QChar c : text) {
        if (c.category() == QChar::Other_Control && c != u'\t' && c != u'\n' && c != u'\r')
            return false;
    }
    bool continued = false;
    for (const QString& rawLine : text.split(u'\n')) {
        const QString line = rawLine.trimmed();
        const bool ok = continued || line.isEmpty() || line.startsWith(u';') || line.startsWith(u'#')
            || (line.startsWith(u'[') && line.endsWith(u']')) || line.contains(u'=');
        if (!ok)
            return false;
        continued = line.endsWith(u'\\');
    }
    return true;
}

std::unique_ptr<QSettings> programSettings()
{
    return std::make_unique<QSettings>(
        QSettings::NativeFormat, QSettings::UserScope, QStringLiteral("Saldo"), QStringLiteral("Saldo"));
}
} // namespace

SettingsUserDefaults::SettingsUserDefaults()
    : settings_(programSettings())
{
    checkReadable();
}

SettingsUserDefaults::SettingsUserDefaults(const QString& iniFilePath)
    : settings_(std::make_unique<QSettings>(iniFilePath, QSettings::IniFormat))
{
    checkReadable();
}

QString SettingsUserDefaults::programFileName()
{
    return programSettings()->fileName();
}

void SettingsUserDefaults::checkReadable()
{
    readOnly_ = settings_->status() != QSettings::NoError
        || (QFileInfo::exists(settings_->fileName()) && !QFileInfo(settings_->fileName()).isReadable());
    if (!readOnly_) { // on Linux the native format is this text too
        QFile file(settings_->fileName());
        if (file.open(QIODevice::ReadOnly))
            readOnly_ = !looksLikeSettingsText(file.readAll());
    }
    if (!readOnly_) {
        for (const QString& key : settings_->allKeys()) {
            if (!settings_->value(key).isValid()) {
                readOnly_ = true;
                break;
            }
        }
    }
    if (readOnly_) {
        std::cerr << "saldo: " << settings_->fileName().toStdString()
                  << " cannot be read completely; it is left as it is and changes to the settings last until "
                     "Saldo ends\n";
    }
}

bool SettingsUserDefaults::hasValue(const std::string& key) const
{
    if (readOnly_ && changes_.hasValue(key))
        return true;
    const QString k = keyOf(key);
    return settings_->contains(k) || settings_->childGroups().contains(k);
}

std::optional<std::vector<std::string>> SettingsUserDefaults::stringArray(const std::string& key) const
{
    if (readOnly_ && changes_.hasValue(key))
        return changes_.stringArray(key);
    const QString k = keyOf(key);
    if (settings_->contains(k)) {
        // A plain value: only a real list of texts counts (written by hand or
        // by another program); a single text is not a list.
        const QVariant value = settings_->value(k);
        if (value.typeId() != QMetaType::QStringList)
            return std::nullopt;
        std::vector<std::string> list;
        for (const QString& item : value.toStringList())
            list.push_back(item.toStdString());
        return list;
    }
    if (!settings_->childGroups().contains(k))
        return std::nullopt;

    settings_->beginGroup(k);
    const QStringList keys = settings_->childKeys();
    bool ok = false;
    const qlonglong size = settings_->value(QStringLiteral("size")).toLongLong(&ok);
    std::optional<std::vector<std::string>> result;
    if (ok && size >= 0 && size <= keys.size()) {
        std::vector<std::string> list;
        list.reserve(static_cast<std::size_t>(size));
        for (qlonglong i = 1; i <= size; ++i) {
            const QString itemKey = QString::number(i);
            if (!keys.contains(itemKey))
                break;
            const QVariant item = settings_->value(itemKey);
            if (item.typeId() != QMetaType::QString)
                break;
            list.push_back(item.toString().toStdString());
        }
        if (static_cast<qlonglong>(list.size()) == size)
            result = std::move(list);
    }
    settings_->endGroup();
    return result;
}

void SettingsUserDefaults::setStringArray(const std::string& key, const std::vector<std::string>& value)
{
    if (readOnly_) {
        changes_.setStringArray(key, value);
        return;
    }
    const QString k = keyOf(key);
    settings_->remove(k);
    settings_->beginGroup(k);
    settings_->setValue(QStringLiteral("size"), static_cast<qlonglong>(value.size()));
    for (std::size_t i = 0; i < value.size(); ++i)
        settings_->setValue(QString::number(i + 1), QString::fromStdString(value[i]));
    settings_->endGroup();
    settings_->sync();
}

std::optional<bool> SettingsUserDefaults::boolValue(const std::string& key) const
{
    if (readOnly_ && changes_.hasValue(key))
        return changes_.boolValue(key);
    const QVariant value = settings_->value(keyOf(key));
    if (value.typeId() == QMetaType::Bool)
        return value.toBool();
    // The settings file keeps it as text.
    if (value.typeId() == QMetaType::QString) {
        if (value.toString() == QStringLiteral("true"))
            return true;
        if (value.toString() == QStringLiteral("false"))
            return false;
    }
    return std::nullopt;
}

void SettingsUserDefaults::setBool(const std::string& key, bool value)
{
    if (readOnly_) {
        changes_.setBool(key, value);
        return;
    }
    settings_->setValue(keyOf(key), value);
    settings_->sync();
}

} // namespace saldo::gui
