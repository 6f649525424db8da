#include "entrylist/EntryTableModel.h"

#include "app/Document.h"
#include "entrylist/CellEdit.h"
#include "entrylist/SortOrdering.h"
#include "entrylist/StatusImages.h"
#include "model/DecimalCommaText.h"
#include "model/Kategorien.h"
#include "platform/Calendar.h"
#include "platform/DateTimes.h"
#include "platform/NotificationCenter.h"

#include <QBrush>
#include <QColor>
#include <QDateTime>

#include <cassert>
#include <unordered_map>

namespace saldo::gui {
namespace {

QString fromStd(const std::string& text)
{
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

// "dd.MM.yyyy HH:mm" in local time.
QString dateText(ReferenceSeconds datum)
{
    const Calendar::Fields f = Calendar::localFields(datum);
    const QChar zero(u'0');
    return QStringLiteral("%1.%2.%3 %4:%5")
        .arg(f.day, 2, 10, zero)
        .arg(f.month, 2, 10, zero)
        .arg(f.year, 4, 10, zero)
        .arg(f.hour, 2, 10, zero)
        .arg(f.minute, 2, 10, zero);
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

// The value a cell's editor handed over, as the cell rules take it.
std::optional<CellEdit::Value> cellValue(EntryColumn::Id column, const QVariant& value)
{
    switch (EntryColumn::kind(column)) {
    case EntryColumn::Kind::Text:
    case EntryColumn::Kind::Number:
        return CellEdit::Text{value.toString().toStdString()};
    case EntryColumn::Kind::CheckBox:
        return CellEdit::Check{checkStateOn(value)};
    case EntryColumn::Kind::PopUp:
        if (column == EntryColumn::Art) {
            bool ok = false;
            const int index = value.toInt(&ok);
            if (!ok || value.typeId() == QMetaType::QString)
                return std::nullopt;
            return CellEdit::ItemIndex{index};
        }
        if (!value.isValid() || value.typeId() != QMetaType::QString)
            return CellEdit::ItemTitle{std::nullopt};
        return CellEdit::ItemTitle{value.toString().toStdString()};
    case EntryColumn::Kind::Date:
        if (!value.toDateTime().isValid())
            return std::nullopt;
        return CellEdit::Date{DateTimes::toReferenceSeconds(value.toDateTime())};
    }
    return std::nullopt;
}

} // namespace

const QStringList& EntryTableModel::artTitles()
{
    static const QStringList titles { QString::fromLatin1(kArtEinnahme), QString::fromLatin1(kArtAusgabe) };
    return titles;
}

EntryTableModel::EntryTableModel(
    Document& document, const EntryLists& lists, const UserDefaults& defaults, QObject* parent)
    : QAbstractTableModel(parent)
    , document_(document)
    , lists_(lists)
    , defaults_(defaults)
    , rows_(static_cast<int>(lists.einnahmen().size()))
{
    refreshCategories();
}

int EntryTableModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : rows_;
}

int EntryTableModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : EntryColumn::Count;
}

EinnahmePtr EntryTableModel::entryAt(int row) const
{
    const auto& einnahmen = lists_.einnahmen();
    if (row < 0 || row >= rows_ || static_cast<std::size_t>(row) >= einnahmen.size())
        return nullptr;
    return einnahmen[static_cast<std::size_t>(row)];
}

bool EntryTableModel::categoryListed(const std::string& kategorie) const
{
    return categorySet_.count(kategorie) != 0;
}

QVariant EntryTableModel::displayData(const Einnahme& entry, EntryColumn::Id column) const
{
    switch (column) {
    case EntryColumn::Name:
        return fromStd(entry.name());
    case EntryColumn::Art:
        return artTitles().at(entry.isIncome() ? 0 : 1);
    case EntryColumn::Kategorie:
        return categoryListed(entry.kategorie()) ? fromStd(entry.kategorie()) : QString();
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

QVariant EntryTableModel::editData(const Einnahme& entry, EntryColumn::Id column) const
{
    switch (column) {
    case EntryColumn::Art:
        return entry.isIncome() ? 0 : 1;
    case EntryColumn::Date:
        return DateTimes::toQDateTime(entry.datum());
    case EntryColumn::Brutto:
        return editableNumberText(entry.brutto());
    case EntryColumn::Steuer:
        return editableNumberText(entry.steuersatz());
    default:
        return displayData(entry, column);
    }
}

QVariant EntryTableModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.column() >= EntryColumn::Count)
        return QVariant();
    const EinnahmePtr entry = entryAt(index.row());
    if (!entry)
        return QVariant();
    const auto column = EntryColumn::fromIndex(index.column());

    switch (role) {
    case Qt::DisplayRole:
        // Every cell request is announced; nothing in the program relies on it
        // but other windows may listen.
        NotificationCenter::defaultCenter().post(kTableViewUpdated);
        return displayData(*entry, column);
    case Qt::EditRole:
        return editData(*entry, column);
    case Qt::CheckStateRole:
        switch (column) {
        case EntryColumn::NonEU:
            return entry->isNonEU() ? Qt::Checked : Qt::Unchecked;
        case EntryColumn::Innergem:
            return entry->innergemeinschaftlicherErwerb() ? Qt::Checked : Qt::Unchecked;
        case EntryColumn::Splitbuchung:
            return entry->childTransactions().empty() ? Qt::Unchecked : Qt::Checked;
        default:
            return QVariant();
        }
    case Qt::DecorationRole:
        if (column == EntryColumn::Name)
            return StatusImages::pixmap(entry->statusImage());
        return QVariant();
    case Qt::TextAlignmentRole:
        if (EntryColumn::kind(column) == EntryColumn::Kind::Number)
            return QVariant::fromValue(Qt::Alignment(Qt::AlignRight | Qt::AlignVCenter));
        return QVariant::fromValue(Qt::Alignment(Qt::AlignLeft | Qt::AlignVCenter));
    case Qt::BackgroundRole:
        // Light rows over the table's blue background.
        return QBrush(index.row() % 2 == 0 ? QColor(0xff, 0xff, 0xff) : QColor(0xe8, 0xef, 0xfc));
    case Qt::ToolTipRole:
        if (column == EntryColumn::Kategorie || column == EntryColumn::Name)
            return displayData(*entry, column);
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

QVariant EntryTableModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || !EntryColumn::isValid(section))
        return QAbstractTableModel::headerData(section, orientation, role);
    const auto column = EntryColumn::fromIndex(section);
    if (role == Qt::DisplayRole)
        return QString::fromUtf8(EntryColumn::title(column));
    if (role == IdentifierRole)
        return QString::fromLatin1(EntryColumn::identifier(column));
    return QVariant();
}

Qt::ItemFlags EntryTableModel::flags(const QModelIndex& index) const
{
    if (!index.isValid())
        return Qt::NoItemFlags;
    Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
    switch (EntryColumn::fromIndex(index.column())) {
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

bool EntryTableModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    if (!index.isValid() || !entryAt(index.row()))
        return false;
    const auto column = EntryColumn::fromIndex(index.column());
    const bool checkColumn = EntryColumn::kind(column) == EntryColumn::Kind::CheckBox;
    if (role != (checkColumn ? Qt::CheckStateRole : Qt::EditRole))
        return false;
    if (!(flags(index) & (Qt::ItemIsEditable | Qt::ItemIsUserCheckable)))
        return false;
    const auto edit = cellValue(column, value);
    if (!edit)
        return false;
    const int row = index.row();
    const bool stored = document_.editCell(row, column, *edit) == CellEdit::Outcome::Stored;
    // A refused value is replaced by the stored one at once.
    rowChanged(row);
    return stored;
}

void EntryTableModel::rowChanged(int row)
{
    if (row >= 0 && row < rows_)
        emit dataChanged(index(row, 0), index(row, EntryColumn::Count - 1));
}

void EntryTableModel::refreshCategories()
{
    auto stored = Kategorien::storedList(defaults_);
    if (stored == categories_)
        return;
    categories_ = std::move(stored);
    categorySet_.clear();
    if (!categories_) {
        categoryTitles_.reset();
        return;
    }
    QStringList titles;
    titles.reserve(static_cast<qsizetype>(categories_->size()));
    for (const auto& row : *categories_) {
        titles << fromStd(row);
        categorySet_.insert(row);
    }
    categoryTitles_ = std::move(titles);
}

void EntryTableModel::reload()
{
    refreshCategories();
    if (static_cast<std::size_t>(rows_) != lists_.einnahmen().size()) {
        resetWith([] {});
        return;
    }
    if (rows_ > 0)
        emit dataChanged(index(0, 0), index(rows_ - 1, EntryColumn::Count - 1));
}

void EntryTableModel::insertEntries(int first, int count, const std::function<void()>& change)
{
    if (count <= 0) {
        resetWith(change);
        return;
    }
    beginInsertRows(QModelIndex(), first, first + count - 1);
    change();
    assert(lists_.einnahmen().size() == static_cast<std::size_t>(rows_ + count));
    rows_ = static_cast<int>(lists_.einnahmen().size());
    endInsertRows();
}

void EntryTableModel::removeEntries(int first, int count, const std::function<void()>& change)
{
    if (count <= 0 || first < 0 || first + count > rows_) {
        resetWith(change);
        return;
    }
    beginRemoveRows(QModelIndex(), first, first + count - 1);
    change();
    assert(lists_.einnahmen().size() + static_cast<std::size_t>(count) == static_cast<std::size_t>(rows_));
    rows_ = static_cast<int>(lists_.einnahmen().size());
    endRemoveRows();
}

void EntryTableModel::resetWith(const std::function<void()>& change)
{
    beginResetModel();
    change();
    refreshCategories();
    rows_ = static_cast<int>(lists_.einnahmen().size());
    endResetModel();
}

void EntryTableModel::sort(int column, Qt::SortOrder order)
{
    if (column < 0 || column >= EntryColumn::Count)
        return;
    std::optional<std::string_view> key;
    if (static_cast<std::size_t>(column) < SortOrdering::kColumnKeys.size())
        key = SortOrdering::kColumnKeys[static_cast<std::size_t>(column)];

    emit layoutAboutToBeChanged({}, QAbstractItemModel::VerticalSortHint);
    const QModelIndexList before = persistentIndexList();
    std::vector<const Einnahme*> held;
    held.reserve(static_cast<std::size_t>(before.size()));
    for (const QModelIndex& index : before)
        held.push_back(entryAt(index.row()).get());

    document_.sortEinnahmen(key, order == Qt::AscendingOrder);

    // Each held index moves to the (first) row of its entry.
    QModelIndexList after;
    if (!before.isEmpty()) {
        std::unordered_map<const Einnahme*, int> rowOf;
        rowOf.reserve(held.size());
        for (const Einnahme* entry : held)
            rowOf.emplace(entry, -1);
        const auto& einnahmen = lists_.einnahmen();
        for (std::size_t row = 0; row < einnahmen.size(); ++row) {
            auto it = rowOf.find(einnahmen[row].get());
            if (it != rowOf.end() && it->second < 0)
                it->second = static_cast<int>(row);
        }
        after.reserve(before.size());
        for (qsizetype i = 0; i < before.size(); ++i) {
            const int row = held[static_cast<std::size_t>(i)] ? rowOf[held[static_cast<std::size_t>(i)]] : -1;
            after.append(row < 0 ? QModelIndex() : index(row, before[i].column()));
        }
        changePersistentIndexList(before, after);
    }
    emit layoutChanged({}, QAbstractItemModel::VerticalSortHint);
}

} // namespace saldo::gui
