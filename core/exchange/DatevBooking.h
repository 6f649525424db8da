#pragma once

#include "exchange/DatevPeriod.h"
#include "model/Einnahme.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace saldo {

class Cp1252Text;
struct DatevBookingOutcome;

// One line of a booking batch, made from one item of the ledger (an entry
// without split bookings, or a leaf split booking). The money account is the
// Konto and the category's account number the Gegenkonto. The amount is the
// item's gross amount in whole cents (half away from zero), written positive;
// the side is seen from the money account: income is "S" (the bank is
// debited), an expense "H", and a negative amount turns the side round. The
// tax key comes from DatevTaxKey. The receipt field (Belegfeld 1) is the
// invoice number reduced to the characters the adviser's system takes (A–Z,
// a–z, 0–9, $ & % * + - /; ä, ö, ü and ß spelled out as ae, oe, ue, ss) and
// cut to 36; the booking text is the item's name cut to 60. The adviser's
// system fills every other column itself.
struct DatevBooking {
    static constexpr std::size_t kBelegfeldLength = 36;
    static constexpr std::size_t kBuchungstextLength = 60;
    static constexpr std::size_t kColumns = 125;

    std::int64_t umsatzCents = 0; // > 0
    char side = 'S';
    std::uint32_t konto = 0;
    std::uint32_t gegenkonto = 0;
    const char* buSchluessel = "";
    LocalDay belegdatum;
    std::string belegfeld;

    // `day` is the local day of the item's top-level entry, `rechnungsnummer`
    // the invoice number the receipt field is made of.
    static DatevBookingOutcome make(
        const Einnahme& item, LocalDay day, std::string_view rechnungsnummer, std::uint32_t konto);

    // The invoice number as Belegfeld 1 takes it.
    static std::string belegfeldOf(std::string_view rechnungsnummer);

    // The line with its CRLF, the booking text (UTF-8) converted by `text`.
    void appendLine(std::string& out, std::string_view buchungstext, Cp1252Text& text) const;

    // The number in decimal digits, with leading zeros up to `width`.
    static void appendDigits(std::string& out, std::uint64_t value, int width = 1);
    // "1234,56": cents > 0 with a decimal comma, no thousands mark.
    static void appendUmsatz(std::string& out, std::int64_t cents);
};

// What an item gives: a booking, or the reason it cannot be written, or
// neither for an amount of 0 cents (left out, only counted).
struct DatevBookingOutcome {
    std::optional<DatevBooking> booking;
    std::string fault;
};

} // namespace saldo
