#pragma once

#include "model/Einnahme.h"

#include <string_view>

namespace saldo {

// Which entries a renamed row of the category list concerns: every entry of
// a list, split bookings at any depth included, whose category is the old
// text (canonically equivalent texts are the same). Each entry is found once,
// also where the same object stands twice.
class CategoryRename {
public:
    static EinnahmeList entriesCarrying(const EinnahmeList& entries, std::string_view kategorie);
};

} // namespace saldo
