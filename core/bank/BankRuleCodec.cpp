#include "bank/BankRuleCodec.h"

#include "bank/BankRuleError.h"
#include "bank/BankText.h"
#include "bank/BankRules.h"
#include "bank/BankValueText.h"
#include "model/Utf16.h"

#include <charconv>
#include <cmath>
#include <set>

namespace saldo {

namespace {

const char* signText(BankRule::Sign sign)
{
    return sign == BankRule::Sign::In ? "Einnahme" : sign == BankRule::Sign::Out ? "Ausgabe" : "";
}

const char* flagText(BankRule::Flag flag)
{
    return flag == BankRule::Flag::InnergemeinschaftlicherErwerb ? "innergemeinschaftlicherErwerb"
        : flag == BankRule::Flag::NonEU                          ? "isNonEU"
                                                                 : "";
}

// The fields of one rule as key and value, in a fixed order; empty values are left out.
std::vector<std::pair<std::string, std::string>> fieldsOf(const BankRule& rule)
{
    std::vector<std::pair<std::string, std::string>> fields = { { "Name", rule.name }, { "Partner", rule.partner },
        { "Text", rule.text }, { "Muster", rule.pattern }, { "Richtung", signText(rule.sign) },
        { "BetragAb", rule.minCents ? BankValueText::centsText(*rule.minCents) : "" },
        { "BetragBis", rule.maxCents ? BankValueText::centsText(*rule.maxCents) : "" },
        { "Kategorie", rule.kategorie },
        { "Steuersatz", rule.steuersatz ? BankRuleCodec::rateText(*rule.steuersatz) : "" },
        { "Kennzeichen", flagText(rule.flag) }, { "NameVorlage", rule.nameTemplate } };
    std::erase_if(fields, [](const auto& field) { return field.second.empty(); });
    return fields;
}

// Sets one field of a rule from its stored text; a second value for a key is a fault.
class FieldReader {
public:
    explicit FieldReader(std::string where)
        : where_(std::move(where))
    {
    }

    void set(BankRule& rule, std::string_view key, std::string value)
    {
        if (!seen_.insert(std::string(key)).second)
            fail("\"" + std::string(key) + "\" steht zweimal da");
        if (!Utf16::isValidUtf8(value))
            fail("der Wert von \"" + std::string(key) + "\" ist kein UTF-8");
        if (key == "Name") {
            rule.name = std::move(value);
        } else if (key == "Partner") {
            rule.partner = std::move(value);
        } else if (key == "Text") {
            rule.text = std::move(value);
        } else if (key == "Muster") {
            if (const std::string error = BankRules::patternError(value); !error.empty())
                fail("das Muster ist fehlerhaft (" + error + ")");
            rule.pattern = std::move(value);
        } else if (key == "Richtung") {
            if (value != "Einnahme" && value != "Ausgabe")
                fail("\"Richtung\" ist \"Einnahme\" oder \"Ausgabe\"");
            rule.sign = value == "Einnahme" ? BankRule::Sign::In : BankRule::Sign::Out;
        } else if (key == "BetragAb" || key == "BetragBis") {
            const std::optional<std::int64_t> cents = BankRuleCodec::amount(value);
            if (!cents)
                fail("\"" + value + "\" ist kein Betrag");
            (key == "BetragAb" ? rule.minCents : rule.maxCents) = cents;
        } else if (key == "Kategorie") {
            rule.kategorie = std::move(value);
        } else if (key == "Steuersatz") {
            rule.steuersatz = BankRuleCodec::rate(value);
            if (!rule.steuersatz)
                fail("\"" + value + "\" ist kein Steuersatz");
        } else if (key == "Kennzeichen") {
            if (value != flagText(BankRule::Flag::InnergemeinschaftlicherErwerb) && value != flagText(BankRule::Flag::NonEU))
                fail("\"Kennzeichen\" ist \"innergemeinschaftlicherErwerb\" oder \"isNonEU\"");
            rule.flag = value == "isNonEU" ? BankRule::Flag::NonEU : BankRule::Flag::InnergemeinschaftlicherErwerb;
        } else if (key == "NameVorlage") {
            rule.nameTemplate = std::move(value);
        } else {
            fail("unbekannter Schluessel \"" + std::string(key) + "\"");
        }
    }

    void finish(const BankRule& rule)
    {
        if (rule.name.empty())
            fail("die Regel hat keinen Namen");
        if (rule.minCents && rule.maxCents && *rule.minCents > *rule.maxCents)
            fail("\"BetragAb\" ist groesser als \"BetragBis\"");
    }

    [[noreturn]] void fail(const std::string& why) const { throw BankRuleError(where_ + ": " + why + "."); }
    void setWhere(std::string where) { where_ = std::move(where); }

private:
    std::string where_;
    std::set<std::string> seen_;
};

} // namespace

std::optional<std::int64_t> BankRuleCodec::amount(std::string_view text)
{
    text = BankText::trimmed(text);
    std::optional<std::int64_t> cents = BankValueText::cents(text, text.find(',') != std::string_view::npos ? ',' : '.', 0);
    if (!cents || *cents < 0 || text.find_first_of("+-") != std::string_view::npos)
        return std::nullopt;
    return cents;
}

std::optional<float> BankRuleCodec::rate(std::string_view text)
{
    std::string plain(BankText::trimmed(text));
    for (char& c : plain)
        c = c == ',' ? '.' : c;
    float value = 0;
    const auto [end, error] = std::from_chars(plain.data(), plain.data() + plain.size(), value);
    if (plain.empty() || error != std::errc() || end != plain.data() + plain.size() || !std::isfinite(value) || value < 0
        || value >= 100)
        return std::nullopt;
    return value;
}

std::string BankRuleCodec::rateText(float rate)
{
    char buffer[32];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, rate);
    return std::string(buffer, result.ptr);
}

std::vector<std::string> BankRuleCodec::toSettings(const std::vector<BankRule>& rules)
{
    std::vector<std::string> stored { kMark };
    for (const BankRule& rule : rules) {
        std::string text;
        for (const auto& [key, value] : fieldsOf(rule)) {
            if (!text.empty())
                text += '\n';
            text += key + '=';
            for (const char c : value)
                text += c == '\\' ? "\\\\" : c == '\n' ? "\\n" : std::string(1, c);
        }
        stored.push_back(std::move(text));
    }
    return stored;
}

std::vector<BankRule> BankRuleCodec::fromSettings(const std::vector<std::string>& stored)
{
    if (stored.empty() || stored.front() != kMark)
        throw BankRuleError("Die gespeicherten Bankregeln haben ein unbekanntes Format.");
    std::vector<BankRule> rules;
    for (std::size_t i = 1; i < stored.size(); ++i) {
        BankRule rule;
        FieldReader reader("Gespeicherte Bankregel " + std::to_string(i));
        std::string_view rest = stored[i];
        while (!rest.empty()) {
            const std::size_t end = std::min(rest.find('\n'), rest.size());
            const std::string_view line = rest.substr(0, end);
            rest.remove_prefix(std::min(end + 1, rest.size()));
            const std::size_t equals = line.find('=');
            if (equals == std::string_view::npos)
                reader.fail("eine Zeile ohne \"=\"");
            std::string value;
            for (std::size_t k = equals + 1; k < line.size(); ++k) {
                if (line[k] != '\\') {
                    value += line[k];
                } else if (k + 1 < line.size() && (line[k + 1] == '\\' || line[k + 1] == 'n')) {
                    value += line[++k] == 'n' ? '\n' : '\\';
                } else {
                    reader.fail("ein einzelner Rueckstrich");
                }
            }
            reader.set(rule, line.substr(0, equals), std::move(value));
        }
        reader.finish(rule);
        rules.push_back(std::move(rule));
    }
    return rules;
}

std::vector<BankRule> BankRuleCodec::load(const UserDefaults& defaults)
{
    if (!defaults.hasValue(kKey))
        return {};
    const std::optional<std::vector<std::string>> stored = defaults.stringArray(kKey);
    if (!stored)
        throw BankRuleError("Die gespeicherten Bankregeln sind keine Liste von Texten.");
    return fromSettings(*stored);
}

void BankRuleCodec::store(UserDefaults& defaults, const std::vector<BankRule>& rules)
{
    defaults.setStringArray(kKey, toSettings(rules));
}

std::vector<BankRule> BankRuleCodec::fromIni(std::string_view text)
{
    if (text.starts_with("\xEF\xBB\xBF"))
        text.remove_prefix(3);
    std::vector<BankRule> rules;
    std::optional<FieldReader> reader;
    std::size_t number = 0;
    const auto where = [&number] { return "Regeldatei, Zeile " + std::to_string(number); };
    while (!text.empty()) {
        ++number;
        const std::size_t end = std::min(text.find('\n'), text.size());
        const std::string_view line = BankText::trimmed(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
        if (line.empty() || line.front() == '#' || line.front() == ';')
            continue;
        if (line.front() == '[') {
            if (line.back() != ']' || line.size() < 3)
                throw BankRuleError(where() + ": eine Abschnittszeile braucht \"[Name]\".");
            if (reader)
                reader->finish(rules.back());
            reader.emplace(where());
            rules.emplace_back();
            reader->set(rules.back(), "Name", std::string(BankText::trimmed(line.substr(1, line.size() - 2))));
            continue;
        }
        const std::size_t equals = line.find('=');
        if (!reader || equals == std::string_view::npos)
            throw BankRuleError(where() + ": erwartet \"[Name]\" oder \"Schluessel = Wert\".");
        reader->setWhere(where());
        std::string_view value = BankText::trimmed(line.substr(equals + 1));
        if (value.size() >= 2 && value.front() == '"' && value.back() == '"')
            value = value.substr(1, value.size() - 2);
        reader->set(rules.back(), BankText::trimmed(line.substr(0, equals)), std::string(value));
    }
    if (reader)
        reader->finish(rules.back());
    return rules;
}

} // namespace saldo
