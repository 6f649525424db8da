#pragma once

#include "bank/BankRules.h"
#include "bank/Proposal.h"
#include "bank/Statement.h"

#include <QDialog>

class QLabel;
class QPushButton;
class QTableView;

namespace saldo::gui {

class Document;
class ProposalTableModel;

// The window that shows a statement's proposals for one document: what the
// file held (how many new, already in the ledger, pending, skipped lines), the
// table of proposals, "Regel merken" once the person gives a proposal a
// category (the counterparty then gets that category and rate by a rule of
// its own, first in the list, and the other proposals are filled again), and
// "Uebernehmen", which appends the ticked proposals to the document as one
// undoable step "Kontoauszug" and closes the window. It belongs to the
// document's window, blocks nothing else and is gone when closed.
class StatementWindow : public QDialog {
    Q_OBJECT
public:
    StatementWindow(Document& document, const Statement& statement, std::vector<Proposal> proposals,
        const QString& fileName, const QString& rulesNote, QWidget* parent);

    ProposalTableModel* model() const { return model_; }
    QTableView* tableView() const { return table_; }
    QPushButton* rememberButton() const { return remember_; }
    QPushButton* takeButton() const { return take_; }
    QLabel* summary() const { return summary_; }

public slots:
    // Appends the ticked proposals and closes the window.
    void uebernehmen();
    // Keeps the current proposal's counterparty, category and rate as a rule.
    void regelMerken();

private:
    void updateButtons();
    int currentRow() const;

    Document& document_;
    ProposalTableModel* model_ = nullptr;
    QTableView* table_ = nullptr;
    QLabel* summary_ = nullptr;
    QLabel* note_ = nullptr;
    QPushButton* remember_ = nullptr;
    QPushButton* take_ = nullptr;
};

} // namespace saldo::gui
