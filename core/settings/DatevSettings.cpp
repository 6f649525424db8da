#include "settings/DatevSettings.h"

#include "settings/WindowGeometry.h"

namespace saldo {

namespace {
std::optional<long long> storedNumber(const UserDefaults& defaults, const char* key)
{
    if (const auto numbers = WindowGeometry::readNumbers(defaults, key, 1))
        return numbers->front();
    return std::nullopt;
}

void storeNumber(UserDefaults& defaults, const char* key, std::optional<std::uint32_t> value)
{
    if (value)
        WindowGeometry::writeNumbers(defaults, key, { static_cast<int>(*value) });
    else
        defaults.setStringArray(key, {});
}
} // namespace

DatevSettings DatevSettings::read(const UserDefaults& defaults)
{
    DatevSettings settings;
    if (const auto number = storedNumber(defaults, kBeraternummerKey); number && isBeraternummer(*number))
        settings.beraternummer = static_cast<std::uint32_t>(*number);
    if (const auto number = storedNumber(defaults, kMandantennummerKey); number && isMandantennummer(*number))
        settings.mandantennummer = static_cast<std::uint32_t>(*number);
    if (const auto month = storedNumber(defaults, kWirtschaftsjahrBeginnKey); month && *month >= 1 && *month <= 12)
        settings.wirtschaftsjahrBeginn = static_cast<int>(*month);
    return settings;
}

void DatevSettings::storeBeraternummer(UserDefaults& defaults, std::optional<std::uint32_t> value)
{
    storeNumber(defaults, kBeraternummerKey, value && isBeraternummer(*value) ? value : std::nullopt);
}

void DatevSettings::storeMandantennummer(UserDefaults& defaults, std::optional<std::uint32_t> value)
{
    storeNumber(defaults, kMandantennummerKey, value && isMandantennummer(*value) ? value : std::nullopt);
}

void DatevSettings::storeWirtschaftsjahrBeginn(UserDefaults& defaults, int month)
{
    if (month >= 1 && month <= 12)
        storeNumber(defaults, kWirtschaftsjahrBeginnKey, static_cast<std::uint32_t>(month));
}

std::string DatevSettings::missingText() const
{
    if (!beraternummer && !mandantennummer)
        return "Die Beraternummer und die Mandantennummer fehlen in den Einstellungen (DATEV).";
    if (!beraternummer)
        return "Die Beraternummer fehlt in den Einstellungen (DATEV).";
    if (!mandantennummer)
        return "Die Mandantennummer fehlt in den Einstellungen (DATEV).";
    return {};
}

} // namespace saldo
