// saldo-cli ustva LEDGER PERIOD [--tsv]: the VAT return of a month, a quarter or a year.
#include "CliCommand.h"

#include "model/LedgerFile.h"
#include "tax/CentText.h"
#include "tax/TaxPeriod.h"
#include "tax/UstvaCalculation.h"
#include "tax/UstvaForm.h"
#include "tax/UstvaText.h"

#include <algorithm>
#include <cstdio>
#include <string>

namespace saldo::cli {

namespace {

using namespace saldo::tax;

// The width of a UTF-8 text in characters (every code point one column).
std::size_t columns(const std::string& text)
{
    return static_cast<std::size_t>(
        std::count_if(text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xc0) != 0x80; }));
}

void pad(std::string& out, const std::string& text, std::size_t width, bool right)
{
    const std::size_t fill = width > columns(text) ? width - columns(text) : 0;
    if (right)
        out.append(fill, ' ');
    out += text;
    if (!right)
        out.append(fill, ' ');
}

void appendList(std::string& out, const char* title, const std::vector<ListedItem>& items)
{
    if (items.empty())
        return;
    out += std::string("\n") + title + " (" + std::to_string(items.size()) + "):\n";
    std::size_t width = 0;
    for (const ListedItem& item : items)
        width = std::max(width, item.row.size());
    for (const ListedItem& item : items) {
        out += "  Eintrag ";
        pad(out, item.row, width, false);
        out += "  ";
        out += item.reason;
        out += "  (";
        out += item.name;
        out += ")\n";
    }
}

// The form as a person reads it.
std::string personText(const UstvaResult& result)
{
    std::string out = "Umsatzsteuer-Voranmeldung " + result.period.germanName() + " (Formular "
        + std::to_string(result.form->year) + ")\n\n";
    const std::vector<UstvaText::Row> rows = UstvaText::rows(result);
    std::size_t kzWidth = 2, labelWidth = 11, baseWidth = 19, taxWidth = 6;
    for (const UstvaText::Row& row : rows) {
        kzWidth = std::max(kzWidth, columns(row.kennzahl));
        labelWidth = std::max(labelWidth, columns(row.label));
        baseWidth = std::max(baseWidth, columns(row.base));
        taxWidth = std::max(taxWidth, columns(row.tax));
    }
    const auto line
        = [&](const std::string& kz, const std::string& label, const std::string& base, const std::string& tax) {
              pad(out, kz, kzWidth, false);
              out += "  ";
              pad(out, label, labelWidth, false);
              out += "  ";
              pad(out, base, baseWidth, true);
              out += "  ";
              pad(out, tax, taxWidth, true);
              out += '\n';
          };
    line("Kz", "Bezeichnung", "Bemessungsgrundlage", "Steuer");
    for (const UstvaText::Row& row : rows) {
        if (row.result)
            out += '\n';
        line(row.kennzahl, row.label, row.base, row.tax);
    }
    out += "(Bemessungsgrundlagen in ganzen Euro, Steuer in Euro und Cent; ein negativer Betrag in Kz "
        + std::to_string(result.form->resultKz) + " ist ein Ueberschuss.)\n";

    appendList(out, "Nicht zugeordnet", result.nichtZugeordnet);
    appendList(out, "Zugeordnet, aber nicht centgenau", result.nichtCentgenau);
    if (!result.nichtTeil.empty()) {
        out += "\nNicht Teil der Voranmeldung: " + std::to_string(result.nichtTeil.size())
            + " (Geldkonten, Privat, Finanzamt, Forderungen und Verbindlichkeiten)\n";
    }
    if (result.ohneVorsteuer > 0)
        out += "Ausgaben ohne Vorsteuer (0 %): " + std::to_string(result.ohneVorsteuer) + "\n";

    out += "\nUmsatzsteuer laut Buchungen: " + CentText::euros(result.bookedTax) + "\n";
    out += "Differenz zu Kz " + std::to_string(result.form->resultKz) + ": " + CentText::euros(result.differenceCents())
        + "\n";
    out += UstvaText::differenceExplanation();
    out += '\n';
    return out;
}

int run(const std::vector<std::string>& args)
{
    std::vector<std::string> operands;
    bool tsv = false;
    for (const std::string& arg : args) {
        if (arg == "--tsv")
            tsv = true;
        else
            operands.push_back(arg);
    }
    if (operands.size() != 2)
        return usageError("ustva takes a LEDGER and a PERIOD");
    const std::optional<TaxPeriod> period = TaxPeriod::parse(operands[1]);
    if (!period)
        return usageError(
            "PERIOD \"" + operands[1] + "\" is not a month (2025-03), a quarter (2025-Q1) or a year (2025)");
    const UstvaForm* form = UstvaForm::forYear(period->year());
    if (!form) {
        std::string years;
        for (int year : UstvaForm::years())
            years += (years.empty() ? "" : ", ") + std::to_string(year);
        return usageError("no VAT return form for " + std::to_string(period->year()) + " (forms: " + years + ")");
    }

    const EinnahmeList entries = LedgerFile::read(operands[0]);
    const UstvaResult result = UstvaCalculation::calculate(entries, *period, *form);
    const std::string text = tsv ? UstvaText::tsv(result) : personText(result);
    std::fwrite(text.data(), 1, text.size(), stdout);
    return finishOutput();
}

} // namespace

extern const CliCommand kUstvaCommand = { "ustva",
    "  ustva LEDGER PERIOD [--tsv]\n"
    "                    print the VAT return (Umsatzsteuer-Voranmeldung) of a month (2025-03),\n"
    "                    a quarter (2025-Q1) or a year (2025); --tsv: Kennzahl and value per line\n",
    run };

} // namespace saldo::cli
