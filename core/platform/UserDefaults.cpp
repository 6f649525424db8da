#include "platform/UserDefaults.h"

namespace saldo {

bool InMemoryUserDefaults::hasValue(const std::string& key) const
{
    return values_.contains(key);
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
    values_[key] = std::move(stored);
    ++writes_;
}

void InMemoryUserDefaults::setRawValue(const std::string& key, Value value)
{
    values_[key] = std::move(value);
}

void InMemoryUserDefaults::remove(const std::string& key)
{
    values_.erase(key);
}

}  // namespace saldo
