#pragma once

#include "bank/BankRule.h"

#include <QDialog>
#include <QStringList>

class QComboBox;
class QLabel;
class QLineEdit;

namespace saldo::gui {

// Edits one bank rule: its name, the conditions (counterparty or IBAN,
// text, a regular expression, the direction, an amount range) and what it
// sets (category, rate, a flag, a name template). "OK" is refused with the
// reason beside it while a field does not read (an amount, the rate, the
// pattern, an empty name).
class BankRuleDialog : public QDialog {
    Q_OBJECT
public:
    BankRuleDialog(const BankRule& rule, const QStringList& kategorien, QWidget* parent);

    // The rule as the fields say; valid after the dialog was accepted.
    const BankRule& rule() const { return rule_; }

    QLineEdit* nameField() const { return name_; }
    QLineEdit* partnerField() const { return partner_; }
    QLineEdit* patternField() const { return pattern_; }
    QLineEdit* minField() const { return min_; }
    QComboBox* kategorieField() const { return kategorie_; }
    QLabel* problem() const { return problem_; }

public slots:
    void accept() override;

private:
    BankRule rule_;
    QLineEdit* name_;
    QLineEdit* partner_;
    QLineEdit* text_;
    QLineEdit* pattern_;
    QComboBox* sign_;
    QLineEdit* min_;
    QLineEdit* max_;
    QComboBox* kategorie_;
    QLineEdit* rate_;
    QComboBox* flag_;
    QLineEdit* nameTemplate_;
    QLabel* problem_;
};

} // namespace saldo::gui
