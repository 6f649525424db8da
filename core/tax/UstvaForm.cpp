#include "tax/UstvaForm.h"

#include <array>

namespace saldo::tax {

namespace {

using B = UstvaBox;
constexpr B kNone = B::Count; // a line without a base or without a tax box

// The lines of the 2025 form that Saldo fills; the line numbers are those of
// the official USt 1 A.
constexpr std::array kLines2025 {
    UstvaLine { 13, 81, B::Umsatz19, 0, kNone, 1900, 1, "Steuerpflichtige Umsätze zum Steuersatz von 19 %" },
    UstvaLine { 14, 86, B::Umsatz7, 0, kNone, 700, 1, "Steuerpflichtige Umsätze zum Steuersatz von 7 %" },
    UstvaLine { 16, 35, B::UmsatzAndereBasis, 36, B::UmsatzAndereSteuer, 0, 1,
        "Steuerpflichtige Umsätze zu anderen Steuersätzen" },
    UstvaLine { 19, 41, B::IgLieferung, 0, kNone, 0, 0,
        "Steuerfreie innergemeinschaftliche Lieferungen an Abnehmer mit USt-IdNr." },
    UstvaLine { 22, 43, B::Ausfuhr, 0, kNone, 0, 0,
        "Weitere steuerfreie Umsätze mit Vorsteuerabzug (z. B. Ausfuhrlieferungen)" },
    UstvaLine { 23, 48, B::SteuerfreiOhneVorsteuer, 0, kNone, 0, 0, "Steuerfreie Umsätze ohne Vorsteuerabzug" },
    UstvaLine { 25, 89, B::IgErwerb19, 0, kNone, 1900, 1,
        "Steuerpflichtige innergemeinschaftliche Erwerbe zum Steuersatz von 19 %" },
    UstvaLine { 26, 93, B::IgErwerb7, 0, kNone, 700, 1,
        "Steuerpflichtige innergemeinschaftliche Erwerbe zum Steuersatz von 7 %" },
    UstvaLine { 28, 95, B::IgErwerbAndereBasis, 98, B::IgErwerbAndereSteuer, 0, 1,
        "Steuerpflichtige innergemeinschaftliche Erwerbe zu anderen Steuersätzen" },
    UstvaLine { 30, 46, B::Leistung13bEuBasis, 47, B::Leistung13bEuSteuer, 0, 1,
        "Sonstige Leistungen eines im übrigen Gemeinschaftsgebiet ansässigen Unternehmers (§ 13b Abs. 1 UStG)" },
    UstvaLine { 32, 84, B::Leistung13bAndereBasis, 85, B::Leistung13bAndereSteuer, 0, 1,
        "Andere Leistungen (§ 13b Abs. 2 Nr. 1, 2, 4 bis 12 UStG)" },
    UstvaLine { 35, 21, B::NichtSteuerbar18b, 0, kNone, 0, 0,
        "Nicht steuerbare sonstige Leistungen gemäß § 18b Satz 1 Nr. 2 UStG" },
    UstvaLine { 36, 45, B::NichtSteuerbarUebrige, 0, kNone, 0, 0,
        "Übrige nicht steuerbare Umsätze (Leistungsort nicht im Inland)" },
    UstvaLine { 38, 0, kNone, 66, B::Vorsteuer, 0, -1, "Vorsteuerbeträge aus Rechnungen von anderen Unternehmern" },
    UstvaLine { 39, 0, kNone, 61, B::VorsteuerIgErwerb, 0, -1,
        "Vorsteuerbeträge aus dem innergemeinschaftlichen Erwerb von Gegenständen" },
    UstvaLine { 40, 0, kNone, 62, B::Einfuhrumsatzsteuer, 0, -1, "Entstandene Einfuhrumsatzsteuer" },
    UstvaLine { 41, 0, kNone, 67, B::Vorsteuer13b, 0, -1, "Vorsteuerbeträge aus Leistungen im Sinne des § 13b UStG" },
};

// 2026 keeps every line and Kennzahl; line 22 also names the supplies under
// regulations of the EU.
constexpr std::array kLines2026 = [] {
    auto lines = kLines2025;
    for (UstvaLine& line : lines) {
        if (line.zeile == 22)
            line.label = "Weitere steuerfreie Umsätze mit Vorsteuerabzug (z. B. Ausfuhrlieferungen, Umsätze nach "
                         "Verordnungen der EU)";
    }
    return lines;
}();

constexpr const char* kResultLabel = "Verbleibende Umsatzsteuer-Vorauszahlung / Verbleibender Überschuss";

// Since 2025: 25,000 EUR in the previous year, 100,000 EUR in the current one.
const std::array kForms {
    UstvaForm { 2025, kLines2025, 83, 50, kResultLabel, 2'500'000, 10'000'000 },
    UstvaForm { 2026, kLines2026, 83, 50, kResultLabel, 2'500'000, 10'000'000 },
};

} // namespace

const UstvaForm* UstvaForm::forYear(int year)
{
    for (const UstvaForm& form : kForms) {
        if (form.year == year)
            return &form;
    }
    return nullptr;
}

std::vector<int> UstvaForm::years()
{
    std::vector<int> years;
    for (const UstvaForm& form : kForms)
        years.push_back(form.year);
    return years;
}

} // namespace saldo::tax
