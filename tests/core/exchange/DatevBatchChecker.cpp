#include "DatevBatchChecker.h"

#include <algorithm>
#include <array>
#include <chrono>

namespace saldo::testing {

namespace {

struct Field {
    std::string text;
    bool quoted = false;
};

bool allDigits(std::string_view text)
{
    return !text.empty() && std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

long long numberOf(std::string_view text)
{
    long long value = 0;
    for (char c : text)
        value = value * 10 + (c - '0');
    return value;
}

// YYYYMMDD as a number, or -1 when it is no date.
long long dateValue(std::string_view text)
{
    if (text.size() != 8 || !allDigits(text))
        return -1;
    const std::chrono::year_month_day date { std::chrono::year(static_cast<int>(numberOf(text.substr(0, 4)))),
        std::chrono::month(static_cast<unsigned>(numberOf(text.substr(4, 2)))),
        std::chrono::day(static_cast<unsigned>(numberOf(text.substr(6, 2)))) };
    return date.ok() && date.year() >= std::chrono::year(1000) ? numberOf(text) : -1;
}

class Checker {
public:
    explicit Checker(DatevBatchCheck& check)
        : check_(check)
    {
    }

    void fail(std::size_t line, const std::string& what)
    {
        check_.findings.push_back("Zeile " + std::to_string(line) + ": " + what);
    }

    // The fields of one line; a finding for a quote out of place.
    std::vector<Field> split(std::string_view line, std::size_t number)
    {
        std::vector<Field> fields;
        std::size_t at = 0;
        while (true) {
            Field field;
            if (at < line.size() && line[at] == '"') {
                field.quoted = true;
                ++at;
                while (true) {
                    if (at >= line.size()) {
                        fail(number, "Anfuehrungszeichen nicht geschlossen");
                        fields.push_back(field);
                        return fields;
                    }
                    if (line[at] == '"') {
                        if (at + 1 < line.size() && line[at + 1] == '"') {
                            field.text += '"';
                            at += 2;
                            continue;
                        }
                        ++at;
                        break;
                    }
                    field.text += line[at++];
                }
                if (at < line.size() && line[at] != ';')
                    fail(number, "Zeichen nach dem schliessenden Anfuehrungszeichen");
            }
            while (at < line.size() && line[at] != ';') {
                if (line[at] == '"')
                    fail(number, "Anfuehrungszeichen in einem Feld ohne Anfuehrungszeichen");
                field.text += line[at++];
            }
            fields.push_back(std::move(field));
            if (at >= line.size())
                return fields;
            ++at; // the ';'
        }
    }

    void checkBytes(std::string_view bytes)
    {
        std::size_t line = 1;
        for (std::size_t i = 0; i < bytes.size(); ++i) {
            const auto c = static_cast<unsigned char>(bytes[i]);
            if (c == '\r' && i + 1 < bytes.size() && bytes[i + 1] == '\n') {
                ++i;
                ++line;
            } else if (c < 0x20 || c == 0x7F) {
                fail(line, "Steuerzeichen " + std::to_string(c));
            } else if (c == 0x81 || c == 0x8D || c == 0x8F || c == 0x90 || c == 0x9D) {
                fail(line, "Byte " + std::to_string(c) + " ist in Windows-1252 nicht belegt");
            }
        }
        if (bytes.size() < 2 || bytes.substr(bytes.size() - 2) != "\r\n")
            fail(line, "die letzte Zeile endet nicht mit CRLF");
    }

    void expect(
        std::size_t line, const std::vector<Field>& fields, std::size_t index, std::string_view text, bool quoted)
    {
        const Field& field = fields[index - 1];
        if (field.text != text || field.quoted != quoted)
            fail(line, "Feld " + std::to_string(index) + " ist \"" + field.text + "\"");
    }

    void checkHeader(const std::vector<Field>& fields)
    {
        if (fields.size() != 31) {
            fail(1, std::to_string(fields.size()) + " Kopffelder statt 31");
            return;
        }
        for (const Field& field : fields)
            check_.header.push_back(field.text);
        expect(1, fields, 1, "EXTF", true);
        expect(1, fields, 2, "700", false);
        expect(1, fields, 3, "21", false);
        expect(1, fields, 4, "Buchungsstapel", true);
        expect(1, fields, 5, "13", false);
        const std::string& erzeugt = fields[5].text;
        if (erzeugt.size() != 17 || dateValue(erzeugt.substr(0, 8)) < 0 || numberOf(erzeugt.substr(8, 2)) > 23
            || numberOf(erzeugt.substr(10, 2)) > 59 || numberOf(erzeugt.substr(12, 2)) > 59 || !allDigits(erzeugt))
            fail(1, "Erzeugt am ist kein Zeitpunkt: " + erzeugt);
        expect(1, fields, 8, "RE", true);
        const long long berater = allDigits(fields[10].text) ? numberOf(fields[10].text) : -1;
        if (berater < 1001 || berater > 9999999)
            fail(1, "Beraternummer " + fields[10].text);
        const long long mandant = allDigits(fields[11].text) ? numberOf(fields[11].text) : -1;
        if (mandant < 1 || mandant > 99999)
            fail(1, "Mandantennummer " + fields[11].text);
        const long long wj = dateValue(fields[12].text);
        if (wj < 0 || wj % 100 != 1)
            fail(1, "WJ-Beginn " + fields[12].text);
        accountLength_ = allDigits(fields[13].text) ? static_cast<std::size_t>(numberOf(fields[13].text)) : 0;
        if (accountLength_ < 4 || accountLength_ > 8)
            fail(1, "Sachkontenlaenge " + fields[13].text);
        vom_ = dateValue(fields[14].text);
        bis_ = dateValue(fields[15].text);
        if (vom_ < 0 || bis_ < 0 || bis_ < vom_ || vom_ / 10000 != bis_ / 10000)
            fail(1, "Datum vom/bis " + fields[14].text + ".." + fields[15].text);
        else if (wj >= 0 && (vom_ < wj || bis_ >= wj + 10000))
            fail(1, "Datum vom/bis liegt nicht im Wirtschaftsjahr ab " + fields[12].text);
        if (!fields[16].quoted || fields[16].text.size() > 30)
            fail(1, "Bezeichnung " + fields[16].text);
        expect(1, fields, 19, "1", false);
        expect(1, fields, 22, "EUR", true);
        expect(1, fields, 27, "03", true);
    }

    void checkHeadings(const std::vector<Field>& fields)
    {
        if (fields.size() != 125) {
            fail(2, std::to_string(fields.size()) + " Spaltenueberschriften statt 125");
            return;
        }
        // The columns a booking fills, where the adviser's system looks for them.
        static const std::array<std::pair<std::size_t, const char*>, 9> kPlaces { {
            { 1, "Umsatz (ohne Soll/Haben-Kz)" },
            { 2, "Soll/Haben-Kennzeichen" },
            { 3, "WKZ Umsatz" },
            { 7, "Konto" },
            { 8,
                "Gegenkonto (ohne BU-Schl\xFC"
                "ssel)" },
            { 9,
                "BU-Schl\xFC"
                "ssel" },
            { 10, "Belegdatum" },
            { 11, "Belegfeld 1" },
            { 14, "Buchungstext" },
        } };
        for (const auto& [index, heading] : kPlaces)
            expect(2, fields, index, heading, false);
        if (fields[114].text != "Leistungsdatum" || fields[124].text != "Abw. Skontokonto")
            fail(2, "Spalten 115 und 125 heissen \"" + fields[114].text + "\", \"" + fields[124].text + "\"");
        for (std::size_t i = 0; i < fields.size(); ++i) {
            if (fields[i].text.empty())
                fail(2, "Spalte " + std::to_string(i + 1) + " ohne Ueberschrift");
        }
    }

    bool isAccount(const Field& field) const
    {
        return !field.quoted && allDigits(field.text) && field.text.size() <= accountLength_
            && numberOf(field.text) > 0;
    }

    void checkBooking(std::size_t line, const std::vector<Field>& fields)
    {
        if (fields.size() != 125) {
            fail(line, std::to_string(fields.size()) + " Felder statt 125");
            return;
        }
        DatevBatchCheck::Booking booking;
        const std::string& umsatz = fields[0].text;
        const std::size_t comma = umsatz.find(',');
        if (fields[0].quoted || comma == std::string::npos || comma == 0 || comma > 10 || umsatz.size() != comma + 3
            || !allDigits(umsatz.substr(0, comma)) || !allDigits(umsatz.substr(comma + 1))
            || (comma > 1 && umsatz[0] == '0')) {
            fail(line, "Umsatz \"" + umsatz + "\"");
        } else {
            booking.cents = numberOf(umsatz.substr(0, comma)) * 100 + numberOf(umsatz.substr(comma + 1));
            if (booking.cents == 0)
                fail(line, "Umsatz 0,00");
        }
        if (!fields[1].quoted || (fields[1].text != "S" && fields[1].text != "H"))
            fail(line, "Soll/Haben \"" + fields[1].text + "\"");
        else
            booking.side = fields[1].text[0];
        expect(line, fields, 3, "EUR", true);
        if (!isAccount(fields[6]) || !isAccount(fields[7]))
            fail(line, "Konto/Gegenkonto \"" + fields[6].text + "\"/\"" + fields[7].text + "\"");
        else if (numberOf(fields[6].text) == numberOf(fields[7].text))
            fail(line, "Konto gleich Gegenkonto");
        booking.konto = fields[6].text;
        booking.gegenkonto = fields[7].text;
        checkTaxKey(line, fields[8], booking.gegenkonto);
        booking.buSchluessel = fields[8].text;
        checkBelegdatum(line, fields[9]);
        booking.belegdatum = fields[9].text;
        checkBelegfeld(line, fields[10]);
        booking.belegfeld = fields[10].text;
        if (!fields[13].quoted || fields[13].text.size() > 60)
            fail(line, "Buchungstext \"" + fields[13].text + "\"");
        booking.buchungstext = fields[13].text;
        for (std::size_t i = 0; i < fields.size(); ++i) {
            const bool filled = i <= 2 || (i >= 6 && i <= 10) || i == 13;
            if (!filled && (!fields[i].text.empty() || fields[i].quoted))
                fail(line, "Feld " + std::to_string(i + 1) + " ist nicht leer");
        }
        (booking.side == 'S' ? check_.sollCents : check_.habenCents) += booking.cents;
        check_.bookings.push_back(std::move(booking));
    }

    void checkTaxKey(std::size_t line, const Field& key, const std::string& gegenkonto)
    {
        static const std::array<std::string_view, 8> kKeys { "", "2", "3", "8", "9", "18", "19", "94" };
        static const std::array<std::string_view, 9> kAutomatic { "8120", "8125", "8300", "8310", "8315", "8336",
            "8338", "8400", "8449" };
        if (!key.quoted || std::find(kKeys.begin(), kKeys.end(), key.text) == kKeys.end())
            fail(line, "BU-Schluessel \"" + key.text + "\"");
        else if (!key.text.empty() && std::find(kAutomatic.begin(), kAutomatic.end(), gegenkonto) != kAutomatic.end())
            fail(line, "BU-Schluessel auf dem Automatikkonto " + gegenkonto);
    }

    void checkBelegdatum(std::size_t line, const Field& field)
    {
        const std::string& ddmm = field.text;
        if (field.quoted || ddmm.size() != 4 || !allDigits(ddmm) || vom_ < 0) {
            fail(line, "Belegdatum \"" + ddmm + "\"");
            return;
        }
        const long long date = vom_ / 10000 * 10000 + numberOf(ddmm.substr(2, 2)) * 100 + numberOf(ddmm.substr(0, 2));
        if (dateValue(std::to_string(date)) < 0 || date < vom_ || date > bis_)
            fail(line, "Belegdatum " + ddmm + " liegt nicht in " + std::to_string(vom_) + ".." + std::to_string(bis_));
    }

    void checkBelegfeld(std::size_t line, const Field& field)
    {
        const auto allowed = [](char c) {
            return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9')
                || std::string_view("$&%*+-/").find(c) != std::string_view::npos;
        };
        if (!field.quoted || field.text.size() > 36 || !std::all_of(field.text.begin(), field.text.end(), allowed))
            fail(line, "Belegfeld 1 \"" + field.text + "\"");
    }

private:
    DatevBatchCheck& check_;
    std::size_t accountLength_ = 0;
    long long vom_ = -1;
    long long bis_ = -1;
};

} // namespace

DatevBatchCheck checkDatevBatch(std::string_view bytes)
{
    DatevBatchCheck check;
    Checker checker(check);
    checker.checkBytes(bytes);
    std::size_t number = 0;
    for (std::size_t start = 0; start < bytes.size();) {
        std::size_t end = bytes.find("\r\n", start);
        if (end == std::string_view::npos)
            end = bytes.size();
        const std::string_view line = bytes.substr(start, end - start);
        start = end + 2;
        ++number;
        const std::vector<Field> fields = checker.split(line, number);
        if (number == 1)
            checker.checkHeader(fields);
        else if (number == 2)
            checker.checkHeadings(fields);
        else
            checker.checkBooking(number, fields);
    }
    if (number < 2)
        checker.fail(number, "Kopf oder Spaltenueberschriften fehlen");
    if (check.bookings.size() > 99999)
        checker.fail(number, std::to_string(check.bookings.size()) + " Buchungen in einem Stapel");
    return check;
}

} // namespace saldo::testing
