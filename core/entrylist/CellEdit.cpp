#include "entrylist/CellEdit.h"

#include "model/DecimalCommaText.h"

namespace saldo {
namespace {

template <class... Ts> struct Overloaded : Ts... {
    using Ts::operator()...;
};
template <class... Ts> Overloaded(Ts...) -> Overloaded<Ts...>;

using Outcome = CellEdit::Outcome;

Outcome applyText(Einnahme& entry, EntryColumn::Id column, const std::string& text, CellEdit::Table table)
{
    switch (column) {
    case EntryColumn::Name:
        entry.setName(text);
        return Outcome::Stored;
    case EntryColumn::Brutto: {
        const auto brutto = DecimalCommaText::parse(text);
        if (!brutto || !(*brutto > 0.0f))
            return Outcome::Refused;
        if (table == CellEdit::Table::Entries && !entry.childTransactions().empty())
            return Outcome::Refused;
        entry.setBrutto(*brutto);
        return Outcome::Stored;
    }
    case EntryColumn::Steuer: {
        const auto steuersatz = DecimalCommaText::parse(text);
        if (!steuersatz)
            return Outcome::Refused;
        entry.setSteuersatz(*steuersatz);
        return Outcome::Stored;
    }
    case EntryColumn::Rechnungsnummer:
        entry.setRechnungsnummer(text);
        return Outcome::Stored;
    case EntryColumn::Steuernummer:
        entry.setSteuernummer(text);
        return Outcome::Stored;
    case EntryColumn::Leistungsart:
        entry.setLeistungsart(text);
        return Outcome::Stored;
    default:
        return EntryColumn::isValid(column) ? Outcome::NothingStored : Outcome::Dropped;
    }
}

Outcome applyCheck(Einnahme& entry, EntryColumn::Id column, bool on)
{
    switch (column) {
    case EntryColumn::Innergem:
        entry.setInnergemeinschaftlicherErwerb(on);
        return Outcome::Stored;
    case EntryColumn::NonEU:
        entry.setIsNonEU(on);
        return Outcome::Stored;
    default:
        return EntryColumn::isValid(column) ? Outcome::NothingStored : Outcome::Dropped;
    }
}

}  // namespace

CellEdit::Outcome CellEdit::apply(Einnahme& entry, EntryColumn::Id column, const Value& value, Table table)
{
    return std::visit(Overloaded{
                          [&](const Text& v) { return applyText(entry, column, v.text, table); },
                          [&](const Check& v) { return applyCheck(entry, column, v.on); },
                          [&](const ItemIndex& v) {
                              if (column != EntryColumn::Art)
                                  return Outcome::Dropped;
                              entry.setArt(v.index == 0 ? kArtEinnahme : kArtAusgabe);
                              return Outcome::Stored;
                          },
                          [&](const ItemTitle& v) {
                              if (column != EntryColumn::Kategorie || !v.title)
                                  return Outcome::Dropped;
                              entry.setKategorie(*v.title);
                              return Outcome::Stored;
                          },
                          [&](const Date& v) {
                              if (column != EntryColumn::Date)
                                  return Outcome::Dropped;
                              entry.setDatum(v.datum);
                              return Outcome::Stored;
                          },
                      },
        value);
}

std::string CellEdit::diagnosticText(int row, int columnPosition, std::string_view text)
{
    std::string line = "Row: ";
    line += ' ';
    line += std::to_string(row);
    line += ' ';
    line += ", Column: ";
    line += ' ';
    line += std::to_string(columnPosition);
    line += ' ';
    line += " Inhalt: ";
    line += ' ';
    line += text;
    return line;
}

}  // namespace saldo
