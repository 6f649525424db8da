#pragma once

#include "bank/BankBooking.h"
#include "bank/BankRule.h"

#include <memory>
#include <string>
#include <vector>

namespace re2 {
class RE2;
}

namespace saldo {

// The person's rules in their order, ready to match: the first rule whose
// conditions all hold wins. Texts are compared case-folded; a pattern is a
// regular expression in RE2's syntax (linear time, whatever the text), found
// anywhere in the booking's texts, in any case. A pattern that does not
// compile throws BankRuleError.
class BankRules {
public:
    BankRules();
    explicit BankRules(std::vector<BankRule> rules);
    ~BankRules();
    BankRules(BankRules&&) noexcept;
    BankRules& operator=(BankRules&&) noexcept;

    const std::vector<BankRule>& rules() const { return rules_; }

    // The index of the first rule that matches, or -1.
    int match(const BankBooking& booking) const;

    // Why a pattern does not compile, or an empty text when it does.
    static std::string patternError(const std::string& pattern);

private:
    struct Compiled {
        std::string partner;
        std::string account; // the partner condition as an IBAN is compared
        std::string text;
        std::unique_ptr<re2::RE2> pattern;
    };

    std::vector<BankRule> rules_;
    std::vector<Compiled> compiled_;
};

} // namespace saldo
