#include "platform/SettingsUserDefaults.h"

namespace saldo::gui {

namespace {
QString keyOf(const std::string& key)
{
    return QString::fromStdString(key);
}
}  // namespace

SettingsUserDefaults::SettingsUserDefaults()
    : settings_(std::make_unique<QSettings>(
        QSettings::NativeFormat, QSettings::UserScope, QStringLiteral("Saldo"), QStringLiteral("Saldo")))
{
}

SettingsUserDefaults::SettingsUserDefaults(const QString& iniFilePath)
    : settings_(std::make_unique<QSettings>(iniFilePath, QSettings::IniFormat))
{
}

bool SettingsUserDefaults::hasValue(const std::string& key) const
{
    const QString k = keyOf(key);
    return settings_->contains(k) || settings_->childGroups().contains(k);
}

std::optional<std::vector<std::string>> SettingsUserDefaults::stringArray(const std::string& key) const
{
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
    const QString k = keyOf(key);
    settings_->remove(k);
    settings_->beginGroup(k);
    settings_->setValue(QStringLiteral("size"), static_cast<qlonglong>(value.size()));
    for (std::size_t i = 0; i < value.size(); ++i)
        settings_->setValue(QString::number(i + 1), QString::fromStdString(value[i]));
    settings_->endGroup();
    settings_->sync();
}

}  // namespace saldo::gui
