#pragma once

#include "platform/UserDefaults.h"

#include <optional>
#include <string>
#include <vector>

namespace saldo {

// The category chart: the default chart of 174 rows that the program ships, and
// the user's category list kept in the preferences under "Kategorien". A row is
// one opaque string (final blank included); nothing ever splits or sorts it.
class Kategorien {
public:
    static constexpr const char* kKey = "Kategorien";

    // A fresh copy of the default chart, in its order.
    static std::vector<std::string> defaultKategorien();

    // True when the store holds a value of any type under the key.
    static bool isKeyPresentInUserDefaults(const UserDefaults& defaults, const std::string& key);

    // Writes the default chart when nothing is stored under "Kategorien"; a value
    // of any type, an empty list included, is left alone.
    static void storeDefaultKategorienIfMissing(UserDefaults& defaults);

    // The stored list when it is a list of strings, else nothing (the entry
    // table's category cells: no list, no pop-up).
    static std::optional<std::vector<std::string>> storedList(const UserDefaults& defaults);

    // The stored list when it is a list of strings, else the default chart; the
    // store is not written (detail panel, category preferences). A value of
    // another type falls back to the default chart without overwriting it.
    static std::vector<std::string> listOrDefault(const UserDefaults& defaults);
};

}  // namespace saldo
