#include "bank/StatementWindow.h"

#include "app/Document.h"
#include "bank/BankRuleCodec.h"
#include "bank/BankRuleError.h"
#include "bank/ProposalTableModel.h"
#include "entrylist/PopUpDelegate.h"
#include "model/Kategorien.h"
#include "platform/Dialogs.h"

#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTableView>
#include <QVBoxLayout>

namespace saldo::gui {

namespace {

QStringList kategorienOf(const UserDefaults& defaults)
{
    QStringList list;
    for (const std::string& row : Kategorien::listOrDefault(defaults))
        list << QString::fromStdString(row);
    return list;
}

QString summaryOf(const Statement& statement, const std::vector<Proposal>& proposals)
{
    std::size_t counts[4] = {};
    for (const Proposal& p : proposals)
        ++counts[static_cast<int>(p.status)];
    QString text = QStringLiteral("%1 Buchungen (%2): %3 neu, %4 schon im Ledger, %5 vorgemerkt oder nur zur Info")
                       .arg(proposals.size())
                       .arg(QString::fromStdString(statement.format))
                       .arg(counts[0])
                       .arg(counts[1])
                       .arg(counts[2] + counts[3]);
    if (statement.skippedLines > 0)
        text += QStringLiteral("; %1 Zeilen ohne Buchung uebersprungen").arg(statement.skippedLines);
    return text + QLatin1Char('.');
}

} // namespace

StatementWindow::StatementWindow(Document& document, const Statement& statement, std::vector<Proposal> proposals,
    const QString& fileName, const QString& rulesNote, QWidget* parent)
    : QDialog(parent)
    , document_(document)
{
    setObjectName(QStringLiteral("StatementWindow"));
    setWindowTitle(QStringLiteral("Kontoauszug \u2013 %1").arg(fileName));
    setAttribute(Qt::WA_DeleteOnClose);
    const QString summaryText = summaryOf(statement, proposals);
    model_ = new ProposalTableModel(std::move(proposals), kategorienOf(document.defaults()), this);

    summary_ = new QLabel(summaryText, this);
    summary_->setWordWrap(true);
    note_ = new QLabel(rulesNote, this);
    note_->setWordWrap(true);
    note_->setVisible(!rulesNote.isEmpty());

    table_ = new QTableView(this);
    table_->setObjectName(QStringLiteral("proposals"));
    table_->setModel(model_);
    table_->setItemDelegateForColumn(ProposalTableModel::Kategorie, new PopUpDelegate(PopUpDelegate::Answer::Title, table_));
    table_->setSelectionBehavior(QAbstractItemView::SelectRows);
    table_->setSelectionMode(QAbstractItemView::SingleSelection);
    table_->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::SelectedClicked
        | QAbstractItemView::EditKeyPressed);
    table_->setWordWrap(false);
    table_->setAlternatingRowColors(true);
    table_->verticalHeader()->hide();
    table_->verticalHeader()->setDefaultSectionSize(22);
    QHeaderView* header = table_->horizontalHeader();
    header->setSectionResizeMode(QHeaderView::Interactive);
    header->setStretchLastSection(true);
    const int widths[ProposalTableModel::ColumnCount] = { 28, 86, 96, 200, 260, 230, 54, 110, 170 };
    for (int column = 0; column < ProposalTableModel::ColumnCount; ++column)
        header->resizeSection(column, widths[column]);

    remember_ = new QPushButton(QStringLiteral("&Regel merken"), this);
    remember_->setObjectName(QStringLiteral("rememberButton"));
    remember_->setToolTip(QStringLiteral("Buchungen dieser Gegenpartei bekommen kuenftig diese Kategorie und diesen Satz."));
    auto* buttons = new QDialogButtonBox(this);
    take_ = buttons->addButton(QStringLiteral("&Uebernehmen"), QDialogButtonBox::AcceptRole);
    take_->setObjectName(QStringLiteral("takeButton"));
    // No button takes Return: it confirms a choice in the category pop-up
    // and must never append entries by the way.
    buttons->addButton(QStringLiteral("Abbrechen"), QDialogButtonBox::RejectRole);
    for (QAbstractButton* b : buttons->buttons())
        if (auto* push = qobject_cast<QPushButton*>(b))
            push->setAutoDefault(false);
    remember_->setAutoDefault(false);
    connect(buttons, &QDialogButtonBox::accepted, this, &StatementWindow::uebernehmen);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(remember_, &QPushButton::clicked, this, &StatementWindow::regelMerken);
    connect(model_, &ProposalTableModel::tickedChanged, this, &StatementWindow::updateButtons);
    connect(model_, &ProposalTableModel::categoryChosen, this, &StatementWindow::updateButtons);
    connect(table_->selectionModel(), &QItemSelectionModel::currentRowChanged, this, &StatementWindow::updateButtons);

    auto* bottom = new QHBoxLayout;
    bottom->addWidget(remember_);
    bottom->addStretch();
    bottom->addWidget(buttons);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(summary_);
    layout->addWidget(note_);
    layout->addWidget(table_, 1);
    layout->addLayout(bottom);
    resize(1280, 560);
    updateButtons();
}

int StatementWindow::currentRow() const
{
    const QModelIndex current = table_->selectionModel()->currentIndex();
    return current.isValid() ? current.row() : -1;
}

void StatementWindow::updateButtons()
{
    const int row = currentRow();
    remember_->setEnabled(model_->isChosenByHand(row)
        && !model_->proposals()[static_cast<std::size_t>(row)].booking.partner.empty()
        && !model_->proposals()[static_cast<std::size_t>(row)].fields.kategorie.empty());
    const int ticked = model_->tickedCount();
    take_->setEnabled(ticked > 0);
    take_->setToolTip(ticked == 1 ? QStringLiteral("Haengt 1 Eintrag an das Ledger an.")
                                  : QStringLiteral("Haengt %1 Eintraege an das Ledger an.").arg(ticked));
}

void StatementWindow::uebernehmen()
{
    document_.appendStatementEntries(model_->tickedEntries());
    accept();
}

void StatementWindow::regelMerken()
{
    const int row = currentRow();
    if (!remember_->isEnabled() || row < 0)
        return;
    const Proposal& p = model_->proposals()[static_cast<std::size_t>(row)];
    BankRule rule;
    rule.name = p.booking.partner;
    rule.partner = p.booking.partner;
    rule.kategorie = p.fields.kategorie;
    rule.steuersatz = p.fields.steuersatz;
    try {
        std::vector<BankRule> rules = BankRuleCodec::load(document_.defaults());
        // The person's newest rule is the most particular: it goes first.
        rules.insert(rules.begin(), rule);
        BankRuleCodec::store(document_.defaults(), rules);
        model_->applyRules(BankRules(std::move(rules)));
    } catch (const BankRuleError& e) {
        Dialogs::instance().showError(this, QStringLiteral("Die Regel kann nicht gemerkt werden."), QString::fromStdString(e.what()));
        return;
    }
    note_->setText(QStringLiteral("Regel \u201E%1\u201C gemerkt: %2, %3 %.")
                       .arg(QString::fromStdString(rule.name), QString::fromStdString(rule.kategorie),
                           QString::fromStdString(BankRuleCodec::rateText(*rule.steuersatz))));
    note_->setVisible(true);
    remember_->setEnabled(false);
}

} // namespace saldo::gui
