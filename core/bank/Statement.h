#pragma once

#include "bank/BankBooking.h"

#include <cstddef>
#include <string>
#include <vector>

namespace saldo {

// What a statement file held: its bookings in file order, the format that
// read it ("camt.053.001.08", or a CSV profile's name) and how many lines a
// CSV reader passed over because they were no booking (a footer, a balance).
struct Statement {
    // More bookings than any account has in years: a file that claims more is refused.
    static constexpr std::size_t kMaxBookings = 2'000'000;

    std::vector<BankBooking> bookings;
    std::string format;
    std::size_t skippedLines = 0;
    // How many statements the file held (a camt message or a ZIP may hold several).
    int statementCount = 1;
};

} // namespace saldo
