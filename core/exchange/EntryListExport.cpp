#include "exchange/EntryListExport.h"

#include "model/LedgerFile.h"
#include "platform/Diagnostics.h"

#include <filesystem>
#include <string_view>
#include <system_error>

namespace saldo {

std::string EntryListExport::filePath(const std::string& chosenPath)
{
    return chosenPath + ".plist";
}

std::string EntryListExport::fileUrl(const std::string& path)
{
    std::error_code error;
    std::filesystem::path absolute = std::filesystem::absolute(path, error);
    const std::string full = error ? path : absolute.string();

    // What a URL path holds as it is: letters, digits, "-._~", the
    // sub-delimiters, ":", "@" and the "/" between names.
    constexpr std::string_view kPlain = "-._~!$&'()*+,;=:@/";
    constexpr char kHex[] = "0123456789ABCDEF";
    std::string url = "file://";
    for (const char c : full) {
        const auto byte = static_cast<unsigned char>(c);
        const bool alphanumeric
            = (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') || (byte >= '0' && byte <= '9');
        if (alphanumeric || kPlain.find(c) != std::string_view::npos) {
            url += c;
        } else {
            url += '%';
            url += kHex[byte >> 4];
            url += kHex[byte & 0x0F];
        }
    }
    return url;
}

std::string EntryListExport::write(const std::string& chosenPath, const EinnahmeList& einnahmen)
{
    const std::string bytes = LedgerFile::encode(einnahmen);
    diagnosticLine("Einnahmen erfolgreich verschluesselt: " + std::to_string(bytes.size()) + " bytes");
    const std::string path = filePath(chosenPath);
    LedgerFile::writeBesideLedgers(path, bytes);
    diagnosticLine("Einnahmen erfolgreich auf Disk geschrieben: " + fileUrl(path));
    return path;
}

} // namespace saldo
