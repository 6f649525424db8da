#include "platform/NotificationCenter.h"

#include <algorithm>

namespace saldo {

NotificationCenter& NotificationCenter::defaultCenter()
{
    static NotificationCenter center;
    return center;
}

NotificationCenter::Token NotificationCenter::addObserver(const std::string& name, Handler handler)
{
    const Token token = nextToken_++;
    observers_.push_back({token, name, std::move(handler)});
    return token;
}

void NotificationCenter::removeObserver(Token token)
{
    std::erase_if(observers_, [token](const Observer& o) { return o.token == token; });
}

void NotificationCenter::post(const std::string& name)
{
    auto counted = std::find_if(counts_.begin(), counts_.end(), [&](const auto& c) { return c.first == name; });
    if (counted == counts_.end())
        counts_.emplace_back(name, 1);
    else
        ++counted->second;

    // Observers added or removed by a handler take effect for the next post;
    // a removed observer is not called any more.
    std::vector<Token> tokens;
    for (const Observer& o : observers_)
        if (o.name == name)
            tokens.push_back(o.token);
    for (Token token : tokens) {
        auto it = std::find_if(observers_.begin(), observers_.end(), [token](const Observer& o) { return o.token == token; });
        if (it == observers_.end())
            continue;
        Handler handler = it->handler;  // the handler may remove its own observer
        handler();
    }
}

std::uint64_t NotificationCenter::postCount(const std::string& name) const
{
    auto it = std::find_if(counts_.begin(), counts_.end(), [&](const auto& c) { return c.first == name; });
    return it == counts_.end() ? 0 : it->second;
}

}  // namespace saldo
