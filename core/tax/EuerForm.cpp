#include "tax/EuerForm.h"

namespace saldo::tax {

namespace {

using F = EuerField;
using R = EuerRole;

// The lines of the forms 2024 and 2025 (the two have the same lines).
constexpr EuerLine kLines2025[] = {
    { F::Kleinunternehmer, 12, 111, R::Einnahme,
        "Betriebseinnahmen als umsatzsteuerlicher Kleinunternehmer (nach § 19 Abs. 1 UStG)" },
    { F::Umsatzsteuerpflichtig, 15, 112, R::Einnahme, "Umsatzsteuerpflichtige Betriebseinnahmen" },
    { F::Steuerfrei, 16, 103, R::Einnahme,
        "Umsatzsteuerfreie, nicht umsatzsteuerbare Betriebseinnahmen sowie Betriebseinnahmen zu 0 %" },
    { F::Umsatzsteuer, 17, 140, R::Einnahme,
        "Vereinnahmte Umsatzsteuer sowie Umsatzsteuer auf unentgeltliche Wertabgaben" },
    { F::UmsatzsteuerErstattet, 18, 141, R::Einnahme, "Vom Finanzamt erstattete und ggf. verrechnete Umsatzsteuer" },
    { F::Anlageverkauf, 19, 102, R::Einnahme, "Veräußerung oder Entnahme von Anlagevermögen" },
    { F::PrivateKfzNutzung, 20, 106, R::Einnahme, "Private Kfz-Nutzung" },
    { F::Wertabgaben, 21, 108, R::Einnahme, "Sonstige Sach-, Nutzungs- und Leistungsentnahmen" },
    { F::SummeEinnahmen, 23, 159, R::SummeEinnahmen, "Summe Betriebseinnahmen" },

    { F::Waren, 27, 100, R::Ausgabe, "Waren, Rohstoffe und Hilfsstoffe einschließlich der Nebenkosten" },
    { F::Fremdleistungen, 29, 110, R::Ausgabe, "Bezogene Fremdleistungen" },
    { F::Personal, 30, 120, R::Ausgabe, "Ausgaben für eigenes Personal (Gehälter, Löhne und Versicherungsbeiträge)" },
    { F::AfaGrundstuecke, 31, 136, R::Ausgabe, "AfA auf Grundstücke und grundstücksgleiche Rechte" },
    { F::AfaImmateriell, 32, 131, R::Ausgabe, "AfA auf immaterielle Wirtschaftsgüter" },
    { F::AfaBeweglich, 33, 130, R::Ausgabe, "AfA auf bewegliche Wirtschaftsgüter" },
    { F::Sonderabschreibungen, 34, 134, R::Ausgabe, "Sonderabschreibungen nach § 7b EStG und § 7g Abs. 5 und 6 EStG" },
    { F::Herabsetzungsbetraege, 35, 138, R::Ausgabe, "Herabsetzungsbeträge nach § 7g Abs. 2 Satz 3 EStG" },
    { F::GeringwertigeWirtschaftsgueter, 36, 132, R::Ausgabe,
        "Aufwendungen für geringwertige Wirtschaftsgüter nach § 6 Abs. 2 EStG" },
    { F::AufloesungSammelposten, 37, 137, R::Ausgabe, "Auflösung Sammelposten nach § 6 Abs. 2a EStG" },
    { F::Restbuchwert, 38, 135, R::Ausgabe, "Restbuchwert der ausgeschiedenen Anlagegüter" },
    { F::Miete, 39, 150, R::Ausgabe, "Miete/Pacht für Geschäftsräume und betrieblich genutzte Grundstücke" },
    { F::DoppelteHaushaltsfuehrung, 40, 152, R::Ausgabe, "Aufwendungen für doppelte Haushaltsführung" },
    { F::Grundstueckskosten, 41, 151, R::Ausgabe,
        "Sonstige Aufwendungen für betrieblich genutzte Grundstücke (ohne Schuldzinsen und AfA)" },
    { F::Telekommunikation, 43, 280, R::Ausgabe, "Aufwendungen für Telekommunikation (z. B. Telefon, Internet)" },
    { F::Reisekosten, 44, 221, R::Ausgabe,
        "Übernachtungs- und Reisenebenkosten bei Geschäftsreisen des Steuerpflichtigen" },
    { F::Fortbildung, 45, 281, R::Ausgabe, "Fortbildungskosten (ohne Reisekosten)" },
    { F::Beratung, 46, 194, R::Ausgabe, "Kosten für Rechts- und Steuerberatung, Buchführung" },
    { F::MieteBeweglich, 47, 222, R::Ausgabe, "Miete/Leasing für bewegliche Wirtschaftsgüter (ohne Kraftfahrzeuge)" },
    { F::Erhaltung, 48, 225, R::Ausgabe,
        "Erhaltungsaufwendungen (z. B. Instandhaltung, Wartung, Reparatur; ohne Gebäude und Kraftfahrzeuge)" },
    { F::Beitraege, 49, 223, R::Ausgabe,
        "Beiträge, Gebühren, Abgaben und Versicherungen (ohne Gebäude und Kraftfahrzeuge)" },
    { F::Edv, 50, 228, R::Ausgabe, "Laufende EDV-Kosten (z. B. Beratung, Wartung, Reparatur)" },
    { F::Arbeitsmittel, 51, 229, R::Ausgabe, "Arbeitsmittel (z. B. Bürobedarf, Porto, Fachliteratur)" },
    { F::Entsorgung, 52, 226, R::Ausgabe, "Kosten für Abfallbeseitigung und Entsorgung" },
    { F::Verpackung, 53, 227, R::Ausgabe, "Kosten für Verpackung und Transport" },
    { F::Werbung, 54, 224, R::Ausgabe, "Werbekosten (z. B. Inserate, Werbespots, Plakate)" },
    { F::SchuldzinsenAnlage, 55, 232, R::Ausgabe,
        "Schuldzinsen zur Finanzierung von Anschaffungs- und Herstellungskosten des Anlagevermögens" },
    { F::Schuldzinsen, 56, 234, R::Ausgabe, "Übrige Schuldzinsen" },
    { F::Vorsteuer, 57, 185, R::Ausgabe, "Gezahlte und nach § 15 UStG abziehbare Vorsteuerbeträge" },
    { F::UmsatzsteuerGezahlt, 58, 186, R::Ausgabe, "An das Finanzamt gezahlte und ggf. verrechnete Umsatzsteuer" },
    { F::Uebrige, 60, 183, R::Ausgabe, "Übrige unbeschränkt abziehbare Betriebsausgaben" },

    { F::GeschenkeNicht, 62, 164, R::NichtAbziehbar, "Geschenke" },
    { F::GeschenkeAbziehbar, 62, 174, R::Ausgabe, "Geschenke" },
    { F::BewirtungNicht, 63, 165, R::NichtAbziehbar, "Bewirtungsaufwendungen" },
    { F::BewirtungAbziehbar, 63, 175, R::Ausgabe, "Bewirtungsaufwendungen" },
    { F::Verpflegung, 64, 171, R::Ausgabe, "Verpflegungsmehraufwendungen" },
    { F::ArbeitszimmerNicht, 65, 162, R::NichtAbziehbar, "Aufwendungen für ein häusliches Arbeitszimmer" },
    { F::ArbeitszimmerAbziehbar, 65, 172, R::Ausgabe, "Aufwendungen für ein häusliches Arbeitszimmer" },
    { F::Tagespauschale, 66, 163, R::Ausgabe, "Tagespauschale für die Tätigkeit in der häuslichen Wohnung" },
    { F::SonstigeNicht, 67, 168, R::NichtAbziehbar, "Sonstige beschränkt abziehbare Betriebsausgaben" },
    { F::SonstigeAbziehbar, 67, 177, R::Ausgabe, "Sonstige beschränkt abziehbare Betriebsausgaben" },
    { F::KfzLeasing, 68, 144, R::Ausgabe, "Kraftfahrzeuge: Leasingkosten" },
    { F::KfzSteuern, 69, 145, R::Ausgabe, "Kraftfahrzeuge: Steuern, Versicherungen und Maut" },
    { F::KfzSonstige, 70, 146, R::Ausgabe,
        "Sonstige tatsächliche Fahrtkosten ohne AfA und Zinsen (z. B. Reparaturen, Wartungen, Treibstoff)" },
    { F::KfzFremd, 71, 147, R::Ausgabe,
        "Fahrtkosten für nicht zum Betriebsvermögen gehörende Fahrzeuge (Nutzungseinlage)" },
    { F::Entfernungspauschale, 73, 176, R::Ausgabe,
        "Mindestens abziehbare Fahrtkosten zwischen Wohnung und erster Betriebsstätte (Entfernungspauschale)" },
    { F::SummeAusgaben, 75, 199, R::SummeAusgaben, "Summe Betriebsausgaben" },

    { F::Gewinn, 92, 290, R::Gewinn, "Korrigierter Gewinn/Verlust" },
    { F::Entnahmen, 106, 122, R::Privat, "Entnahmen einschließlich Sach-, Leistungs- und Nutzungsentnahmen" },
    { F::Einlagen, 107, 123, R::Privat, "Einlagen einschließlich Sach-, Leistungs- und Nutzungseinlagen" },
};

constexpr EuerForm kForm2024(2024, kLines2025, 78, 91);
constexpr EuerForm kForm2025(2025, kLines2025, 78, 91);

} // namespace

const EuerForm* EuerForm::forYear(int year)
{
    for (const EuerForm* form : { &kForm2024, &kForm2025 }) {
        if (form->year() == year)
            return form;
    }
    return nullptr;
}

std::string EuerForm::missingYearMessage(int year)
{
    return "Fuer das Jahr " + std::to_string(year)
        + " kennt Saldo die Zeilen der Anlage EÜR noch nicht (vorhanden: 2024 und 2025).";
}

std::optional<std::size_t> EuerForm::indexOf(EuerField field) const
{
    const std::int16_t index = index_[static_cast<std::size_t>(field)];
    if (index < 0)
        return std::nullopt;
    return static_cast<std::size_t>(index);
}

} // namespace saldo::tax
