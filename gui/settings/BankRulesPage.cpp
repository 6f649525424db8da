#include "settings/BankRulesPage.h"

#include "bank/BankRuleCodec.h"
#include "bank/BankRuleError.h"
#include "model/Kategorien.h"
#include "settings/BankRuleDialog.h"
#include "settings/BankRuleListModel.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTableView>
#include <QVBoxLayout>

namespace saldo::gui {

namespace {

QPushButton* button(const QString& text, const char* name, QWidget* parent)
{
    auto* b = new QPushButton(text, parent);
    b->setObjectName(QLatin1String(name));
    b->setAutoDefault(false);
    return b;
}

} // namespace

BankRulesPage::BankRulesPage(UserDefaults& defaults, QWidget* parent)
    : QWidget(parent)
    , defaults_(defaults)
{
    setObjectName(QStringLiteral("BankRulesPage"));
    model_ = new BankRuleListModel(this);
    damage_ = new QLabel(this);
    damage_->setWordWrap(true);
    damage_->setStyleSheet(QStringLiteral("color: #b00020"));
    damage_->hide();
    try {
        model_->setRules(BankRuleCodec::load(defaults_));
    } catch (const BankRuleError& e) {
        damage_->setText(QStringLiteral("%1 Die Regeln werden nicht verwendet; die naechste Aenderung schreibt eine neue Liste.")
                             .arg(QString::fromStdString(e.what())));
        damage_->show();
    }

    table_ = new QTableView(this);
    table_->setObjectName(QStringLiteral("rules"));
    table_->setModel(model_);
    table_->setSelectionBehavior(QAbstractItemView::SelectRows);
    table_->setSelectionMode(QAbstractItemView::SingleSelection);
    table_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table_->verticalHeader()->hide();
    table_->horizontalHeader()->setStretchLastSection(true);
    table_->setWordWrap(false);
    connect(table_, &QTableView::doubleClicked, this, &BankRulesPage::editRule);
    connect(table_->selectionModel(), &QItemSelectionModel::selectionChanged, this, &BankRulesPage::updateButtons);
    connect(model_, &QAbstractItemModel::modelReset, this, &BankRulesPage::updateButtons);

    auto* add = button(QStringLiteral("&Hinzufuegen"), "addRuleButton", this);
    edit_ = button(QStringLiteral("&Bearbeiten…"), "editRuleButton", this);
    remove_ = button(QStringLiteral("&Entfernen"), "removeRuleButton", this);
    up_ = button(QStringLiteral("Nach &oben"), "upButton", this);
    down_ = button(QStringLiteral("Nach &unten"), "downButton", this);
    connect(add, &QPushButton::clicked, this, &BankRulesPage::addRule);
    connect(edit_, &QPushButton::clicked, this, &BankRulesPage::editRule);
    connect(remove_, &QPushButton::clicked, this, &BankRulesPage::removeRule);
    connect(up_, &QPushButton::clicked, this, &BankRulesPage::moveUp);
    connect(down_, &QPushButton::clicked, this, &BankRulesPage::moveDown);

    auto* note = new QLabel(QStringLiteral("Die erste passende Regel fuellt Kategorie, Satz und Name eines Vorschlags."), this);
    note->setWordWrap(true);
    note->setEnabled(false);
    auto* buttons = new QHBoxLayout;
    for (QPushButton* b : { add, edit_, remove_, up_, down_ })
        buttons->addWidget(b);
    buttons->addStretch();
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(damage_);
    layout->addWidget(table_, 1);
    layout->addLayout(buttons);
    layout->addWidget(note);
    updateButtons();
}

BankRuleDialog* BankRulesPage::openDialog() const
{
    return findChild<BankRuleDialog*>();
}

std::optional<int> BankRulesPage::selectedRow() const
{
    const QModelIndexList rows = table_->selectionModel()->selectedRows();
    return rows.isEmpty() ? std::nullopt : std::optional<int>(rows.front().row());
}

void BankRulesPage::updateButtons()
{
    const std::optional<int> row = selectedRow();
    edit_->setEnabled(row.has_value());
    remove_->setEnabled(row.has_value());
    up_->setEnabled(row && *row > 0);
    down_->setEnabled(row && *row + 1 < model_->rowCount());
}

void BankRulesPage::addRule()
{
    openEditor(std::nullopt);
}

void BankRulesPage::editRule()
{
    if (const std::optional<int> row = selectedRow())
        openEditor(row);
}

void BankRulesPage::openEditor(std::optional<int> row)
{
    if (openDialog())
        return;
    BankRule rule;
    if (row)
        rule = model_->rules()[static_cast<std::size_t>(*row)];
    else
        rule.name = "Regel " + std::to_string(model_->rowCount() + 1);
    QStringList kategorien;
    for (const std::string& k : Kategorien::listOrDefault(defaults_))
        kategorien << QString::fromStdString(k);
    // Not blocking: the result is taken when the dialog closes.
    auto* dialog = new BankRuleDialog(rule, kategorien, this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QDialog::accepted, this, [this, dialog, row] {
        std::vector<BankRule> rules = model_->rules();
        if (row && static_cast<std::size_t>(*row) < rules.size()) {
            rules[static_cast<std::size_t>(*row)] = dialog->rule();
            store(std::move(rules), *row);
        } else {
            rules.push_back(dialog->rule());
            store(std::move(rules), static_cast<int>(rules.size()) - 1);
        }
    });
    dialog->open();
}

void BankRulesPage::removeRule()
{
    const std::optional<int> row = selectedRow();
    if (!row)
        return;
    std::vector<BankRule> rules = model_->rules();
    rules.erase(rules.begin() + *row);
    store(std::move(rules), std::min(*row, static_cast<int>(model_->rules().size()) - 2));
}

void BankRulesPage::moveUp()
{
    const std::optional<int> row = selectedRow();
    if (!row || *row == 0)
        return;
    std::vector<BankRule> rules = model_->rules();
    std::swap(rules[static_cast<std::size_t>(*row)], rules[static_cast<std::size_t>(*row - 1)]);
    store(std::move(rules), *row - 1);
}

void BankRulesPage::moveDown()
{
    const std::optional<int> row = selectedRow();
    if (!row || *row + 1 >= model_->rowCount())
        return;
    std::vector<BankRule> rules = model_->rules();
    std::swap(rules[static_cast<std::size_t>(*row)], rules[static_cast<std::size_t>(*row + 1)]);
    store(std::move(rules), *row + 1);
}

void BankRulesPage::store(std::vector<BankRule> rules, int select)
{
    BankRuleCodec::store(defaults_, rules);
    model_->setRules(std::move(rules));
    damage_->hide();
    if (select >= 0 && select < model_->rowCount())
        table_->selectRow(select);
}

} // namespace saldo::gui
