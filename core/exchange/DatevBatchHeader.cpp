#include "exchange/DatevBatchHeader.h"

#include "exchange/Cp1252Text.h"
#include "exchange/DatevBooking.h"
#include "platform/Calendar.h"

namespace saldo {

namespace {
void appendNumber(std::string& out, std::uint64_t value, int width = 1)
{
    DatevBooking::appendDigits(out, value, width);
}

// YYYYMMDDHHMMSSmmm in local time; zeros for an instant the calendar cannot name.
void appendTimestamp(std::string& out, ReferenceSeconds instant)
{
    const auto local = Calendar::localDateTime(instant);
    if (!local) {
        out.append(17, '0');
        return;
    }
    const Calendar::Fields& f = local->fields;
    appendNumber(out, static_cast<std::uint64_t>(f.year), 4);
    for (const int part : { f.month, f.day, f.hour, f.minute, f.second })
        appendNumber(out, static_cast<std::uint64_t>(part), 2);
    appendNumber(out, static_cast<std::uint64_t>(local->millisecond), 3);
}
} // namespace

const std::array<const char*, 125>& DatevBatchHeader::headings()
{
    static const std::array<const char*, 125> kHeadings {
        "Umsatz (ohne Soll/Haben-Kz)",
        "Soll/Haben-Kennzeichen",
        "WKZ Umsatz",
        "Kurs",
        "Basis-Umsatz",
        "WKZ Basis-Umsatz",
        "Konto",
        "Gegenkonto (ohne BU-Schlüssel)",
        "BU-Schlüssel",
        "Belegdatum",
        "Belegfeld 1",
        "Belegfeld 2",
        "Skonto",
        "Buchungstext",
        "Postensperre",
        "Diverse Adressnummer",
        "Geschäftspartnerbank",
        "Sachverhalt",
        "Zinssperre",
        "Beleglink",
        "Beleginfo - Art 1",
        "Beleginfo - Inhalt 1",
        "Beleginfo - Art 2",
        "Beleginfo - Inhalt 2",
        "Beleginfo - Art 3",
        "Beleginfo - Inhalt 3",
        "Beleginfo - Art 4",
        "Beleginfo - Inhalt 4",
        "Beleginfo - Art 5",
        "Beleginfo - Inhalt 5",
        "Beleginfo - Art 6",
        "Beleginfo - Inhalt 6",
        "Beleginfo - Art 7",
        "Beleginfo - Inhalt 7",
        "Beleginfo - Art 8",
        "Beleginfo - Inhalt 8",
        "KOST1 - Kostenstelle",
        "KOST2 - Kostenstelle",
        "Kost-Menge",
        "EU-Land u. UStID (Bestimmung)",
        "EU-Steuersatz (Bestimmung)",
        "Abw. Versteuerungsart",
        "Sachverhalt L+L",
        "Funktionsergänzung L+L",
        "BU 49 Hauptfunktionstyp",
        "BU 49 Hauptfunktionsnummer",
        "BU 49 Funktionsergänzung",
        "Zusatzinformation - Art 1",
        "Zusatzinformation- Inhalt 1",
        "Zusatzinformation - Art 2",
        "Zusatzinformation- Inhalt 2",
        "Zusatzinformation - Art 3",
        "Zusatzinformation- Inhalt 3",
        "Zusatzinformation - Art 4",
        "Zusatzinformation- Inhalt 4",
        "Zusatzinformation - Art 5",
        "Zusatzinformation- Inhalt 5",
        "Zusatzinformation - Art 6",
        "Zusatzinformation- Inhalt 6",
        "Zusatzinformation - Art 7",
        "Zusatzinformation- Inhalt 7",
        "Zusatzinformation - Art 8",
        "Zusatzinformation- Inhalt 8",
        "Zusatzinformation - Art 9",
        "Zusatzinformation- Inhalt 9",
        "Zusatzinformation - Art 10",
        "Zusatzinformation- Inhalt 10",
        "Zusatzinformation - Art 11",
        "Zusatzinformation- Inhalt 11",
        "Zusatzinformation - Art 12",
        "Zusatzinformation- Inhalt 12",
        "Zusatzinformation - Art 13",
        "Zusatzinformation- Inhalt 13",
        "Zusatzinformation - Art 14",
        "Zusatzinformation- Inhalt 14",
        "Zusatzinformation - Art 15",
        "Zusatzinformation- Inhalt 15",
        "Zusatzinformation - Art 16",
        "Zusatzinformation- Inhalt 16",
        "Zusatzinformation - Art 17",
        "Zusatzinformation- Inhalt 17",
        "Zusatzinformation - Art 18",
        "Zusatzinformation- Inhalt 18",
        "Zusatzinformation - Art 19",
        "Zusatzinformation- Inhalt 19",
        "Zusatzinformation - Art 20",
        "Zusatzinformation- Inhalt 20",
        "Stück",
        "Gewicht",
        "Zahlweise",
        "Forderungsart",
        "Veranlagungsjahr",
        "Zugeordnete Fälligkeit",
        "Skontotyp",
        "Auftragsnummer",
        "Buchungstyp",
        "USt-Schlüssel (Anzahlungen)",
        "EU-Land (Anzahlungen)",
        "Sachverhalt L+L (Anzahlungen)",
        "EU-Steuersatz (Anzahlungen)",
        "Erlöskonto (Anzahlungen)",
        "Herkunft-Kz",
        "Buchungs GUID",
        "KOST-Datum",
        "SEPA-Mandatsreferenz",
        "Skontosperre",
        "Gesellschaftername",
        "Beteiligtennummer",
        "Identifikationsnummer",
        "Zeichnernummer",
        "Postensperre bis",
        "Bezeichnung SoBil-Sachverhalt",
        "Kennzeichen SoBil-Buchung",
        "Festschreibung",
        "Leistungsdatum",
        "Datum Zuord. Steuerperiode",
        "Fälligkeit",
        "Generalumkehr (GU)",
        "Steuersatz",
        "Land",
        "Abrechnungsreferenz",
        "BVV-Position",
        "EU-Land u. UStID (Ursprung)",
        "EU-Steuersatz (Ursprung)",
        "Abw. Skontokonto",
    };
    return kHeadings;
}

void DatevBatchHeader::appendLine(std::string& out, Cp1252Text& text) const
{
    out += "\"EXTF\";700;21;\"Buchungsstapel\";13;"; // 1 Kennzeichen … 5 Formatversion
    appendTimestamp(out, erzeugtAm); // 6 Erzeugt am
    out += ";;\"RE\";\"\";\"\";"; // 7 reserved, 8 Herkunft, 9 Exportiert von, 10 Importiert von
    appendNumber(out, beraternummer); // 11
    out += ';';
    appendNumber(out, mandantennummer); // 12
    out += ';';
    out += period.wirtschaftsjahrBeginn.compact(); // 13 WJ-Beginn
    out += ';';
    appendNumber(out, kSachkontenlaenge); // 14
    out += ';';
    out += period.vom.compact(); // 15 Datum vom
    out += ';';
    out += period.bis.compact(); // 16 Datum bis
    out += ';';
    text.appendQuoted(out, bezeichnung, kBezeichnungLength, bezeichnungEnding); // 17 Bezeichnung
    // 18 Diktatkürzel, 19 Buchungstyp (financial accounting), 20 Rechnungslegungszweck,
    // 21 Festschreibung (the adviser may still change the batch), 22 WKZ, 23 reserved,
    // 24 Derivatskennzeichen, 25–26 reserved, 27 Sachkontenrahmen (SKR 03),
    // 28 Branchenlösungs-ID, 29 reserved, 30 reserved, 31 Anwendungsinformation.
    out += ";\"\";1;0;0;\"EUR\";;\"\";;;\"03\";;;\"\";\"\"\r\n";
}

void DatevBatchHeader::appendHeadings(std::string& out, Cp1252Text& text)
{
    bool first = true;
    for (const char* heading : headings()) {
        if (!first)
            out += ';';
        first = false;
        text.append(out, heading, std::string_view(heading).size());
    }
    out += "\r\n";
}

} // namespace saldo
