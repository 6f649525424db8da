#pragma once

#include "platform/UserDefaults.h"

namespace saldo::tax {

// The tax settings in the user's preferences, read by every tax evaluation.
class TaxSettings {
public:
    // "Kleinunternehmer (§ 19 UStG)": no VAT is charged or deducted, so there
    // is no VAT return; off unless set.
    static constexpr const char* kKleinunternehmerKey = "Steuer/Kleinunternehmer";
    // Posted (no object) after a tax setting changed.
    static constexpr const char* kChangedNotification = "TaxSettingsChanged";

    static bool isKleinunternehmer(const UserDefaults& defaults);
    // Stores the setting and posts kChangedNotification.
    static void setKleinunternehmer(UserDefaults& defaults, bool on);
};

} // namespace saldo::tax
