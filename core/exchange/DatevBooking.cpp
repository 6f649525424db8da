#include "exchange/DatevBooking.h"

#include "entrylist/NfcText.h"
#include "exchange/Cp1252Text.h"
#include "exchange/DatevTaxKey.h"
#include "tax/TaxItems.h"

#include <charconv>

namespace saldo {

namespace {
constexpr int kAccountDigits = 4;

bool isBelegfeldCharacter(char c)
{
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '$' || c == '&'
        || c == '%' || c == '*' || c == '+' || c == '-' || c == '/';
}

// The German letters outside the set, spelled as a person would without them.
const char* spelledOut(std::string_view utf8Character)
{
    static constexpr std::pair<std::string_view, const char*> kLetters[]
        = { { "ä", "ae" }, { "ö", "oe" }, { "ü", "ue" }, { "Ä", "Ae" }, { "Ö", "Oe" }, { "Ü", "Ue" }, { "ß", "ss" } };
    for (const auto& [letter, spelled] : kLetters) {
        if (utf8Character == letter)
            return spelled;
    }
    return "";
}
} // namespace

DatevBookingOutcome DatevBooking::make(
    const Einnahme& item, LocalDay day, std::string_view rechnungsnummer, std::uint32_t konto)
{
    DatevBookingOutcome made;
    const tax::GrossCents gross = tax::grossCents(item.brutto());
    if (gross.fault) {
        made.fault = gross.fault;
        return made;
    }
    if (gross.cents == 0)
        return made;
    const std::optional<tax::CategoryNumber> account = tax::categoryNumber(item.kategorie());
    if (!account) {
        made.fault = "Kategorie ohne Kontonummer";
        return made;
    }
    if (account->digits != kAccountDigits) {
        made.fault = "Kategorie ist kein vierstelliges Sachkonto";
        return made;
    }
    if (account->value == konto) {
        made.fault = "Kategorie ist das Geldkonto";
        return made;
    }
    DatevTaxKey::Outcome key = DatevTaxKey::of(item, account->value);
    if (!key.fault.empty()) {
        made.fault = std::move(key.fault);
        return made;
    }
    DatevBooking booking;
    // Seen from the money account: money in is debit, money out credit; a
    // negative amount moves the other way.
    const bool debit = item.isIncome() == (gross.cents > 0);
    booking.umsatzCents = gross.cents > 0 ? gross.cents : -gross.cents;
    booking.side = debit ? 'S' : 'H';
    booking.konto = konto;
    booking.gegenkonto = account->value;
    booking.buSchluessel = key.key;
    booking.belegdatum = day;
    booking.belegfeld = belegfeldOf(rechnungsnummer);
    made.booking = std::move(booking);
    return made;
}

void DatevBooking::appendDigits(std::string& out, std::uint64_t value, int width)
{
    char buffer[24];
    char* end = std::to_chars(buffer, buffer + sizeof buffer, value).ptr;
    if (end - buffer < width)
        out.append(static_cast<std::size_t>(width - (end - buffer)), '0');
    out.append(buffer, end);
}

std::string DatevBooking::belegfeldOf(std::string_view rechnungsnummer)
{
    std::string field;
    bool plain = true;
    for (const char c : rechnungsnummer)
        plain = plain && static_cast<unsigned char>(c) < 0x80;
    const std::string composed = plain ? std::string() : NfcText::form(rechnungsnummer);
    const std::string_view text = plain ? rechnungsnummer : std::string_view(composed);
    for (std::size_t at = 0; at < text.size() && field.size() < kBelegfeldLength;) {
        // One character: a byte and the continuation bytes after it.
        std::size_t length = 1;
        while (static_cast<unsigned char>(text[at]) >= 0xC0 && at + length < text.size() && length < 4
            && (static_cast<unsigned char>(text[at + length]) & 0xC0) == 0x80)
            ++length;
        const std::string_view character = text.substr(at, length);
        at += length;
        if (length == 1 && isBelegfeldCharacter(character[0]))
            field += character[0];
        else
            field += spelledOut(character);
    }
    if (field.size() > kBelegfeldLength)
        field.resize(kBelegfeldLength);
    return field;
}

void DatevBooking::appendUmsatz(std::string& out, std::int64_t cents)
{
    appendDigits(out, static_cast<std::uint64_t>(cents / 100), 1);
    out += ',';
    appendDigits(out, static_cast<std::uint64_t>(cents % 100), 2);
}

void DatevBooking::appendLine(std::string& out, std::string_view buchungstext, Cp1252Text& text) const
{
    appendUmsatz(out, umsatzCents); // 1 Umsatz
    out += ";\"";
    out += side; // 2 Soll/Haben-Kennzeichen
    out += "\";\"EUR\";;;;"; // 3 WKZ Umsatz, 4–6 empty
    appendDigits(out, konto, kAccountDigits); // 7 Konto
    out += ';';
    appendDigits(out, gegenkonto, kAccountDigits); // 8 Gegenkonto
    out += ";\"";
    out += buSchluessel; // 9 BU-Schlüssel
    out += "\";";
    appendDigits(out, static_cast<std::uint64_t>(belegdatum.day), 2); // 10 Belegdatum
    appendDigits(out, static_cast<std::uint64_t>(belegdatum.month), 2);
    out += ";\"";
    out += belegfeld; // 11 Belegfeld 1
    out += "\";;;"; // 12, 13 empty
    text.appendQuoted(out, buchungstext, kBuchungstextLength); // 14 Buchungstext
    out.append(kColumns - 14, ';'); // 15–125 empty
    out += "\r\n";
}

} // namespace saldo
