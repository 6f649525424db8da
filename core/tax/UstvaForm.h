#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace saldo::tax {

// The boxes of the VAT return that Saldo fills, by what they hold rather than
// by their Kennzahl: the placement rules name a box, and each form year's
// table says which Kennzahl and line the box has on that year's form. A later
// form that renumbers a box is a new table, not new rules.
enum class UstvaBox : std::uint8_t {
    Umsatz19, // taxable supplies at 19 %: base
    Umsatz7, // at 7 %: base
    UmsatzAndereBasis, // at other rates: base
    UmsatzAndereSteuer, //   and its tax
    IgLieferung, // tax-free intra-community deliveries
    Ausfuhr, // further tax-free supplies with input tax (exports)
    SteuerfreiOhneVorsteuer,
    IgErwerb19, // intra-community acquisitions at 19 %: base
    IgErwerb7, // at 7 %: base
    IgErwerbAndereBasis, // at other rates: base
    IgErwerbAndereSteuer, //   and its tax
    Leistung13bEuBasis, // services from a business elsewhere in the EU: base
    Leistung13bEuSteuer, //   and its tax
    Leistung13bAndereBasis, // other services whose recipient owes the tax: base
    Leistung13bAndereSteuer, //   and its tax
    NichtSteuerbar18b, // services to EU businesses, not taxable here
    NichtSteuerbarUebrige, // other supplies whose place is abroad
    Vorsteuer, // input tax from invoices
    VorsteuerIgErwerb, // input tax from intra-community acquisitions
    Einfuhrumsatzsteuer, // import VAT
    Vorsteuer13b, // input tax from the services above
    Count
};
inline constexpr std::size_t kUstvaBoxCount = static_cast<std::size_t>(UstvaBox::Count);

// One line of the form as Saldo fills it: its number, the Kennzahl of its
// base and of its tax (0 where the form has none), and how its tax enters the
// remaining payment (Kz 83).
struct UstvaLine {
    int zeile;
    int baseKz;
    UstvaBox baseBox;
    int taxKz;
    UstvaBox taxBox;
    // The rate in hundredths of a percent at which the form itself computes
    // the line's tax from the whole-euro base (its tax box has no Kennzahl);
    // 0 when the line's tax is a Kennzahl of its own or the line has none.
    std::int64_t computedRate;
    // +1: the tax is owed (Umsatzsteuer); -1: it is deducted (Vorsteuer); 0: none.
    int sign;
    // The line's text on the form (its official wording, shortened).
    const char* label;

    bool hasBase() const { return baseKz != 0; }
    bool hasTaxKz() const { return taxKz != 0; }
};

// The form of one year: its lines in the form's order, the line of the
// remaining payment, and the Kleinunternehmer limits in force in that year.
struct UstvaForm {
    int year;
    std::span<const UstvaLine> lines;
    int resultKz;
    int resultZeile;
    const char* resultLabel;
    // Gross turnover of the previous year and of the year itself, in cents,
    // up to which a business may stay a Kleinunternehmer.
    std::int64_t kleinunternehmerPreviousYearCents;
    std::int64_t kleinunternehmerCurrentYearCents;

    // The form of that year, or nullptr when Saldo has none.
    static const UstvaForm* forYear(int year);
    // The years Saldo has a form for, ascending.
    static std::vector<int> years();
};

} // namespace saldo::tax
