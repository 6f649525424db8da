#pragma once

#include "model/Einnahme.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace saldo {

// What a form over one entry (the detail panel, the split-booking editor)
// takes over when a text field of it was edited: the whole form at once, and
// only when the name has at least three user-perceived characters. The texts
// go in as typed; the category only when the pop-up has an item chosen; the
// amounts through the one amount reader, where text it cannot read leaves the
// stored value, and so does a negative gross amount (the entry's setter
// refuses it). While the entry has split bookings their sum decides its gross
// amount, so the form's gross field is not taken over at all.
class FormEdit {
public:
    static constexpr std::size_t kMinimumNameLength = 3;
    // The tooltip of a name field that holds too short a name.
    static constexpr std::string_view kNameTooShort = "Der Name braucht mindestens 3 Zeichen";

    static bool nameLongEnough(std::string_view name);

    struct Texts {
        std::string name;
        std::string rechnungsnummer;
        std::string steuernummer;
        std::string leistungsart;
        std::optional<std::string> kategorie;  // none: no item chosen
        std::string brutto;
        std::string steuersatz;
    };

    struct Result {
        bool taken = false;              // false: the name was too short, nothing changed
        bool bruttoKept = false;         // the gross text was not taken (unreadable, negative, derived)
        bool steuersatzKept = false;     // the rate text could not be read
    };

    static Result apply(Einnahme& entry, const Texts& texts);
};

}  // namespace saldo
