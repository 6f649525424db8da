#pragma once

#include "platform/UserDefaults.h"

#include <QSet>
#include <QSettings>

#include <memory>

namespace saldo::gui {

// The user's preferences in QSettings (organisation and application "Saldo",
// native format: ~/.config/Saldo/Saldo.conf). A string list is kept as a
// group of numbered texts (key/size, key/1 .. key/n), which, unlike a plain QStringList
// value, keeps empty and one-element lists apart from a single text. A value
// that is not such a list reads as nothing and is never overwritten by a reader.
// A file that QSettings cannot read completely (not a settings file, a value it
// cannot decode, no permission) is never written: QSettings would write back only
// what it understood. Neither is one holding a value that QSettings would
// write back in another form (a value another program wrote), nor a name that
// is no regular file or a file far larger than settings are, which is not
// even read. Changes then live in memory until the program ends. A yes or no
// is a plain value, "true" or "false".
class SettingsUserDefaults : public UserDefaults {
public:
    // The program's own settings.
    SettingsUserDefaults();
    // Settings in the given file (tests).
    explicit SettingsUserDefaults(const QString& iniFilePath);

    // Where the program's own settings are kept on this machine.
    static QString programFileName();

    bool hasValue(const std::string& key) const override;
    std::optional<std::vector<std::string>> stringArray(const std::string& key) const override;
    void setStringArray(const std::string& key, const std::vector<std::string>& value) override;
    std::optional<bool> boolValue(const std::string& key) const override;
    void setBool(const std::string& key, bool value) override;

    // The settings as read; nothing when the file was left unread.
    QSettings* settings() const { return settings_.get(); }

    // True when the file could not be read completely and is left untouched.
    bool isReadOnly() const { return readOnly_; }

    // Far more than 100,000 category rows take.
    static constexpr qint64 kLargestFile = qint64(64) << 20;

private:
    void checkReadable();

    std::unique_ptr<QSettings> settings_;
    QSet<QString> groups_; // the top-level groups, for hasValue and stringArray
    bool readOnly_ = false;
    InMemoryUserDefaults changes_; // what was set while the file is read-only
};

} // namespace saldo::gui
