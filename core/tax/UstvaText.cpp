#include "tax/UstvaText.h"

#include "tax/CentText.h"

#include <algorithm>
#include <utility>

namespace saldo::tax {

std::vector<UstvaText::Row> UstvaText::rows(const UstvaResult& result)
{
    std::vector<Row> rows;
    if (!result.form)
        return rows;
    for (const UstvaLine& line : result.form->lines) {
        if (result.isEmpty(line))
            continue;
        Row row;
        row.zeile = line.zeile;
        if (line.hasBase())
            row.kennzahl = std::to_string(line.baseKz);
        if (line.hasTaxKz())
            row.kennzahl += (row.kennzahl.empty() ? "" : " / ") + std::to_string(line.taxKz);
        row.label = line.label;
        if (line.hasBase())
            row.base = CentText::wholeEuros(result.baseEuros(line));
        if (line.hasTaxKz() || line.computedRate != 0)
            row.tax = CentText::euros(result.taxCents(line));
        rows.push_back(std::move(row));
    }
    Row remaining;
    remaining.zeile = result.form->resultZeile;
    remaining.kennzahl = std::to_string(result.form->resultKz);
    remaining.label = result.form->resultLabel;
    remaining.tax = CentText::euros(result.remainingCents());
    remaining.result = true;
    rows.push_back(std::move(remaining));
    return rows;
}

std::string UstvaText::tsv(const UstvaResult& result)
{
    std::vector<std::pair<int, std::string>> values;
    if (result.form) {
        for (const UstvaLine& line : result.form->lines) {
            if (line.hasBase() && result.baseEuros(line) != 0)
                values.emplace_back(line.baseKz, std::to_string(result.baseEuros(line)));
            if (line.hasTaxKz() && result.taxCents(line) != 0)
                values.emplace_back(line.taxKz, CentText::cNotation(result.taxCents(line)));
        }
        values.emplace_back(result.form->resultKz, CentText::cNotation(result.remainingCents()));
    }
    std::stable_sort(values.begin(), values.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
    std::string text;
    for (const auto& [kz, value] : values)
        text += std::to_string(kz) + '\t' + value + '\n';
    for (const ListedItem& item : result.nichtZugeordnet)
        text += "offen\t" + item.row + '\t' + item.reason + '\n';
    return text;
}

const char* UstvaText::bookedTaxExplanation()
{
    return "Die Umsatzsteuer laut Buchungen ist die Summe der Steuerbetraege der einzelnen Eintraege, abzueglich "
           "ihrer Vorsteuer.";
}

const char* UstvaText::differenceExplanation()
{
    return "Die Differenz entsteht, weil das Formular die Steuer der Kennzahlen 81, 86, 89 und 93 aus den auf ganze "
           "Euro gekuerzten Bemessungsgrundlagen berechnet.";
}

const char* UstvaText::reverseChargeExplanation()
{
    return "Bei innergemeinschaftlichen Erwerben und Leistungen nach § 13b ist der gezahlte Betrag die "
           "Bemessungsgrundlage, weil der Lieferant keine deutsche Umsatzsteuer berechnet hat; die Auswertung "
           "teilt ihn dagegen durch (1 + Steuersatz).";
}

} // namespace saldo::tax
