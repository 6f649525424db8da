#include "tax/TaxSettings.h"

#include "platform/NotificationCenter.h"

namespace saldo::tax {

bool TaxSettings::isKleinunternehmer(const UserDefaults& defaults)
{
    return defaults.boolValue(kKleinunternehmerKey).value_or(false);
}

void TaxSettings::setKleinunternehmer(UserDefaults& defaults, bool on)
{
    defaults.setBool(kKleinunternehmerKey, on);
    NotificationCenter::defaultCenter().post(kChangedNotification);
}

} // namespace saldo::tax
