#pragma once

#include "model/Einnahme.h"

#include <cstdint>
#include <span>
#include <string>

namespace saldo {

// The tax key (BU-Schlüssel) of a booking in the SKR 03 chart, two-digit
// scheme, and the accounts that carry their own key. Both are data: a change
// of the chart is a change of the tables in DatevTaxKey.cpp.
//
// The key follows the item's kind, flags and rate: income at 19 % / 7 % is 3 /
// 2, an expense with input tax 9 / 8; an expense flagged as intra-community
// acquisition whose category is goods (accounts 0000–0999 and 3000–3999) is
// 19 / 18, the same flag on another category is a service from another EU
// country and, like an expense flagged non-EU, reverse charge (§ 13b) at 19 %,
// key 94. No tax (0 %) and an automatic account have no key.
class DatevTaxKey {
public:
    struct Outcome {
        // The key ("" for none); meaningful when `fault` is empty.
        const char* key = "";
        // Why the item has no key it could be written with, else empty.
        std::string fault;
    };

    // `account` is the category's account number (the Gegenkonto).
    static Outcome of(const Einnahme& item, std::uint32_t account);

    static bool isAutomaticAccount(std::uint32_t account);
    static std::span<const std::uint32_t> automaticAccounts();
};

} // namespace saldo
