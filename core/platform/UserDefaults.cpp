#include "platform/UserDefaults.h"

namespace saldo {

bool InMemoryUserDefaults::hasValue(const std::string& key) const
{
    return values_.contains(key) || flags_.contains(key);
}

std::optional<std::vector<std::string>> InMemoryUserDefaults::stringArray(const std::string& key) const
{
    auto it = values_.find(key);
    if (it == values_.end() || !it->second.isArray)
        return std::nullopt;
    std::vector<std::string> strings;
    strings.reserve(it->second.elements.size());
    for (const auto& element : it->second.elements) {
        if (!element)
            return std::nullopt;
        strings.push_back(*element);
    }
    return strings;
}

void InMemoryUserDefaults::setStringArray(const std::string& key, const std::vector<std::string>& value)
{
    Value stored;
    stored.elements.assign(value.begin(), value.end());
    flags_.erase(key);
    values_[key] = std::move(stored);
    ++writes_;
}

std::optional<bool> InMemoryUserDefaults::boolValue(const std::string& key) const
{
    auto it = flags_.find(key);
    if (it == flags_.end())
        return std::nullopt;
    return it->second;
}

void InMemoryUserDefaults::setBool(const std::string& key, bool value)
{
    values_.erase(key);
    flags_[key] = value;
    ++writes_;
}

void InMemoryUserDefaults::setRawValue(const std::string& key, Value value)
{
    flags_.erase(key);
    values_[key] = std::move(value);
}

void InMemoryUserDefaults::remove(const std::string& key)
{
    values_.erase(key);
    flags_.erase(key);
}

}  // namespace saldo
