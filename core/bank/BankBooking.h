#pragma once

#include <cstdint>
#include <string>

namespace saldo {

// A calendar day as the bank writes it, without a time or a zone.
struct BankDate {
    int year = 0;
    int month = 0;
    int day = 0;

    // Days since 1970-01-01 (proleptic Gregorian): the key of a day.
    std::int64_t dayNumber() const;
    // True for a day the calendar has (no 30 February).
    bool isValid() const;
    bool operator==(const BankDate&) const = default;
};

// One booking of a bank statement as a reader found it: a signed amount in
// integer cents (money in is positive), the booking day, whether the bank has
// booked it, and the texts that describe it. Readers fill it in; proposals and
// rules read it.
struct BankBooking {
    enum class Status { Booked, Pending, Info };

    std::int64_t cents = 0;
    BankDate bookingDate;
    BankDate valueDate; // year 0 when the statement has none
    Status status = Status::Booked;
    std::string partner; // the counterparty's name
    std::string iban; // the counterparty's account
    std::string text; // the remittance lines, joined with a blank
    std::string reference; // end-to-end id, else the bank's reference
    std::string bookingText; // the bank's own words ("Lastschrift", "Gutschrift")
    // Which statement of the file it came from (a ZIP or a camt message may
    // hold several), counted from 0.
    int statement = 0;
};

} // namespace saldo
