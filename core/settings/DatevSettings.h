#pragma once

#include "platform/UserDefaults.h"

#include <cstdint>
#include <optional>
#include <string>

namespace saldo {

// What the tax adviser's system needs to know besides the bookings: the
// adviser's number (Beraternummer, 1001 to 9999999), the client's number at
// the adviser (Mandantennummer, 1 to 99999), and the month the fiscal year
// begins with (January unless the user says otherwise). They are kept in the
// user's preferences beside the category list, each under its own key as a
// list of one whole number written as a decimal text; a number that is
// missing, not such a list or out of its range counts as not set, and an empty
// list is how a cleared number is stored.
struct DatevSettings {
    static constexpr const char* kBeraternummerKey = "DatevBeraternummer";
    static constexpr const char* kMandantennummerKey = "DatevMandantennummer";
    static constexpr const char* kWirtschaftsjahrBeginnKey = "DatevWirtschaftsjahrBeginn";

    static constexpr std::uint32_t kBeraternummerMin = 1001;
    static constexpr std::uint32_t kBeraternummerMax = 9999999;
    static constexpr std::uint32_t kMandantennummerMin = 1;
    static constexpr std::uint32_t kMandantennummerMax = 99999;

    std::optional<std::uint32_t> beraternummer;
    std::optional<std::uint32_t> mandantennummer;
    // 1 (January) to 12.
    int wirtschaftsjahrBeginn = 1;

    static bool isBeraternummer(long long value) { return value >= kBeraternummerMin && value <= kBeraternummerMax; }
    static bool isMandantennummer(long long value)
    {
        return value >= kMandantennummerMin && value <= kMandantennummerMax;
    }

    static DatevSettings read(const UserDefaults& defaults);
    // Stores the number, or clears it when it is nothing (out-of-range values too).
    static void storeBeraternummer(UserDefaults& defaults, std::optional<std::uint32_t> value);
    static void storeMandantennummer(UserDefaults& defaults, std::optional<std::uint32_t> value);
    static void storeWirtschaftsjahrBeginn(UserDefaults& defaults, int month);

    // Empty when both numbers are set; else one German sentence naming what is
    // missing ("Die Beraternummer fehlt in den Einstellungen (DATEV).").
    std::string missingText() const;
};

} // namespace saldo
