#pragma once

#include "bank/BankRule.h"
#include "platform/UserDefaults.h"

#include <QWidget>

#include <optional>
#include <vector>

class QLabel;
class QPushButton;
class QTableView;

namespace saldo::gui {

class BankRuleDialog;
class BankRuleListModel;

// The preferences page "Bankregeln": the person's rules for statement
// bookings in their order (the first that matches wins), with "Hinzufuegen",
// "Bearbeiten", "Entfernen", "Nach oben" and "Nach unten". Every change
// stores the whole list. Stored rules that are damaged are not shown and
// not used; the page says why, and the first change writes a new list.
class BankRulesPage : public QWidget {
    Q_OBJECT
public:
    explicit BankRulesPage(UserDefaults& defaults, QWidget* parent = nullptr);

    QTableView* tableView() const { return table_; }
    BankRuleListModel* model() const { return model_; }
    QLabel* damage() const { return damage_; }
    // The rule dialog that is open, or nullptr.
    BankRuleDialog* openDialog() const;

public slots:
    void addRule();
    void editRule();
    void removeRule();
    void moveUp();
    void moveDown();

private:
    std::optional<int> selectedRow() const;
    void openEditor(std::optional<int> row);
    void store(std::vector<BankRule> rules, int select);
    void updateButtons();

    UserDefaults& defaults_;
    BankRuleListModel* model_ = nullptr;
    QTableView* table_ = nullptr;
    QLabel* damage_ = nullptr;
    QPushButton* edit_ = nullptr;
    QPushButton* remove_ = nullptr;
    QPushButton* up_ = nullptr;
    QPushButton* down_ = nullptr;
};

} // namespace saldo::gui
