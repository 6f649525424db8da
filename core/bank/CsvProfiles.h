#pragma once

#include "bank/CsvProfile.h"

#include <string>
#include <string_view>
#include <vector>

namespace saldo {

// The CSV profiles the program knows: those shipped with it (installed in
// share/saldo/bankprofile beside the program, or in the build tree's share
// folder while it runs from there) and the person's own in
// $XDG_CONFIG_HOME/Saldo/Bankprofile (~/.config/Saldo/Bankprofile). Every
// "*.profil" file of those folders is read; one of the person's replaces a
// shipped one of the same name. A profile that cannot be read is left out
// and named in problems().
class CsvProfiles {
public:
    static constexpr std::size_t kMaxProfileSize = 64 * 1024;

    // The shipped profiles' folder, and the person's own.
    static std::string shippedFolder();
    static std::string userFolder();

    // Every profile of the shipped folder and then the person's own.
    static CsvProfiles load();
    // Every profile of these folders, in this order (tests, the command line).
    static CsvProfiles loadFrom(const std::vector<std::string>& folders);

    // Adds a profile; one of the same name is replaced.
    void add(CsvProfile profile);

    const std::vector<CsvProfile>& all() const { return profiles_; }
    const CsvProfile* named(std::string_view name) const;
    // One German line for each profile file that could not be read.
    const std::vector<std::string>& problems() const { return problems_; }

private:
    void loadFolder(const std::string& folder);

    std::vector<CsvProfile> profiles_;
    std::vector<std::string> problems_;
};

} // namespace saldo
