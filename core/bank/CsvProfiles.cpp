#include "bank/CsvProfiles.h"

#include "bank/StatementError.h"
#include "platform/SmallFile.h"

#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <system_error>

#ifndef SALDO_INSTALLED_DATA_DIR
#define SALDO_INSTALLED_DATA_DIR "/usr/share"
#endif

namespace saldo {

namespace fs = std::filesystem;

std::string CsvProfiles::shippedFolder()
{
    // Beside the program: bin/../share/saldo/bankprofile, which is also where
    // the build tree keeps a copy for the programs built into it.
    char self[4096];
    const ssize_t length = readlink("/proc/self/exe", self, sizeof self - 1);
    if (length > 0) {
        const fs::path beside
            = fs::path(std::string(self, static_cast<std::size_t>(length))).parent_path().parent_path() / "share/saldo/bankprofile";
        std::error_code error;
        if (fs::is_directory(beside, error))
            return beside.string();
    }
    return SALDO_INSTALLED_DATA_DIR "/saldo/bankprofile";
}

std::string CsvProfiles::userFolder()
{
    const char* config = std::getenv("XDG_CONFIG_HOME");
    fs::path base;
    if (config && *config == '/') {
        base = config;
    } else {
        const char* home = std::getenv("HOME");
        base = fs::path(home ? home : "") / ".config";
    }
    return (base / "Saldo" / "Bankprofile").string();
}

CsvProfiles CsvProfiles::load()
{
    return loadFrom({ shippedFolder(), userFolder() });
}

CsvProfiles CsvProfiles::loadFrom(const std::vector<std::string>& folders)
{
    CsvProfiles profiles;
    for (const std::string& folder : folders)
        profiles.loadFolder(folder);
    return profiles;
}

void CsvProfiles::loadFolder(const std::string& folder)
{
    std::error_code error;
    std::vector<fs::path> files;
    for (fs::directory_iterator it(folder, error), end; !error && it != end; it.increment(error))
        if (it->path().extension() == ".profil")
            files.push_back(it->path());
    // In name order, so that the list reads the same on every machine.
    std::sort(files.begin(), files.end());
    for (const fs::path& file : files) {
        const SmallFile::Outcome read = SmallFile::read(file.string(), kMaxProfileSize);
        if (read.fault == SmallFile::Fault::NotRegular || read.fault == SmallFile::Fault::TooLarge) {
            problems_.push_back("Bankprofil " + file.string() + ": die Datei ist zu gross oder nicht lesbar.");
            continue;
        }
        if (read.fault) {
            problems_.push_back("Bankprofil " + file.string() + ": die Datei kann nicht gelesen werden.");
            continue;
        }
        try {
            add(CsvProfile::parse(read.bytes, file.string()));
        } catch (const StatementError& e) {
            problems_.push_back(e.what());
        }
    }
}

void CsvProfiles::add(CsvProfile profile)
{
    const auto same = std::find_if(
        profiles_.begin(), profiles_.end(), [&profile](const CsvProfile& p) { return p.name == profile.name; });
    if (same != profiles_.end())
        *same = std::move(profile);
    else
        profiles_.push_back(std::move(profile));
}

const CsvProfile* CsvProfiles::named(std::string_view name) const
{
    for (const CsvProfile& profile : profiles_)
        if (profile.name == name)
            return &profile;
    return nullptr;
}

} // namespace saldo
