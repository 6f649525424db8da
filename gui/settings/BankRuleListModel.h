#pragma once

#include "bank/BankRule.h"

#include <QAbstractTableModel>

#include <vector>

namespace saldo::gui {

// The bank rules in their order as a table for the preferences: the name,
// the conditions in a few words, the category and the rate. It only shows;
// BankRulesPage changes the list and hands it over whole.
class BankRuleListModel : public QAbstractTableModel {
    Q_OBJECT
public:
    enum Column { Name, Bedingung, Kategorie, Steuersatz, ColumnCount };

    explicit BankRuleListModel(QObject* parent = nullptr);

    const std::vector<BankRule>& rules() const { return rules_; }
    void setRules(std::vector<BankRule> rules);

    // The conditions of a rule in a few words ("Gegenpartei enthaelt X, Ausgabe").
    static QString conditionText(const BankRule& rule);

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

private:
    std::vector<BankRule> rules_;
};

} // namespace saldo::gui
