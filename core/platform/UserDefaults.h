#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace saldo {

// The user's preference store: the category list under "Kategorien" and the
// program's further settings. A stored value may be of any type when something
// outside the program wrote it, so readers ask for exactly what they need.
class UserDefaults {
public:
    virtual ~UserDefaults() = default;

    // True when any value, of any type, is stored under the key.
    virtual bool hasValue(const std::string& key) const = 0;

    // The value as a list of strings; nothing when the key is absent or the value
    // is not an array whose every element is a string.
    virtual std::optional<std::vector<std::string>> stringArray(const std::string& key) const = 0;

    // Replaces the whole value under the key in one write.
    virtual void setStringArray(const std::string& key, const std::vector<std::string>& value) = 0;

    // The value as a yes or no; nothing when the key is absent or holds anything else.
    virtual std::optional<bool> boolValue(const std::string& key) const = 0;
    virtual void setBool(const std::string& key, bool value) = 0;
};

// A store held in memory, for tests and for the command-line tool.
class InMemoryUserDefaults : public UserDefaults {
public:
    // A stored value: an array of elements (an element that is not a string is
    // nothing), or a scalar of another type.
    struct Value {
        bool isArray = true;
        std::vector<std::optional<std::string>> elements;
    };

    bool hasValue(const std::string& key) const override;
    std::optional<std::vector<std::string>> stringArray(const std::string& key) const override;
    void setStringArray(const std::string& key, const std::vector<std::string>& value) override;
    std::optional<bool> boolValue(const std::string& key) const override;
    void setBool(const std::string& key, bool value) override;

    // Stores a value of another shape, as another program might have.
    void setRawValue(const std::string& key, Value value);
    void remove(const std::string& key);
    int writeCount() const { return writes_; }

private:
    std::map<std::string, Value> values_;
    std::map<std::string, bool> flags_; // yes-or-no values, kept apart from values_
    int writes_ = 0;
};

}  // namespace saldo
