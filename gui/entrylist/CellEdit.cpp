#include "entrylist/CellEdit.h"

#include "entrylist/NumberText.h"
#include "platform/Clock.h"

#include <QDateTime>

namespace saldo::gui {
namespace {

float numberOf(const QVariant& value)
{
    if (value.typeId() == QMetaType::QString)
        return NumberText::parseLeading(value.toString());
    bool ok = false;
    const float number = value.toFloat(&ok);
    return ok ? number : 0.0f;
}

bool checkStateOn(const QVariant& value)
{
    if (value.typeId() == QMetaType::Bool)
        return value.toBool();
    return value.toInt() == Qt::Checked;
}

} // namespace

bool CellEdit::isTextField(EntryColumn::Id column)
{
    const auto kind = EntryColumn::kind(column);
    return kind == EntryColumn::Kind::Text || kind == EntryColumn::Kind::Number;
}

std::string CellEdit::diagnosticText(int row, int column, const QString& text)
{
    return "Row: " + std::string(" ") + std::to_string(row) + " " + ", Column: " + " " + std::to_string(column) + " "
        + " Inhalt: " + " " + text.toStdString();
}

const QStringList& CellEdit::artTitles()
{
    static const QStringList titles { QString::fromLatin1(kArtEinnahme), QString::fromLatin1(kArtAusgabe) };
    return titles;
}

CellEdit::Outcome CellEdit::apply(Einnahme& entry, EntryColumn::Id column, const QVariant& value)
{
    switch (column) {
    case EntryColumn::Name:
        entry.setName(value.toString().toStdString());
        return Outcome::Stored;
    case EntryColumn::Brutto: {
        const float brutto = numberOf(value);
        if (!(brutto > 0.0f) || !entry.childTransactions().empty())
            return Outcome::Refused;
        entry.setBrutto(brutto);
        return Outcome::Stored;
    }
    case EntryColumn::Steuer:
        entry.setSteuersatz(numberOf(value));
        return Outcome::Stored;
    case EntryColumn::Rechnungsnummer:
        entry.setRechnungsnummer(value.toString().toStdString());
        return Outcome::Stored;
    case EntryColumn::Steuernummer:
        entry.setSteuernummer(value.toString().toStdString());
        return Outcome::Stored;
    case EntryColumn::Leistungsart:
        entry.setLeistungsart(value.toString().toStdString());
        return Outcome::Stored;
    case EntryColumn::Innergem:
        // Switching it on switches the non-EU flag off first.
        entry.setInnergemeinschaftlicherErwerb(checkStateOn(value));
        return Outcome::Stored;
    case EntryColumn::NonEU:
        // Switching it on switches the intra-community flag off first.
        entry.setIsNonEU(checkStateOn(value));
        return Outcome::Stored;
    case EntryColumn::Art: {
        bool ok = false;
        const int index = value.toInt(&ok);
        if (!ok || value.typeId() == QMetaType::QString)
            return Outcome::Dropped;
        entry.setArt(index == 0 ? kArtEinnahme : kArtAusgabe);
        return Outcome::Stored;
    }
    case EntryColumn::Kategorie:
        if (!value.isValid() || value.typeId() != QMetaType::QString)
            return Outcome::Dropped;
        entry.setKategorie(value.toString().toStdString());
        return Outcome::Stored;
    case EntryColumn::Date: {
        const QDateTime dateTime = value.toDateTime();
        if (!dateTime.isValid())
            return Outcome::Dropped;
        entry.setDatum(static_cast<double>(dateTime.toMSecsSinceEpoch()) / 1000.0 - kReferenceDateUnixSeconds);
        return Outcome::Stored;
    }
    case EntryColumn::Netto:
    case EntryColumn::Splitbuchung:
    case EntryColumn::Count:
        break;
    }
    return Outcome::NothingStored;
}

} // namespace saldo::gui
