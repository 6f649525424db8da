#include "settings/BankRuleDialog.h"

#include "bank/BankRuleCodec.h"
#include "bank/BankRules.h"
#include "bank/BankValueText.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace saldo::gui {

namespace {

QString qt(const std::string& text)
{
    return QString::fromStdString(text);
}

QString amountField(const std::optional<std::int64_t>& cents)
{
    return cents ? qt(BankValueText::centsText(*cents)).replace(QLatin1Char('.'), QLatin1Char(',')) : QString();
}

} // namespace

BankRuleDialog::BankRuleDialog(const BankRule& rule, const QStringList& kategorien, QWidget* parent)
    : QDialog(parent)
    , rule_(rule)
{
    setObjectName(QStringLiteral("BankRuleDialog"));
    setWindowTitle(QStringLiteral("Bankregel"));
    name_ = new QLineEdit(qt(rule.name), this);
    partner_ = new QLineEdit(qt(rule.partner), this);
    partner_->setPlaceholderText(QStringLiteral("Name oder IBAN der Gegenpartei enthaelt"));
    text_ = new QLineEdit(qt(rule.text), this);
    text_->setPlaceholderText(QStringLiteral("Verwendungszweck enthaelt"));
    pattern_ = new QLineEdit(qt(rule.pattern), this);
    pattern_->setPlaceholderText(QStringLiteral("regulaerer Ausdruck, etwa RE-?\\d{4}"));
    sign_ = new QComboBox(this);
    sign_->addItems({ QStringLiteral("Ein- und Ausgang"), QStringLiteral("nur Einnahmen"), QStringLiteral("nur Ausgaben") });
    sign_->setCurrentIndex(static_cast<int>(rule.sign));
    min_ = new QLineEdit(amountField(rule.minCents), this);
    max_ = new QLineEdit(amountField(rule.maxCents), this);
    min_->setPlaceholderText(QStringLiteral("ab Betrag"));
    max_->setPlaceholderText(QStringLiteral("bis Betrag"));
    kategorie_ = new QComboBox(this);
    kategorie_->setEditable(true);
    kategorie_->addItem(QString());
    kategorie_->addItems(kategorien);
    kategorie_->setCurrentText(qt(rule.kategorie));
    rate_ = new QLineEdit(rule.steuersatz ? qt(BankRuleCodec::rateText(*rule.steuersatz)) : QString(), this);
    rate_->setPlaceholderText(QStringLiteral("19"));
    flag_ = new QComboBox(this);
    flag_->addItems({ QStringLiteral("keins"), QStringLiteral("innergemeinschaftlicher Erwerb"), QStringLiteral("Non-EU") });
    flag_->setCurrentIndex(static_cast<int>(rule.flag));
    nameTemplate_ = new QLineEdit(qt(rule.nameTemplate), this);
    nameTemplate_->setPlaceholderText(QStringLiteral("%partner: %text  (auch %ref)"));
    problem_ = new QLabel(this);
    problem_->setWordWrap(true);
    problem_->setStyleSheet(QStringLiteral("color: #b00020"));

    auto* amounts = new QHBoxLayout;
    amounts->addWidget(min_);
    amounts->addWidget(new QLabel(QStringLiteral("bis"), this));
    amounts->addWidget(max_);
    auto* form = new QFormLayout;
    form->addRow(QStringLiteral("&Name:"), name_);
    form->addRow(QStringLiteral("Wenn &Gegenpartei:"), partner_);
    form->addRow(QStringLiteral("und &Text:"), text_);
    form->addRow(QStringLiteral("und &Muster:"), pattern_);
    form->addRow(QStringLiteral("&Richtung:"), sign_);
    form->addRow(QStringLiteral("&Betrag (€):"), amounts);
    form->addRow(QStringLiteral("dann &Kategorie:"), kategorie_);
    form->addRow(QStringLiteral("&Steuersatz (%):"), rate_);
    form->addRow(QStringLiteral("&Kennzeichen:"), flag_);
    form->addRow(QStringLiteral("Name&nsvorlage:"), nameTemplate_);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    buttons->button(QDialogButtonBox::Cancel)->setText(QStringLiteral("Abbrechen"));
    connect(buttons, &QDialogButtonBox::accepted, this, &BankRuleDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(problem_);
    layout->addWidget(buttons);
    resize(520, sizeHint().height());
}

void BankRuleDialog::accept()
{
    BankRule rule;
    const auto text = [](const QLineEdit* field) { return field->text().trimmed().toStdString(); };
    rule.name = text(name_);
    rule.partner = text(partner_);
    rule.text = text(text_);
    rule.pattern = text(pattern_);
    rule.sign = static_cast<BankRule::Sign>(sign_->currentIndex());
    rule.kategorie = kategorie_->currentText().toStdString();
    rule.flag = static_cast<BankRule::Flag>(flag_->currentIndex());
    rule.nameTemplate = text(nameTemplate_);
    QString problem;
    for (auto [field, cents] : { std::pair { min_, &rule.minCents }, std::pair { max_, &rule.maxCents } }) {
        if (text(field).empty())
            continue;
        *cents = BankRuleCodec::amount(text(field));
        if (!*cents)
            problem = QStringLiteral("\u201E%1\u201C ist kein Betrag.").arg(field->text());
    }
    if (!text(rate_).empty()) {
        rule.steuersatz = BankRuleCodec::rate(text(rate_));
        if (!rule.steuersatz)
            problem = QStringLiteral("\u201E%1\u201C ist kein Steuersatz.").arg(rate_->text());
    }
    if (const std::string error = rule.pattern.empty() ? std::string() : BankRules::patternError(rule.pattern);
        !error.empty())
        problem = QStringLiteral("Das Muster ist fehlerhaft: %1").arg(qt(error));
    if (rule.minCents && rule.maxCents && *rule.minCents > *rule.maxCents)
        problem = QStringLiteral("Der Betrag \u201Eab\u201C ist groesser als \u201Ebis\u201C.");
    if (rule.name.empty())
        problem = QStringLiteral("Die Regel braucht einen Namen.");
    problem_->setText(problem);
    if (!problem.isEmpty())
        return;
    rule_ = std::move(rule);
    QDialog::accept();
}

} // namespace saldo::gui
