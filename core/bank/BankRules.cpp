#include "bank/BankRules.h"

#include "bank/BankRuleError.h"
#include "bank/BankText.h"

#include <re2/re2.h>

#include <cstdlib>

namespace saldo {

namespace {

RE2::Options patternOptions()
{
    RE2::Options options;
    options.set_case_sensitive(false);
    options.set_log_errors(false);
    options.set_encoding(RE2::Options::EncodingUTF8);
    return options;
}

// IBANs are written in groups of four or run together: compared without blanks.
std::string withoutBlanks(std::string text)
{
    std::erase(text, ' ');
    return text;
}

} // namespace

BankRules::BankRules() = default;
BankRules::~BankRules() = default;
BankRules::BankRules(BankRules&&) noexcept = default;
BankRules& BankRules::operator=(BankRules&&) noexcept = default;

BankRules::BankRules(std::vector<BankRule> rules)
    : rules_(std::move(rules))
{
    for (const BankRule& rule : rules_) {
        Compiled compiled { BankText::folded(rule.partner), withoutBlanks(BankText::folded(rule.partner)),
            BankText::folded(rule.text), nullptr };
        if (!rule.pattern.empty()) {
            compiled.pattern = std::make_unique<re2::RE2>(rule.pattern, patternOptions());
            if (!compiled.pattern->ok())
                throw BankRuleError("Regel \"" + rule.name + "\": das Muster ist fehlerhaft ("
                    + compiled.pattern->error() + ").");
        }
        compiled_.push_back(std::move(compiled));
    }
}

std::string BankRules::patternError(const std::string& pattern)
{
    const re2::RE2 compiled(pattern, patternOptions());
    return compiled.ok() ? std::string() : compiled.error();
}

int BankRules::match(const BankBooking& booking) const
{
    if (rules_.empty())
        return -1;
    // Each text is folded once per booking, and only when a rule needs it.
    std::string partner, iban, text;
    bool folded = false;
    const std::string texts = booking.bookingText.empty() ? booking.text : booking.text + " " + booking.bookingText;
    const std::int64_t gross = std::llabs(booking.cents);
    for (std::size_t i = 0; i < rules_.size(); ++i) {
        const BankRule& rule = rules_[i];
        const Compiled& c = compiled_[i];
        if ((rule.sign == BankRule::Sign::In && booking.cents < 0) || (rule.sign == BankRule::Sign::Out && booking.cents >= 0))
            continue;
        if ((rule.minCents && gross < *rule.minCents) || (rule.maxCents && gross > *rule.maxCents))
            continue;
        if ((!c.partner.empty() || !c.text.empty()) && !folded) {
            partner = BankText::folded(booking.partner);
            iban = withoutBlanks(BankText::folded(booking.iban));
            text = BankText::folded(texts);
            folded = true;
        }
        if (!c.partner.empty() && partner.find(c.partner) == std::string::npos
            && (c.account.empty() || iban.find(c.account) == std::string::npos))
            continue;
        if (!c.text.empty() && text.find(c.text) == std::string::npos)
            continue;
        if (c.pattern && !re2::RE2::PartialMatch(texts, *c.pattern))
            continue;
        return static_cast<int>(i);
    }
    return -1;
}

} // namespace saldo
