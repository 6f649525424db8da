#pragma once

#include <QString>

namespace saldo::gui {

// The columns of the entry table, in the table's order. The first eleven are
// the sortable ones, in the order the sort keys are assigned to them
// ("name", "noneu", "innergem", "art", "kategorie", "brutto", "netto",
// "steuersatz", "datum", "rechnungsnummer", "steuernummer"); the split-booking
// and kind-of-service columns follow. Each column has a fixed identifier (the
// model's column id, also used by other parts of the window) and a German
// header title, and belongs to one kind of cell.
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

    static bool isValid(int column) { return column >= 0 && column < Count; }
    static Id fromIndex(int column) { return static_cast<Id>(column); }

    // "NameColumn", "NonEUColumn", ...
    static QString identifier(Id column);
    // The column for an identifier, or -1.
    static int indexOf(const QString& identifier);
    static QString title(Id column);
    static Kind kind(Id column);
    // Initial width in pixels.
    static int defaultWidth(Id column);
};

} // namespace saldo::gui
