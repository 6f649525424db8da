#include "bank/CsvProfile.h"

#include "bank/BankText.h"
#include "bank/BankValueText.h"
#include "bank/CsvRows.h"
#include "bank/StatementError.h"
#include "model/Utf16.h"

#include <algorithm>
#include <map>
#include <set>

namespace saldo {

namespace {

class Parser {
public:
    Parser(CsvProfile& profile, const std::string& source)
        : p_(profile)
        , source_(source)
    {
    }

    void line(std::string_view key, std::string_view value, std::size_t number)
    {
        number_ = number;
        static const std::map<std::string_view, std::string CsvProfile::*> columns = { { "Datum", &CsvProfile::datum },
            { "Valuta", &CsvProfile::valuta }, { "Betrag", &CsvProfile::betrag }, { "Soll", &CsvProfile::soll },
            { "Haben", &CsvProfile::haben }, { "Partner", &CsvProfile::partner },
            { "PartnerBeiEinnahme", &CsvProfile::partnerIn }, { "PartnerBeiAusgabe", &CsvProfile::partnerOut }, { "IBAN", &CsvProfile::iban },
            { "Text", &CsvProfile::text }, { "Referenz", &CsvProfile::referenz },
            { "Buchungsart", &CsvProfile::buchungsart }, { "Waehrung", &CsvProfile::waehrung } };
        static const std::map<std::string_view, std::vector<std::string> CsvProfile::*> lists
            = { { "Fusszeile", &CsvProfile::footers }, { "PartnerMarke", &CsvProfile::partnerMarkers },
                  { "IbanMarke", &CsvProfile::ibanMarkers }, { "TextMarke", &CsvProfile::textMarkers },
                  { "Marke", &CsvProfile::otherMarkers } };
        const bool repeatable = lists.contains(key) || key == "Vorgemerkt";
        if (!repeatable && !seen_.insert(std::string(key)).second)
            fail("\"" + std::string(key) + "\" steht zweimal da");
        if (const auto column = columns.find(key); column != columns.end()) {
            p_.*(column->second) = std::string(value);
        } else if (const auto list = lists.find(key); list != lists.end()) {
            if (value.empty())
                fail("\"" + std::string(key) + "\" ohne Wert");
            (p_.*(list->second)).emplace_back(value);
        } else if (key == "Name") {
            p_.name = value;
        } else if (key == "Kodierung") {
            p_.encodings.clear();
            for (const std::string& name : CsvProfile::cellsOf(value, ',')) {
                const std::optional<TextEncoding::Kind> kind = TextEncoding::named(name);
                if (!kind)
                    fail("unbekannte Kodierung \"" + name + "\" (UTF-8, Latin-1 oder Windows-1252)");
                p_.encodings.push_back(*kind);
            }
        } else if (key == "Trennzeichen") {
            p_.separator = mark(value, false);
        } else if (key == "Kopfzeile") {
            header_ = value;
        } else if (key == "ZeilenVorKopf") {
            std::size_t count = 0;
            if (value.empty() || value.size() > 3 || !std::all_of(value.begin(), value.end(), [](char c) {
                    return c >= '0' && c <= '9';
                }))
                fail("\"ZeilenVorKopf\" ist keine Zahl");
            for (const char c : value)
                count = count * 10 + static_cast<std::size_t>(c - '0');
            p_.linesBeforeHeader = count;
        } else if (key == "Datumsformat") {
            if (!BankValueText::isDateFormat(value))
                fail("\"" + std::string(value) + "\" ist kein Datumsformat (etwa dd.MM.yyyy)");
            p_.dateFormat = value;
        } else if (key == "Dezimalzeichen") {
            p_.decimalMark = mark(value, false);
        } else if (key == "Tausenderzeichen") {
            p_.thousandsMark = mark(value, true);
        } else if (key == "Vorgemerkt") {
            const std::size_t equals = value.find('=');
            if (equals == std::string_view::npos)
                fail("\"Vorgemerkt\" braucht \"Spalte = Wert\"");
            p_.pending.emplace_back(BankText::trimmed(value.substr(0, equals)), BankText::trimmed(value.substr(equals + 1)));
        } else {
            fail("unbekannter Schluessel \"" + std::string(key) + "\"");
        }
    }

    void finish()
    {
        number_ = 0;
        if (p_.name.empty())
            fail("\"Name\" fehlt");
        if (header_.empty())
            fail("\"Kopfzeile\" fehlt");
        p_.header = CsvProfile::cellsOf(header_, p_.separator);
        while (!p_.header.empty() && p_.header.back().empty())
            p_.header.pop_back();
        if (p_.dateFormat.empty())
            fail("\"Datumsformat\" fehlt");
        if (p_.datum.empty())
            fail("\"Datum\" fehlt");
        if (p_.soll.empty() != p_.haben.empty() || (p_.betrag.empty() && p_.soll.empty()))
            fail("es braucht \"Betrag\" oder \"Soll\" und \"Haben\" (oder alle drei)");
        if (p_.decimalMark == p_.thousandsMark)
            fail("Dezimal- und Tausenderzeichen sind gleich");
        const auto inHeader = [this](const std::string& column) {
            if (!column.empty() && std::find(p_.header.begin(), p_.header.end(), column) == p_.header.end())
                fail("die Spalte \"" + column + "\" steht nicht in der Kopfzeile");
        };
        for (const std::string* column : { &p_.datum, &p_.valuta, &p_.betrag, &p_.soll, &p_.haben, &p_.partner,
                 &p_.partnerIn, &p_.partnerOut, &p_.iban, &p_.text, &p_.referenz, &p_.buchungsart, &p_.waehrung })
            inHeader(*column);
        for (const auto& [column, value] : p_.pending)
            inHeader(column);
    }

    void at(std::size_t number) { number_ = number; }

    [[noreturn]] void fail(const std::string& why) const
    {
        std::string where = "Bankprofil " + source_;
        if (number_ > 0)
            where += ", Zeile " + std::to_string(number_);
        throw StatementError(where + ": " + why + ".");
    }

private:
    char mark(std::string_view value, bool mayBeNone) const
    {
        if (value == "Tab")
            return '\t';
        if (mayBeNone && (value.empty() || value == "keins"))
            return 0;
        if (value.size() != 1 || value[0] == '"')
            fail("\"" + std::string(value) + "\" ist kein einzelnes Zeichen");
        return value[0];
    }

    CsvProfile& p_;
    const std::string& source_;
    std::size_t number_ = 0;
    std::string header_;
    std::set<std::string> seen_;
};

} // namespace

CsvProfile CsvProfile::parse(std::string_view text, const std::string& source)
{
    CsvProfile profile;
    profile.source = source;
    Parser parser(profile, source);
    if (text.starts_with("\xEF\xBB\xBF"))
        text.remove_prefix(3);
    if (!Utf16::isValidUtf8(text))
        parser.fail("die Datei ist kein UTF-8");
    std::size_t number = 0;
    while (!text.empty()) {
        ++number;
        const std::size_t end = std::min(text.find('\n'), text.size());
        const std::string_view line = BankText::trimmed(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
        if (line.empty() || line.front() == '#')
            continue;
        const std::size_t equals = line.find('=');
        if (equals == std::string_view::npos) {
            parser.at(number);
            parser.fail("kein \"=\" in der Zeile");
        }
        parser.line(BankText::trimmed(line.substr(0, equals)), BankText::trimmed(line.substr(equals + 1)), number);
    }
    parser.finish();
    return profile;
}

std::vector<std::string> CsvProfile::cellsOf(std::string_view line, char separator)
{
    std::vector<std::string> cells;
    CsvRows rows(line, separator);
    if (!rows.next(cells))
        cells.clear();
    for (std::string& cell : cells)
        cell = std::string(BankText::trimmed(cell));
    return cells;
}

} // namespace saldo
