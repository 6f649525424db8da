#pragma once

#include "bank/BankRule.h"
#include "platform/UserDefaults.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace saldo {

// The stored forms of the rule list. In the program's settings the list is a
// list of texts under "Bankregeln": first the mark "Saldo-Bankregeln 1", then
// one text per rule of "Schluessel=Wert" lines (a backslash and a line break
// in a value written as \\ and \n). A rules file for the command line has a
// section "[Name]" per rule, in order, with "Schluessel = Wert" lines below it
// (a value in double quotes keeps its blanks). The keys: Partner, Text,
// Muster, Richtung (Einnahme or Ausgabe), BetragAb, BetragBis, Kategorie,
// Steuersatz, Kennzeichen (innergemeinschaftlicherErwerb or isNonEU) and
// NameVorlage. A list with any fault is refused whole with BankRuleError:
// nothing of it is used, never a part.
class BankRuleCodec {
public:
    static constexpr const char* kKey = "Bankregeln";
    static constexpr const char* kMark = "Saldo-Bankregeln 1";

    static std::vector<std::string> toSettings(const std::vector<BankRule>& rules);
    static std::vector<BankRule> fromSettings(const std::vector<std::string>& stored);

    // The rules in the settings; none when nothing is stored. Damage throws.
    static std::vector<BankRule> load(const UserDefaults& defaults);
    static void store(UserDefaults& defaults, const std::vector<BankRule>& rules);

    static std::vector<BankRule> fromIni(std::string_view text);

    // An amount as the keys BetragAb and BetragBis hold it ("1234.50" or
    // "1234,50"), and a rate ("19", "5,5").
    static std::optional<std::int64_t> amount(std::string_view text);
    static std::optional<float> rate(std::string_view text);
    static std::string rateText(float rate);
};

} // namespace saldo
