#pragma once

#include <string_view>

namespace saldo {

// The columns of the entry table, in the table's order. The first eleven are
// the sortable ones, in the order the sort keys are assigned to them
// ("name", "noneu", "innergem", "art", "kategorie", "brutto", "netto",
// "steuersatz", "datum", "rechnungsnummer", "steuernummer"); the split-booking
// and kind-of-service columns follow. Each column has a fixed identifier
// ("NameColumn", ...), a German header title and a kind of cell. The table
// of split bookings shows the same columns without the split-booking one.
class EntryColumn {
public:
    enum Id {
        Name,
        NonEU,
        Innergem,
        Art,
        Kategorie,
        Brutto,
        Netto,
        Steuer,
        Date,
        Rechnungsnummer,
        Steuernummer,
        Splitbuchung,
        Leistungsart,
        Count
    };

    // How a cell of the column is shown and edited.
    enum class Kind { Text, Number, CheckBox, PopUp, Date };

    static constexpr bool isValid(int column) { return column >= 0 && column < Count; }
    static constexpr Id fromIndex(int column) { return static_cast<Id>(column); }

    // "NameColumn", "NonEUColumn", ...
    static std::string_view identifier(Id column);
    // The column for an identifier, or -1.
    static int indexOf(std::string_view identifier);
    // The header title (UTF-8).
    static std::string_view title(Id column);
    static Kind kind(Id column);
    // True for the columns whose cells are text fields (texts and numbers).
    static bool isTextField(Id column);
};

}  // namespace saldo
