#pragma once

#include "model/Einnahme.h"
#include "tax/EuerForm.h"

#include <array>
#include <cstdint>

namespace saldo::tax {

// An amount an item puts on a line of the form (negative where it reduces one).
struct EuerBooking {
    EuerField field;
    std::int64_t cents;
};

// The lists below the form, for items that are on no line or only partly.
enum class EuerList : std::uint8_t {
    None,
    // The amount or the rate cannot be taken (the reasons of TaxItems).
    NichtZugeordnet,
    // An expense the law does not let deduct (Gewerbesteuer, ...).
    NichtAbziehbar,
    // A fixed asset bought: deducted over the years through depreciation.
    Anlagegut,
    // Money accounts, receivables, payables, transit items: no income or expense.
    NichtTeil,
};

// Listed beside an item that is placed.
inline constexpr const char* kOhneKontonummer = "ohne Kontonummer — als uebrige Betriebsausgabe gezaehlt";
inline constexpr const char* kAnlagegut = "Anlagegut — ueber die AfA absetzen";

// Where one item goes: up to three amounts on lines, and perhaps a list with
// a reason and the amount the list shows.
struct EuerPlacement {
    std::array<EuerBooking, 3> bookings {};
    std::uint8_t bookingCount = 0;
    EuerList list = EuerList::None;
    const char* reason = nullptr;
    std::int64_t listedCents = 0;
    // False when the list shows no amount because the amount cannot be read.
    bool amountKnown = true;
    // An expense whose category has no account number; it is counted as übrige.
    bool ohneKontonummer = false;
    // The amount is at least kCentExactBelow: a float holds it only to about a cent.
    bool nichtCentgenau = false;
    // An expense with a reverse-charge flag and a rate: the amount paid is on
    // the line, and its VAT and input tax cancel.
    bool reverseCharge = false;
};

// The rules that put an item of an SKR 03 ledger on the Anlage EÜR. The
// category's account number picks the first matching rule of a table (kept
// as data in EuerRules.cpp). For an expense the net amount goes to the line
// and the tax to the input-tax line, when the rate is above 0 and no
// reverse-charge flag is set; with a flag the amount paid goes to the line
// and neither the VAT line nor the input-tax line gets anything. A
// Kleinunternehmer's income goes gross to its own line and his expenses go
// gross to theirs (he deducts no input tax). All arithmetic is in integer
// cents, from one conversion of the item's gross amount.
class EuerRules {
public:
    static EuerPlacement place(const Einnahme& item, bool kleinunternehmer);

    // The same for the items of one pass over a ledger. It remembers what a
    // rate is in hundredths, by the rate's bits. (Category and kind are read
    // from their texts every time: a text's address may be reused when a
    // change to an entry frees it while a worker reads a snapshot.)
    class Pass {
    public:
        explicit Pass(bool kleinunternehmer)
            : kleinunternehmer_(kleinunternehmer)
        {
        }
        EuerPlacement place(const Einnahme& item);

    private:
        struct Rate {
            std::uint32_t bits = 0;
            bool known = false;
            bool valid = false;
            std::int64_t hundredths = 0;
        };
        const Rate& rate(float steuersatz);

        bool kleinunternehmer_;
        std::array<Rate, 16> rates_ {};
    };
};

} // namespace saldo::tax
