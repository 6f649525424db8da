#pragma once

#include "platform/UserDefaults.h"

#include <QSettings>

#include <memory>

namespace saldo::gui {

// The user's preferences in QSettings (organisation and application "Saldo",
// native format: ~/.config/Saldo/Saldo.conf). A string list is kept as a
// group of numbered texts (key/size, key/1 .. key/n), which, unlike a plain QStringList
// value, keeps empty and one-element lists apart from a single text. A value
// that is not such a list reads as nothing and is never overwritten by a reader.
class SettingsUserDefaults : public UserDefaults {
public:
    // The program's own settings.
    SettingsUserDefaults();
    // Settings in the given file (tests).
    explicit SettingsUserDefaults(const QString& iniFilePath);

    bool hasValue(const std::string& key) const override;
    std::optional<std::vector<std::string>> stringArray(const std::string& key) const override;
    void setStringArray(const std::string& key, const std::vector<std::string>& value) override;

    QSettings& settings() const { return *settings_; }

private:
    std::unique_ptr<QSettings> settings_;
};

}  // namespace saldo::gui
