#include "platform/SettingsUserDefaults.h"

#include "platform/PathText.h"

#include <QFile>
#include <QFileInfo>
#include <QMap>
#include <QStandardPaths>
#include <QStringDecoder>
#include <QTemporaryDir>

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

// The values of a settings text by section and key ("Gruppe/1" -> "a"), as
// the lines stand: for comparing a file with what QSettings would write.
QMap<QString, QString> valuesOf(const QByteArray& bytes)
{
    QMap<QString, QString> values;
    QString section;
    for (const QString& rawLine : QString::fromUtf8(bytes).split(u'\n')) {
        const QString line = rawLine.trimmed();
        if (line.startsWith(u'[') && line.endsWith(u']')) {
            section = line.mid(1, line.size() - 2);
            if (section == QLatin1String("General"))
                section.clear();
            continue;
        }
        const qsizetype equals = line.indexOf(u'=');
        if (equals <= 0 || line.startsWith(u';') || line.startsWith(u'#'))
            continue;
        const QString key = line.left(equals).trimmed();
        values.insert(section.isEmpty() ? key : section + u'/' + key, line.mid(equals + 1).trimmed());
    }
    return values;
}

// True when writing the settings back would keep each of these values as
// the file holds it. QSettings rewrites the whole file, each value in its
// own form: a value another program wrote in a form QSettings does not keep
// (a byte array in a variant, a list of variants) would come back changed.
// (A text always comes back as the same text.)
bool valuesSurviveRewrite(const QSettings& settings, const QStringList& keys, const QByteArray& bytes)
{
    if (keys.isEmpty())
        return true;
    QTemporaryDir scratch;
    if (!scratch.isValid())
        return false;
    const QString copyPath = scratch.filePath(QStringLiteral("Kopie.conf"));
    {
        QSettings copy(copyPath, QSettings::IniFormat);
        for (const QString& key : keys)
            copy.setValue(key, settings.value(key));
    }
    QFile copy(copyPath);
    if (!copy.open(QIODevice::ReadOnly))
        return false;
    const QMap<QString, QString> written = valuesOf(copy.readAll());
    const QMap<QString, QString> held = valuesOf(bytes);
    for (const QString& key : keys) {
        if (written.value(key) != held.value(key))
            return false;
    }
    return true;
}

// The program's settings file: where QSettings keeps organisation "Saldo",
// application "Saldo" in its native format on this system.
QString programSettingsPath()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + QStringLiteral("/Saldo/Saldo.conf");
}
} // namespace

SettingsUserDefaults::SettingsUserDefaults()
    : SettingsUserDefaults(programSettingsPath())
{
}

SettingsUserDefaults::SettingsUserDefaults(const QString& iniFilePath)
{
    // A name that is no regular file (a pipe would hang the start, a link
    // to a device read without end) or a file larger than any settings the
    // program writes is not read at all.
    const QFileInfo info(iniFilePath);
    if (info.exists() && (!info.isFile() || info.size() > kLargestFile)) {
        std::cerr << "saldo: " << PathText::oneLine(QFile::encodeName(iniFilePath).toStdString())
                  << (info.isFile() ? " is larger than settings are" : " is not a regular file")
                  << "; it is left as it is and changes to the settings last until Saldo ends\n";
        readOnly_ = true;
        return;
    }
    settings_ = std::make_unique<QSettings>(iniFilePath, QSettings::IniFormat);
    checkReadable();
}

QString SettingsUserDefaults::programFileName()
{
    return programSettingsPath();
}

void SettingsUserDefaults::checkReadable()
{
    readOnly_ = settings_->status() != QSettings::NoError
        || (QFileInfo::exists(settings_->fileName()) && !QFileInfo(settings_->fileName()).isReadable());
    QByteArray bytes;
    if (!readOnly_) {
        QFile file(settings_->fileName());
        if (file.open(QIODevice::ReadOnly))
            bytes = file.read(kLargestFile + 1);
        readOnly_ = !looksLikeSettingsText(bytes);
    }
    if (!readOnly_) {
        QStringList notText;
        for (const QString& key : settings_->allKeys()) {
            const QVariant value = settings_->value(key);
            if (!value.isValid()) {
                readOnly_ = true;
                break;
            }
            if (value.typeId() != QMetaType::QString)
                notText << key;
        }
        readOnly_ = readOnly_ || !valuesSurviveRewrite(*settings_, notText, bytes);
    }
    if (readOnly_) {
        std::cerr << "saldo: " << PathText::oneLine(QFile::encodeName(settings_->fileName()).toStdString())
                  << " cannot be read completely; it is left as it is and changes to the settings last until "
                     "Saldo ends\n";
    }
    // Whether a key holds a group, asked at every look-up: the top-level
    // groups are listed once (QSettings lists them by walking every key).
    for (const QString& group : settings_->childGroups())
        groups_.insert(group);
}

bool SettingsUserDefaults::hasValue(const std::string& key) const
{
    if (readOnly_ && changes_.hasValue(key))
        return true;
    if (!settings_)
        return false;
    const QString k = keyOf(key);
    return settings_->contains(k) || groups_.contains(k);
}

std::optional<std::vector<std::string>> SettingsUserDefaults::stringArray(const std::string& key) const
{
    if (readOnly_ && changes_.hasValue(key))
        return changes_.stringArray(key);
    if (!settings_)
        return std::nullopt;
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
    if (!groups_.contains(k))
        return std::nullopt;

    settings_->beginGroup(k);
    bool ok = false;
    const qlonglong size = settings_->value(QStringLiteral("size")).toLongLong(&ok);
    std::optional<std::vector<std::string>> result;
    // Row by row, each looked up by its key: time linear in the rows. A
    // missing row ends the list, so nothing is reserved for a size the rows
    // do not prove.
    if (ok && size >= 0) {
        std::vector<std::string> list;
        for (qlonglong i = 1; i <= size; ++i) {
            const QVariant item = settings_->value(QString::number(i));
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
    groups_.insert(k);
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
    if (!settings_)
        return std::nullopt;
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
