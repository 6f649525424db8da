#include "settings/BankRuleListModel.h"

#include "bank/BankRuleCodec.h"
#include "bank/BankValueText.h"

#include <QStringList>

namespace saldo::gui {

BankRuleListModel::BankRuleListModel(QObject* parent)
    : QAbstractTableModel(parent)
{
}

void BankRuleListModel::setRules(std::vector<BankRule> rules)
{
    beginResetModel();
    rules_ = std::move(rules);
    endResetModel();
}

QString BankRuleListModel::conditionText(const BankRule& rule)
{
    QStringList parts;
    const auto quoted = [](const std::string& text) { return QStringLiteral("\u201E%1\u201C").arg(QString::fromStdString(text)); };
    if (!rule.partner.empty())
        parts << QStringLiteral("Gegenpartei enthaelt %1").arg(quoted(rule.partner));
    if (!rule.text.empty())
        parts << QStringLiteral("Text enthaelt %1").arg(quoted(rule.text));
    if (!rule.pattern.empty())
        parts << QStringLiteral("Muster %1").arg(quoted(rule.pattern));
    if (rule.sign != BankRule::Sign::Any)
        parts << (rule.sign == BankRule::Sign::In ? QStringLiteral("Einnahme") : QStringLiteral("Ausgabe"));
    const auto euros = [](std::int64_t cents) {
        return QString::fromStdString(BankValueText::centsText(cents)).replace(QLatin1Char('.'), QLatin1Char(','));
    };
    if (rule.minCents)
        parts << QStringLiteral("ab %1 €").arg(euros(*rule.minCents));
    if (rule.maxCents)
        parts << QStringLiteral("bis %1 €").arg(euros(*rule.maxCents));
    return parts.isEmpty() ? QStringLiteral("jede Buchung") : parts.join(QStringLiteral(", "));
}

int BankRuleListModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(rules_.size());
}

int BankRuleListModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant BankRuleListModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.row() >= rowCount() || (role != Qt::DisplayRole && role != Qt::ToolTipRole))
        return {};
    const BankRule& rule = rules_[static_cast<std::size_t>(index.row())];
    switch (index.column()) {
    case Name:
        return QString::fromStdString(rule.name);
    case Bedingung:
        return conditionText(rule);
    case Kategorie:
        return QString::fromStdString(rule.kategorie);
    case Steuersatz:
        return rule.steuersatz ? QString::fromStdString(BankRuleCodec::rateText(*rule.steuersatz)) : QString();
    default:
        return {};
    }
}

QVariant BankRuleListModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    static const char* const titles[ColumnCount] = { "Name", "Wenn", "Kategorie", "Satz %" };
    return section >= 0 && section < ColumnCount ? QString::fromUtf8(titles[section]) : QVariant();
}

} // namespace saldo::gui
