#include "entrylist/EntryColumn.h"

namespace saldo {
namespace {

struct ColumnInfo {
    std::string_view identifier;
    std::string_view title;
    EntryColumn::Kind kind;
};

constexpr ColumnInfo kColumns[EntryColumn::Count] = {
    {"NameColumn", "Name", EntryColumn::Kind::Text},
    {"NonEUColumn", "Non EU", EntryColumn::Kind::CheckBox},
    {"InnergemColumn", "Innergem.", EntryColumn::Kind::CheckBox},
    {"ArtColumn", "Art", EntryColumn::Kind::PopUp},
    {"KategorieColumn", "Kategorie", EntryColumn::Kind::PopUp},
    {"BruttoColumn", "Brutto", EntryColumn::Kind::Number},
    {"NettoColumn", "Netto", EntryColumn::Kind::Number},
    {"SteuerColumn", "Steuersatz", EntryColumn::Kind::Number},
    {"DateColumn", "Datum", EntryColumn::Kind::Date},
    {"RechnungsnummerColumn", "Rechnungsnummer", EntryColumn::Kind::Text},
    {"SteuernummerColumn", "Steuernummer", EntryColumn::Kind::Text},
    {"SplitbuchungColumn", "Splitbuchung", EntryColumn::Kind::CheckBox},
    {"LeistungsartColumn", "Leistungsart", EntryColumn::Kind::Text},
};

}  // namespace

std::string_view EntryColumn::identifier(Id column)
{
    return isValid(column) ? kColumns[column].identifier : std::string_view();
}

int EntryColumn::indexOf(std::string_view identifier)
{
    for (int column = 0; column < Count; ++column)
        if (identifier == kColumns[column].identifier)
            return column;
    return -1;
}

std::string_view EntryColumn::title(Id column)
{
    return isValid(column) ? kColumns[column].title : std::string_view();
}

EntryColumn::Kind EntryColumn::kind(Id column)
{
    return isValid(column) ? kColumns[column].kind : Kind::Text;
}

bool EntryColumn::isTextField(Id column)
{
    const Kind k = kind(column);
    return isValid(column) && (k == Kind::Text || k == Kind::Number);
}

}  // namespace saldo
