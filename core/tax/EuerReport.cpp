#include "tax/EuerReport.h"

#include "model/UnicodeText.h"
#include "tax/CentText.h"
#include "tax/EuerRules.h"

#include <algorithm>

namespace saldo::tax {

namespace {

constexpr std::size_t kLabelWidth = 60;
constexpr std::size_t kAmountWidth = 14;
constexpr std::size_t kNameWidth = 36;

// Columns a text takes on a terminal: its characters as a reader counts them.
std::size_t widthOf(std::string_view text)
{
    for (char c : text) {
        if (static_cast<unsigned char>(c) >= 0x80)
            return UnicodeText::graphemeCount(text);
    }
    return text.size();
}

// A name on one line: tabs, line breaks and other control characters become blanks.
std::string oneLine(std::string text)
{
    for (char& c : text) {
        if (static_cast<unsigned char>(c) < 0x20 || c == 0x7f)
            c = ' ';
    }
    return text;
}

std::string padRight(std::string text, std::size_t width)
{
    const std::size_t have = widthOf(text);
    if (have < width)
        text.append(width - have, ' ');
    return text;
}

std::string padLeft(const std::string& text, std::size_t width)
{
    const std::size_t have = widthOf(text);
    return have < width ? std::string(width - have, ' ') + text : text;
}

// A label cut at blanks into pieces no wider than `width` (a longer word stands alone).
std::vector<std::string> wrapped(std::string_view label, std::size_t width)
{
    std::vector<std::string> pieces(1);
    while (!label.empty()) {
        const std::size_t blank = label.find(' ');
        const std::string_view word = label.substr(0, blank);
        label = blank == std::string_view::npos ? std::string_view() : label.substr(blank + 1);
        std::string& last = pieces.back();
        if (!last.empty() && widthOf(last) + 1 + widthOf(word) > width)
            pieces.emplace_back();
        if (!pieces.back().empty())
            pieces.back() += ' ';
        pieces.back() += word;
    }
    return pieces;
}

bool isSum(EuerRole role)
{
    return role == EuerRole::SummeEinnahmen || role == EuerRole::SummeAusgaben || role == EuerRole::Gewinn;
}

void appendLine(std::string& out, const EuerForm& form, const EuerLine& line, std::int64_t cents)
{
    const std::vector<std::string> pieces = wrapped(EuerReport::label(form, line), kLabelWidth);
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        const bool last = i + 1 == pieces.size();
        out += padLeft(i == 0 ? std::to_string(line.zeile) : "", 5) + "  ";
        if (last)
            out += padRight(pieces[i], kLabelWidth) + "  " + padLeft(std::to_string(line.kennzahl), 3)
                + padLeft(EuerReport::euros(cents), kAmountWidth);
        else
            out += pieces[i];
        out += '\n';
    }
}

void appendSection(std::string& out, const EuerResult& result, const char* heading, auto&& belongs)
{
    const auto lines = result.form->lines();
    bool any = false;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (!belongs(lines[i]) || result.cents[i] == 0)
            continue;
        if (!any)
            out += std::string("\n") + heading + '\n';
        any = true;
        appendLine(out, *result.form, lines[i], result.cents[i]);
    }
}

// Appends `text` and blanks up to `width` columns (text of `textWidth` columns).
void appendPadded(std::string& out, std::string_view text, std::size_t textWidth, std::size_t width)
{
    out += text;
    if (textWidth < width)
        out.append(width - textWidth, ' ');
}

void appendList(std::string& out, const std::vector<EuerListed>& items, const char* heading, bool showReason)
{
    if (items.empty())
        return;
    out += '\n';
    out += heading;
    out += " (" + std::to_string(items.size()) + ")\n";
    // The names on one line and their widths, measured once.
    std::vector<std::pair<std::string, std::size_t>> names;
    names.reserve(items.size());
    std::size_t rowWidth = std::string_view("Eintrag").size();
    std::size_t nameWidth = 4;
    for (const EuerListed& listed : items) {
        std::string name = oneLine(listed.item->name());
        const std::size_t width = widthOf(name);
        rowWidth = std::max(rowWidth, listed.row.size());
        nameWidth = std::max(nameWidth, std::min(kNameWidth, width));
        names.emplace_back(std::move(name), width);
    }
    out += "  " + padRight("Eintrag", rowWidth) + "  " + padRight("Name", nameWidth) + padLeft("Betrag", kAmountWidth);
    out += showReason ? "  Grund\n" : "\n";
    for (std::size_t i = 0; i < items.size(); ++i) {
        const EuerListed& listed = items[i];
        out += "  ";
        appendPadded(out, listed.row, listed.row.size(), rowWidth);
        out += "  ";
        appendPadded(out, names[i].first, names[i].second, nameWidth);
        const std::string amount = listed.amountKnown ? EuerReport::euros(listed.cents) : "—";
        out.append(kAmountWidth > amount.size() ? kAmountWidth - amount.size() : 0, ' ');
        out += amount;
        if (showReason) {
            out += "  ";
            out += listed.reason;
        }
        out += '\n';
    }
}

} // namespace

std::string EuerReport::label(const EuerForm& form, const EuerLine& line)
{
    const auto lines = form.lines();
    const bool twoColumns = std::count_if(lines.begin(), lines.end(), [&](const EuerLine& other) {
        return other.zeile == line.zeile;
    }) > 1;
    if (!twoColumns)
        return line.label;
    return std::string(line.label) + (line.role == EuerRole::NichtAbziehbar ? " (nicht abziehbar)" : " (abziehbar)");
}

std::string EuerReport::taxationNote(bool kleinunternehmer)
{
    return kleinunternehmer ? "Kleinunternehmer (§ 19 UStG): Einnahmen brutto, Ausgaben brutto ohne Vorsteuer"
                            : "Regelbesteuerung: Betraege netto, Umsatzsteuer und Vorsteuer in eigenen Zeilen";
}

std::string EuerReport::euros(std::int64_t cents)
{
    return CentText::euros(cents);
}

std::string EuerReport::cNotation(std::int64_t cents)
{
    return CentText::cNotation(cents);
}

std::string EuerReport::tsv(const EuerResult& result)
{
    std::string out;
    const auto lines = result.form->lines();
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (result.cents[i] == 0 && !isSum(lines[i].role))
            continue;
        out += std::to_string(lines[i].zeile) + '\t' + std::to_string(lines[i].kennzahl) + '\t'
            + cNotation(result.cents[i]) + '\n';
    }
    for (const EuerListed& listed : result.nichtZugeordnet)
        out += "offen\t" + listed.row + '\t' + listed.reason + '\n';
    return out;
}

std::string EuerReport::reverseChargeNote(const EuerForm& form)
{
    return "Bei innergemeinschaftlichem Erwerb und Leistungen von ausserhalb der EU steht der gezahlte Betrag in "
           "der Zeile der Ausgabe: Umsatzsteuer und Vorsteuer heben sich auf, daher erscheint davon nichts in Zeile "
        + std::to_string(form.line(EuerField::Umsatzsteuer).zeile) + " oder Zeile "
        + std::to_string(form.line(EuerField::Vorsteuer).zeile) + ".";
}

std::string EuerReport::correctionsNote(const EuerForm& form)
{
    return "Die Zeilen " + std::to_string(form.firstCorrectionZeile()) + " bis "
        + std::to_string(form.lastCorrectionZeile())
        + " (Hinzurechnungen und Abzuege wie Investitionsabzugsbetraege) kennt Saldo nicht: Zeile "
        + std::to_string(form.line(EuerField::Gewinn).zeile) + " ist hier Zeile "
        + std::to_string(form.line(EuerField::SummeEinnahmen).zeile) + " minus Zeile "
        + std::to_string(form.line(EuerField::SummeAusgaben).zeile)
        + ". Diese Korrekturen und die Eingabe in ELSTER bleiben Ihnen ueberlassen.";
}

std::string EuerReport::geringwertigNote(const EuerForm& form)
{
    return "Ein Anlagegut bis 800 Euro (Anschaffungskosten ohne abziehbare Vorsteuer, wie oben) darf als "
           "geringwertiges Wirtschaftsgut im Jahr der Anschaffung ganz abgesetzt werden (Zeile "
        + std::to_string(form.line(EuerField::GeringwertigeWirtschaftsgueter).zeile) + ").";
}

std::string EuerReport::text(const EuerResult& result, std::string_view title)
{
    const EuerForm& form = *result.form;
    std::string out = "Anlage EÜR " + std::to_string(form.year()) + " — " + std::string(title) + '\n';
    out += taxationNote(result.kleinunternehmer) + '\n';
    out += std::to_string(result.itemCount) + " Buchungen im Jahr " + std::to_string(form.year()) + '\n';
    out += '\n';
    out += padLeft("Zeile", 5) + "  " + padRight("Bezeichnung", kLabelWidth) + "  Kz"
        + padLeft("Euro", kAmountWidth + 1) + '\n';

    appendSection(out, result, "Betriebseinnahmen", [](const EuerLine& l) { return l.role == EuerRole::Einnahme; });
    appendSection(out, result, "Betriebsausgaben",
        [](const EuerLine& l) { return l.role == EuerRole::Ausgabe || l.role == EuerRole::NichtAbziehbar; });
    appendSection(out, result, "Entnahmen und Einlagen", [](const EuerLine& l) { return l.role == EuerRole::Privat; });
    out += "\nSummen\n";
    const auto lines = form.lines();
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (isSum(lines[i].role))
            appendLine(out, form, lines[i], result.cents[i]);
    }

    out += '\n';
    if (result.reverseChargeCount > 0)
        out += reverseChargeNote(form) + '\n';
    out += correctionsNote(form) + '\n';

    appendList(out, result.nichtZugeordnet, "Nicht zugeordnet", true);
    appendList(out, result.nichtAbziehbar, "Nicht abziehbar", true);
    appendList(out, result.anlagegut, kAnlagegut, false);
    if (!result.anlagegut.empty())
        out += geringwertigNote(form) + '\n';
    appendList(out, result.nichtTeil, "Nicht Teil der EÜR", true);
    appendList(out, result.hinweise, "Hinweise", true);
    return out;
}

} // namespace saldo::tax
