#pragma once

#include "model/Einnahme.h"
#include "tax/UstvaForm.h"

#include <array>
#include <cstdint>
#include <string_view>

namespace saldo::tax {

// Why an item takes no part in the VAT return, or could not be placed.
inline constexpr char kFinanzamt[] = "Zahlung an oder vom Finanzamt";
inline constexpr char kGeldkonto[] = "Geldkonto";
inline constexpr char kForderungVerbindlichkeit[] = "Forderung, Verbindlichkeit oder durchlaufender Posten";
inline constexpr char kPrivat[] = "Privatentnahme oder -einlage";
inline constexpr char kUmsatzsteuerOhneBemessung[] = "Umsatzsteuer ohne Bemessungsgrundlage";
inline constexpr char kIgLieferungMitSteuersatz[] = "innergemeinschaftliche Lieferung mit Steuersatz";
inline constexpr char kSteuerfreiOhneZuordnung[] = "steuerfrei ohne Zuordnung";

// Where one item of the ledger goes on the VAT return. The rules are read top
// down and the first that matches decides: the amount is checked first, then
// the categories that take no part or are booked on their own (these do not
// look at the rate), then the rate, then income and expense by rate, flags
// and category (SKR 03 numbers).
struct UstvaPlacement {
    enum class Kind : std::uint8_t {
        Form, // adds to the boxes below (possibly nothing: a reduction at 0 %)
        OhneVorsteuer, // an expense at 0 %: no input tax, nothing to add
        NichtTeil, // takes no part in the return (reason says why)
        NichtZugeordnet, // cannot be placed (reason says why)
    };
    struct Add {
        UstvaBox box;
        std::int64_t cents;
    };

    Kind kind = Kind::Form;
    const char* reason = nullptr;
    std::array<Add, 3> adds {};
    std::uint8_t addCount = 0;
    // The VAT as booked on the item: output tax positive, input tax negative.
    // A reverse charge owes and deducts the same tax, so it books nothing.
    std::int64_t bookedTax = 0;
    // The gross amount in cents (0 when it was refused) and whether a float
    // holds it to the cent.
    std::int64_t cents = 0;
    bool centExact = true;

    // The fields of an item that decide its place.
    struct Item {
        bool income;
        std::string_view kategorie;
        float brutto;
        float steuersatz;
        bool innergemeinschaftlicherErwerb;
        bool isNonEU;
    };
    static UstvaPlacement place(const Item& item);
    static UstvaPlacement place(const Einnahme& item);

private:
    void add(UstvaBox box, std::int64_t value) { adds[addCount++] = Add { box, value }; }
};

} // namespace saldo::tax
