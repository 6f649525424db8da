#pragma once

#include <stdexcept>
#include <string>

namespace saldo {

// A statement file that cannot be read: not a statement, damaged, truncated,
// hostile, or in another currency. The message is one German sentence for the
// person who chose the file (no umlauts, as every message of the program).
class StatementError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

} // namespace saldo
