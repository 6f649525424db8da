#include "entrylist/EntryCells.h"

#include "entrylist/StatusImages.h"
#include "model/DateText.h"
#include "model/DecimalCommaText.h"
#include "model/Kategorien.h"
#include "platform/Calendar.h"
#include "platform/DateTimes.h"

#include <QBrush>
#include <QColor>
#include <QDateTime>

namespace saldo::gui {
namespace {

QString fromStd(const std::string& text)
{
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

// "dd.MM.yyyy HH:mm" in local time, as the date field shows it.
QString dateText(ReferenceSeconds datum)
{
    const Calendar::LocalDateTime local { Calendar::localFields(datum), 0 };
    return QString::fromStdString(DateText::format(local));
}

QString numberText(float value)
{
    return QString::fromStdString(DecimalCommaText::fixed(value, 2));
}

QString editableNumberText(float value)
{
    return QString::fromStdString(DecimalCommaText::editable(value));
}

bool checkStateOn(const QVariant& value)
{
    if (value.typeId() == QMetaType::Bool)
        return value.toBool();
    return value.toInt() == Qt::Checked;
}

} // namespace

EntryCells::EntryCells(const UserDefaults& defaults)
    : defaults_(defaults)
{
    refreshCategories();
}

const QStringList& EntryCells::artTitles()
{
    static const QStringList titles { QString::fromLatin1(kArtEinnahme), QString::fromLatin1(kArtAusgabe) };
    return titles;
}

bool EntryCells::refreshCategories()
{
    auto stored = Kategorien::storedList(defaults_);
    if (stored == categories_)
        return false;
    categories_ = std::move(stored);
    categorySet_.clear();
    if (!categories_) {
        categoryTitles_.reset();
        return true;
    }
    QStringList titles;
    titles.reserve(static_cast<qsizetype>(categories_->size()));
    for (const auto& row : *categories_) {
        titles << fromStd(row);
        categorySet_.insert(row);
    }
    categoryTitles_ = std::move(titles);
    return true;
}

QString EntryCells::notInList(const QString& kategorie)
{
    return QStringLiteral("%1 (nicht in der Liste)").arg(kategorie);
}

bool EntryCells::isForeign(const Einnahme& entry) const
{
    return categoryTitles_ && !entry.kategorie().empty() && categorySet_.count(entry.kategorie()) == 0;
}

QVariant EntryCells::displayData(const Einnahme& entry, EntryColumn::Id column) const
{
    switch (column) {
    case EntryColumn::Name:
        return fromStd(entry.name());
    case EntryColumn::Art:
        return artTitles().at(entry.isIncome() ? 0 : 1);
    case EntryColumn::Kategorie:
        if (isForeign(entry))
            return notInList(fromStd(entry.kategorie()));
        return categorySet_.count(entry.kategorie()) != 0 ? fromStd(entry.kategorie()) : QString();
    case EntryColumn::Brutto:
        return numberText(entry.brutto());
    case EntryColumn::Netto:
        return numberText(entry.netto());
    case EntryColumn::Steuer:
        return numberText(entry.steuersatz());
    case EntryColumn::Date:
        return dateText(entry.datum());
    case EntryColumn::Rechnungsnummer:
        return fromStd(entry.rechnungsnummer());
    case EntryColumn::Steuernummer:
        return fromStd(entry.steuernummer());
    case EntryColumn::Leistungsart:
        return fromStd(entry.leistungsart());
    case EntryColumn::NonEU:
    case EntryColumn::Innergem:
    case EntryColumn::Splitbuchung:
    case EntryColumn::Count:
        break;
    }
    return QVariant();
}

QVariant EntryCells::editData(const Einnahme& entry, EntryColumn::Id column) const
{
    switch (column) {
    case EntryColumn::Art:
        return entry.isIncome() ? 0 : 1;
    case EntryColumn::Date:
        return DateTimes::toQDateTime(entry.datum());
    case EntryColumn::Kategorie:
        return fromStd(entry.kategorie());
    case EntryColumn::Brutto:
        return editableNumberText(entry.brutto());
    case EntryColumn::Steuer:
        return editableNumberText(entry.steuersatz());
    default:
        return displayData(entry, column);
    }
}

QVariant EntryCells::data(const Einnahme& entry, EntryColumn::Id column, int row, int role) const
{
    switch (role) {
    case Qt::DisplayRole:
        return displayData(entry, column);
    case Qt::EditRole:
        return editData(entry, column);
    case Qt::CheckStateRole:
        switch (column) {
        case EntryColumn::NonEU:
            return entry.isNonEU() ? Qt::Checked : Qt::Unchecked;
        case EntryColumn::Innergem:
            return entry.innergemeinschaftlicherErwerb() ? Qt::Checked : Qt::Unchecked;
        case EntryColumn::Splitbuchung:
            return entry.childTransactions().empty() ? Qt::Unchecked : Qt::Checked;
        default:
            return QVariant();
        }
    case Qt::DecorationRole:
        if (column == EntryColumn::Name)
            return StatusImages::pixmap(entry.statusImage());
        return QVariant();
    case Qt::TextAlignmentRole:
        if (EntryColumn::kind(column) == EntryColumn::Kind::Number)
            return QVariant::fromValue(Qt::Alignment(Qt::AlignRight | Qt::AlignVCenter));
        return QVariant::fromValue(Qt::Alignment(Qt::AlignLeft | Qt::AlignVCenter));
    case Qt::BackgroundRole:
        // Light rows over the table's blue background.
        return QBrush(row % 2 == 0 ? QColor(0xff, 0xff, 0xff) : QColor(0xe8, 0xef, 0xfc));
    case Qt::ToolTipRole:
        if (column == EntryColumn::Kategorie && isForeign(entry))
            return QStringLiteral("„%1“ steht nicht in der Kategorienliste (Bearbeiten ▸ Einstellungen); "
                                  "der Eintrag behaelt die Kategorie.")
                .arg(fromStd(entry.kategorie()));
        if (column == EntryColumn::Kategorie || column == EntryColumn::Name)
            return displayData(entry, column);
        return QVariant();
    case OwnItemRole:
        if (column == EntryColumn::Kategorie && isForeign(entry))
            return fromStd(entry.kategorie());
        return QVariant();
    case ItemsRole:
        if (column == EntryColumn::Art)
            return artTitles();
        if (column == EntryColumn::Kategorie && categoryTitles_)
            return *categoryTitles_;
        return QVariant();
    default:
        return QVariant();
    }
}

QVariant EntryCells::headerData(EntryColumn::Id column, int role)
{
    if (role == Qt::DisplayRole)
        return QString::fromUtf8(EntryColumn::title(column));
    if (role == IdentifierRole)
        return QString::fromLatin1(EntryColumn::identifier(column));
    return QVariant();
}

Qt::ItemFlags EntryCells::flags(EntryColumn::Id column) const
{
    Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
    switch (column) {
    case EntryColumn::Name:
    case EntryColumn::Art:
    case EntryColumn::Brutto:
    case EntryColumn::Steuer:
    case EntryColumn::Date:
    case EntryColumn::Rechnungsnummer:
    case EntryColumn::Steuernummer:
    case EntryColumn::Leistungsart:
        flags |= Qt::ItemIsEditable;
        break;
    case EntryColumn::Kategorie:
        if (categoryTitles_)
            flags |= Qt::ItemIsEditable;
        break;
    case EntryColumn::NonEU:
    case EntryColumn::Innergem:
        flags |= Qt::ItemIsUserCheckable;
        break;
    case EntryColumn::Netto:
    case EntryColumn::Splitbuchung:
    case EntryColumn::Count:
        break;
    }
    return flags;
}

int EntryCells::editRole(EntryColumn::Id column)
{
    return EntryColumn::kind(column) == EntryColumn::Kind::CheckBox ? Qt::CheckStateRole : Qt::EditRole;
}

std::optional<CellEdit::Value> EntryCells::cellValue(EntryColumn::Id column, const QVariant& value)
{
    switch (EntryColumn::kind(column)) {
    case EntryColumn::Kind::Text:
    case EntryColumn::Kind::Number:
        return CellEdit::Text { value.toString().toStdString() };
    case EntryColumn::Kind::CheckBox:
        return CellEdit::Check { checkStateOn(value) };
    case EntryColumn::Kind::PopUp:
        if (column == EntryColumn::Art) {
            bool ok = false;
            const int index = value.toInt(&ok);
            if (!ok || value.typeId() == QMetaType::QString)
                return std::nullopt;
            return CellEdit::ItemIndex { index };
        }
        if (!value.isValid() || value.typeId() != QMetaType::QString)
            return CellEdit::ItemTitle { std::nullopt };
        return CellEdit::ItemTitle { value.toString().toStdString() };
    case EntryColumn::Kind::Date:
        if (!value.toDateTime().isValid())
            return std::nullopt;
        return CellEdit::Date { DateTimes::toReferenceSeconds(value.toDateTime()) };
    }
    return std::nullopt;
}

} // namespace saldo::gui
