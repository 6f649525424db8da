#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace saldo {

inline constexpr const char* kDetailViewUpdated = "DetailViewUpdated";
inline constexpr const char* kTableViewUpdated = "TableViewUpdated";

// The process-wide notification centre: notifications by name, carrying no
// object, delivered synchronously to every observer of that name in the order
// the observers were added. An observer may remove itself or others while a
// notification is delivered.
class NotificationCenter {
public:
    using Token = std::uint64_t;
    using Handler = std::function<void()>;

    static NotificationCenter& defaultCenter();

    Token addObserver(const std::string& name, Handler handler);
    void removeObserver(Token token);
    void post(const std::string& name);

    // How many times a name was posted since start (for tests and diagnostics).
    std::uint64_t postCount(const std::string& name) const;

private:
    struct Observer {
        Token token;
        std::string name;
        Handler handler;
    };
    std::vector<Observer> observers_;
    std::vector<std::pair<std::string, std::uint64_t>> counts_;
    Token nextToken_ = 1;
};

}  // namespace saldo
