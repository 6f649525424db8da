#pragma once

#include <stdexcept>

namespace saldo {

// A rule list that cannot be read: the stored rules are damaged, or a rules
// file has a mistake. The message is German and names the place.
class BankRuleError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

} // namespace saldo
