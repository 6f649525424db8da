#include "exchange/DatevExportSummary.h"

namespace saldo {

namespace {
std::string bookingsText(std::size_t count)
{
    return std::to_string(count) + (count == 1 ? " Buchung" : " Buchungen");
}
} // namespace

std::string DatevExportSummary::euros(std::int64_t cents)
{
    const bool negative = cents < 0;
    const std::uint64_t magnitude
        = negative ? 0 - static_cast<std::uint64_t>(cents) : static_cast<std::uint64_t>(cents);
    const std::string whole = std::to_string(magnitude / 100);
    std::string text = negative ? "-" : "";
    for (std::size_t i = 0; i < whole.size(); ++i) {
        if (i > 0 && (whole.size() - i) % 3 == 0)
            text += '.';
        text += whole[i];
    }
    const auto fraction = static_cast<int>(magnitude % 100);
    text += ',';
    text += static_cast<char>('0' + fraction / 10);
    text += static_cast<char>('0' + fraction % 10);
    return text + " €";
}

std::string DatevExportSummary::text(const DatevExportResult& result, const std::vector<std::string>& paths)
{
    std::string text = bookingsText(result.bookings) + " geschrieben, in " + std::to_string(result.files.size())
        + (result.files.size() == 1 ? " Datei:\n" : " Dateien:\n");
    for (std::size_t i = 0; i < result.files.size(); ++i) {
        const DatevBatchFile& file = result.files[i];
        text += "  " + (i < paths.size() ? paths[i] : std::string()) + "\n    " + file.period.vom.german() + " bis "
            + file.period.bis.german();
        if (file.parts > 1)
            text += ", Teil " + std::to_string(file.part) + " von " + std::to_string(file.parts);
        text += ": " + bookingsText(file.bookings) + ", Soll " + euros(file.sollCents) + ", Haben "
            + euros(file.habenCents) + '\n';
    }
    if (result.zeroItems > 0)
        text += std::to_string(result.zeroItems) + " Posten mit 0,00 € ausgelassen.\n";
    if (!result.skipped.empty()) {
        text += "Nicht geschrieben (" + std::to_string(result.skipped.size()) + "):\n";
        for (const DatevSkippedItem& item : result.skipped)
            text += "  Zeile " + item.row + ": " + item.reason + '\n';
    }
    if (!result.belegfeldChanges.empty()) {
        text += "Belegfeld 1 geaendert (" + std::to_string(result.belegfeldChanges.size()) + "):\n";
        for (const DatevBelegfeldChange& change : result.belegfeldChanges)
            text += "  Zeile " + change.row + ": \"" + change.rechnungsnummer + "\" als \"" + change.belegfeld + "\"\n";
    }
    if (result.replacedCharacters > 0)
        text += std::to_string(result.replacedCharacters) + " Zeichen"
            + " als \"?\" geschrieben: Windows-1252 kennt sie nicht.\n";
    return text;
}

} // namespace saldo
