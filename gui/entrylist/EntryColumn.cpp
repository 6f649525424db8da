#include "entrylist/EntryColumn.h"

namespace saldo::gui {
namespace {

struct ColumnInfo {
    const char* identifier;
    const char* title;
    EntryColumn::Kind kind;
    int width;
};

constexpr ColumnInfo kColumns[EntryColumn::Count] = {
    { "NameColumn", "Name", EntryColumn::Kind::Text, 170 },
    { "NonEUColumn", "Non EU", EntryColumn::Kind::CheckBox, 56 },
    { "InnergemColumn", "Innergem.", EntryColumn::Kind::CheckBox, 70 },
    { "ArtColumn", "Art", EntryColumn::Kind::PopUp, 100 },
    { "KategorieColumn", "Kategorie", EntryColumn::Kind::PopUp, 230 },
    { "BruttoColumn", "Brutto", EntryColumn::Kind::Number, 80 },
    { "NettoColumn", "Netto", EntryColumn::Kind::Number, 80 },
    { "SteuerColumn", "Steuersatz", EntryColumn::Kind::Number, 72 },
    { "DateColumn", "Datum", EntryColumn::Kind::Date, 118 },
    { "RechnungsnummerColumn", "Rechnungsnummer", EntryColumn::Kind::Text, 120 },
    { "SteuernummerColumn", "Steuernummer", EntryColumn::Kind::Text, 110 },
    { "SplitbuchungColumn", "Splitbuchung", EntryColumn::Kind::CheckBox, 82 },
    { "LeistungsartColumn", "Leistungsart", EntryColumn::Kind::Text, 120 },
};

} // namespace

QString EntryColumn::identifier(Id column)
{
    return isValid(column) ? QString::fromLatin1(kColumns[column].identifier) : QString();
}

int EntryColumn::indexOf(const QString& identifier)
{
    for (int column = 0; column < Count; ++column)
        if (identifier == QLatin1String(kColumns[column].identifier))
            return column;
    return -1;
}

QString EntryColumn::title(Id column)
{
    return isValid(column) ? QString::fromUtf8(kColumns[column].title) : QString();
}

EntryColumn::Kind EntryColumn::kind(Id column)
{
    return isValid(column) ? kColumns[column].kind : Kind::Text;
}

int EntryColumn::defaultWidth(Id column)
{
    return isValid(column) ? kColumns[column].width : 80;
}

} // namespace saldo::gui
