#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace saldo {

// One of the person's rules for statement bookings: what a booking must show
// to match (every condition given must hold; a rule without conditions
// matches every booking) and what a matching booking's proposal gets.
struct BankRule {
    enum class Sign { Any, In, Out };
    enum class Flag { None, InnergemeinschaftlicherErwerb, NonEU };

    std::string name; // shown beside the proposals it made

    // Conditions.
    std::string partner; // contained in the counterparty's name or IBAN, case-folded
    std::string text; // contained in the booking's texts, case-folded
    std::string pattern; // a regular expression found in the booking's texts, any case
    Sign sign = Sign::Any;
    std::optional<std::int64_t> minCents; // the gross amount, at least
    std::optional<std::int64_t> maxCents; // the gross amount, at most

    // What a matching booking's proposal gets.
    std::string kategorie;
    std::optional<float> steuersatz; // nothing: the usual 19
    Flag flag = Flag::None;
    std::string nameTemplate; // %partner, %text and %ref stand for the booking's

    bool operator==(const BankRule&) const = default;
};

} // namespace saldo
