#pragma once

#include "bank/BankRules.h"
#include "bank/Proposal.h"

#include <QAbstractTableModel>
#include <QStringList>

#include <vector>

namespace saldo::gui {

// The proposals of a statement as a table: a tick, the day, the amount, the
// counterparty, the text, the category (a pop-up of the category list), the
// rate, the rule that matched and the status. Only new and duplicate
// bookings can be ticked; pending ones are shown, never taken. A category or
// rate the person gives a proposal is theirs: applying the rules again
// leaves that proposal alone.
class ProposalTableModel : public QAbstractTableModel {
    Q_OBJECT
public:
    enum Column { Tick, Datum, Betrag, Gegenpartei, Text, Kategorie, Steuersatz, Regel, Status, ColumnCount };

    ProposalTableModel(std::vector<Proposal> proposals, QStringList kategorien, QObject* parent = nullptr);

    const std::vector<Proposal>& proposals() const { return proposals_; }
    bool isChosenByHand(int row) const;

    // Fills every proposal the person has not changed from the rules again.
    void applyRules(const BankRules& rules);

    // New entries of the ticked proposals, in statement order.
    EinnahmeList tickedEntries() const;
    int tickedCount() const;

    // An amount in cents as the table shows it: "-1.234,56".
    static QString amountText(std::int64_t cents);

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;

signals:
    // The person gave the proposal at `row` a category.
    void categoryChosen(int row);
    void tickedChanged();

private:
    bool canTick(const Proposal& proposal) const;

    std::vector<Proposal> proposals_;
    std::vector<bool> byHand_;
    QStringList kategorien_;
};

} // namespace saldo::gui
