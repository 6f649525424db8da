#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace saldo::tax {

// What a line of the Anlage EÜR holds, independent of where a form year puts
// it: the placement rules name these, and each form year's table says at
// which Zeile and under which Kennzahl it stands.
enum class EuerField : std::uint8_t {
    // Betriebseinnahmen
    Kleinunternehmer,
    Umsatzsteuerpflichtig,
    Steuerfrei,
    Umsatzsteuer,
    UmsatzsteuerErstattet,
    Anlageverkauf,
    PrivateKfzNutzung,
    Wertabgaben,
    SummeEinnahmen,
    // Betriebsausgaben
    Waren,
    Fremdleistungen,
    Personal,
    AfaGrundstuecke,
    AfaImmateriell,
    AfaBeweglich,
    Sonderabschreibungen,
    Herabsetzungsbetraege,
    GeringwertigeWirtschaftsgueter,
    AufloesungSammelposten,
    Restbuchwert,
    Miete,
    DoppelteHaushaltsfuehrung,
    Grundstueckskosten,
    Telekommunikation,
    Reisekosten,
    Fortbildung,
    Beratung,
    MieteBeweglich,
    Erhaltung,
    Beitraege,
    Edv,
    Arbeitsmittel,
    Entsorgung,
    Verpackung,
    Werbung,
    SchuldzinsenAnlage,
    Schuldzinsen,
    Vorsteuer,
    UmsatzsteuerGezahlt,
    Uebrige,
    // Beschränkt abziehbare Betriebsausgaben: "nicht abziehbar" and "abziehbar" columns
    GeschenkeNicht,
    GeschenkeAbziehbar,
    BewirtungNicht,
    BewirtungAbziehbar,
    Verpflegung,
    ArbeitszimmerNicht,
    ArbeitszimmerAbziehbar,
    Tagespauschale,
    SonstigeNicht,
    SonstigeAbziehbar,
    // Kraftfahrzeugkosten und andere Fahrtkosten
    KfzLeasing,
    KfzSteuern,
    KfzSonstige,
    KfzFremd,
    Entfernungspauschale,
    SummeAusgaben,
    Gewinn,
    Entnahmen,
    Einlagen,
};
inline constexpr std::size_t kEuerFieldCount = static_cast<std::size_t>(EuerField::Einlagen) + 1;

// How a line enters the sums: a Betriebseinnahme (summed into Zeile 23), a
// Betriebsausgabe (summed into Zeile 75), the "nicht abziehbar" column of the
// limited-deductible lines (shown, never summed), a private line outside the
// profit (Entnahmen, Einlagen), or one of the three sums.
enum class EuerRole : std::uint8_t {
    Einnahme,
    Ausgabe,
    NichtAbziehbar,
    Privat,
    SummeEinnahmen,
    SummeAusgaben,
    Gewinn,
};

struct EuerLine {
    EuerField field;
    int zeile;
    int kennzahl;
    EuerRole role;
    // The line's text as the form prints it; the two columns of a
    // limited-deductible line share it.
    const char* label;
};

// The Anlage EÜR of one form year as data: its lines in the form's order,
// each keyed by (Zeile, Kennzahl), with the form's texts. A form year that
// moves lines is a table of its own; the rules that place the entries name
// EuerFields and never change with it. Only the lines Saldo can fill, and the
// lines its sums add up, are listed.
class EuerForm {
public:
    // The form of a year, or nothing when Saldo has no table for it.
    static const EuerForm* forYear(int year);
    // The German sentence for a year without a form table.
    static std::string missingYearMessage(int year);

    int year() const { return year_; }
    std::span<const EuerLine> lines() const { return lines_; }
    // Position of a field's line in lines(); nothing when this form has no such line.
    std::optional<std::size_t> indexOf(EuerField field) const;
    const EuerLine& line(EuerField field) const { return lines_[*indexOf(field)]; }
    // The first and last Zeile of the corrections (Hinzurechnungen and
    // Abrechnungen) between the sum of the Betriebsausgaben and the profit,
    // which Saldo does not know and leaves to the user.
    int firstCorrectionZeile() const { return firstCorrectionZeile_; }
    int lastCorrectionZeile() const { return lastCorrectionZeile_; }

    constexpr EuerForm(int year, std::span<const EuerLine> lines, int firstCorrectionZeile, int lastCorrectionZeile)
        : year_(year)
        , lines_(lines)
        , firstCorrectionZeile_(firstCorrectionZeile)
        , lastCorrectionZeile_(lastCorrectionZeile)
    {
        for (std::int16_t& index : index_)
            index = -1;
        for (std::size_t i = 0; i < lines.size(); ++i)
            index_[static_cast<std::size_t>(lines[i].field)] = static_cast<std::int16_t>(i);
    }

private:
    int year_;
    std::span<const EuerLine> lines_;
    int firstCorrectionZeile_;
    int lastCorrectionZeile_;
    std::int16_t index_[kEuerFieldCount] {};
};

} // namespace saldo::tax
