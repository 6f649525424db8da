#include "bank/ProposalTableModel.h"

#include "bank/BankRuleCodec.h"
#include "bank/StatementProposals.h"
#include "entrylist/EntryCells.h"

#include <QBrush>
#include <QColor>
#include <QPalette>

namespace saldo::gui {

namespace {

QString qt(const std::string& text)
{
    return QString::fromStdString(text);
}

QString rateText(float rate)
{
    return qt(BankRuleCodec::rateText(rate)).replace(QLatin1Char('.'), QLatin1Char(','));
}

} // namespace

ProposalTableModel::ProposalTableModel(std::vector<Proposal> proposals, QStringList kategorien, QObject* parent)
    : QAbstractTableModel(parent)
    , proposals_(std::move(proposals))
    , byHand_(proposals_.size(), false)
    , kategorien_(std::move(kategorien))
{
}

bool ProposalTableModel::isChosenByHand(int row) const
{
    return row >= 0 && static_cast<std::size_t>(row) < byHand_.size() && byHand_[static_cast<std::size_t>(row)];
}

void ProposalTableModel::applyRules(const BankRules& rules)
{
    LocalDays days;
    for (std::size_t i = 0; i < proposals_.size(); ++i)
        if (!byHand_[i])
            StatementProposals::apply(proposals_[i], rules, days);
    if (!proposals_.empty())
        emit dataChanged(index(0, 0), index(rowCount() - 1, ColumnCount - 1));
}

EinnahmeList ProposalTableModel::tickedEntries() const
{
    EinnahmeList entries;
    for (const Proposal& proposal : proposals_)
        if (proposal.ticked && canTick(proposal))
            entries.push_back(proposal.makeEntry());
    return entries;
}

int ProposalTableModel::tickedCount() const
{
    return static_cast<int>(std::count_if(
        proposals_.begin(), proposals_.end(), [this](const Proposal& p) { return p.ticked && canTick(p); }));
}

QString ProposalTableModel::amountText(std::int64_t cents)
{
    const std::uint64_t magnitude = cents < 0 ? 0 - static_cast<std::uint64_t>(cents) : static_cast<std::uint64_t>(cents);
    QString euros = QString::number(magnitude / 100);
    for (qsizetype at = euros.size() - 3; at > 0; at -= 3)
        euros.insert(at, QLatin1Char('.'));
    return (cents < 0 ? QStringLiteral("-") : QString()) + euros + QLatin1Char(',')
        + QStringLiteral("%1").arg(magnitude % 100, 2, 10, QLatin1Char('0'));
}

int ProposalTableModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(proposals_.size());
}

int ProposalTableModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

bool ProposalTableModel::canTick(const Proposal& proposal) const
{
    return proposal.status == Proposal::Status::Neu || proposal.status == Proposal::Status::SchonImLedger;
}

QVariant ProposalTableModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.row() >= rowCount())
        return {};
    const Proposal& p = proposals_[static_cast<std::size_t>(index.row())];
    const BankBooking& b = p.booking;
    if (role == Qt::CheckStateRole && index.column() == Tick)
        return canTick(p) ? QVariant(p.ticked ? Qt::Checked : Qt::Unchecked) : QVariant();
    if (role == EntryCells::ItemsRole && index.column() == Kategorie)
        return canTick(p) ? QVariant(kategorien_) : QVariant();
    if (role == Qt::TextAlignmentRole && (index.column() == Betrag || index.column() == Steuersatz))
        return QVariant(Qt::AlignRight | Qt::AlignVCenter);
    if (role == Qt::ForegroundRole && !(p.status == Proposal::Status::Neu))
        return QBrush(QPalette().color(QPalette::Disabled, QPalette::Text));
    if (role == Qt::ToolTipRole && (index.column() == Text || index.column() == Gegenpartei))
        return qt(b.partner + (b.iban.empty() ? "" : " (" + b.iban + ")") + "\n" + b.text
            + (b.reference.empty() ? "" : "\nReferenz: " + b.reference));
    if (role != Qt::DisplayRole && role != Qt::EditRole)
        return {};
    switch (index.column()) {
    case Datum:
        return b.bookingDate.year > 0 ? QStringLiteral("%1.%2.%3")
                                            .arg(b.bookingDate.day, 2, 10, QLatin1Char('0'))
                                            .arg(b.bookingDate.month, 2, 10, QLatin1Char('0'))
                                            .arg(b.bookingDate.year)
                                      : QStringLiteral("\u2014");
    case Betrag:
        return amountText(b.cents);
    case Gegenpartei:
        return qt(b.partner);
    case Text:
        return qt(b.text.empty() ? b.bookingText : b.text);
    case Kategorie:
        return qt(p.fields.kategorie);
    case Steuersatz:
        return rateText(p.fields.steuersatz);
    case Regel:
        return qt(p.ruleName);
    case Status:
        return qt(Proposal::statusText(p.status));
    default:
        return {};
    }
}

QVariant ProposalTableModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    static const char* const titles[ColumnCount]
        = { "", "Datum", "Betrag", "Gegenpartei", "Text", "Kategorie", "Satz %", "Regel", "Status" };
    return section >= 0 && section < ColumnCount ? QString::fromUtf8(titles[section]) : QVariant();
}

Qt::ItemFlags ProposalTableModel::flags(const QModelIndex& index) const
{
    if (!index.isValid())
        return Qt::NoItemFlags;
    Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    const Proposal& p = proposals_[static_cast<std::size_t>(index.row())];
    if (index.column() == Tick && canTick(p))
        flags |= Qt::ItemIsUserCheckable;
    if ((index.column() == Kategorie || index.column() == Steuersatz) && canTick(p))
        flags |= Qt::ItemIsEditable;
    return flags;
}

bool ProposalTableModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    if (!index.isValid() || !(flags(index) & (Qt::ItemIsEditable | Qt::ItemIsUserCheckable)))
        return false;
    const auto row = static_cast<std::size_t>(index.row());
    Proposal& p = proposals_[row];
    if (index.column() == Tick && role == Qt::CheckStateRole) {
        p.ticked = value.value<Qt::CheckState>() == Qt::Checked;
        emit dataChanged(index, index, { Qt::CheckStateRole });
        emit tickedChanged();
        return true;
    }
    if (role != Qt::EditRole)
        return false;
    if (index.column() == Kategorie) {
        p.fields.kategorie = value.toString().toStdString();
    } else {
        const std::optional<float> rate = BankRuleCodec::rate(value.toString().toStdString());
        if (!rate)
            return false;
        p.fields.steuersatz = *rate;
    }
    byHand_[row] = true;
    emit dataChanged(this->index(index.row(), 0), this->index(index.row(), ColumnCount - 1));
    if (index.column() == Kategorie)
        emit categoryChosen(index.row());
    return true;
}

} // namespace saldo::gui
