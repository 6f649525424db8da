#pragma once

#include "platform/UserDefaults.h"

#include <QWidget>

#include <optional>
#include <string>
#include <vector>

class QLineEdit;
class QPushButton;
class QTabWidget;
class QTableView;

namespace saldo::gui {

class CategoryListModel;

// The preferences window of the whole program; it belongs to no document. It
// edits the category list, a working copy of the list stored under
// "Kategorien" (the default chart while nothing usable is stored): rename in
// place, "Hinzufuegen", "Entfernen" and drag and drop. Every change stores the
// whole list and posts DetailViewUpdated, so that every open window reloads
// its table and its category pop-ups. Until the first change nothing is
// written, whatever is stored. A rename leaves the entries their text; the
// window tells of it, so that the open ledgers can offer to follow. It also
// sets the income limit, which lives in memory only. Escape or Ctrl+W closes it. The program's further settings (tax, DATEV, bank rules) have a
// page each beside the categories. One window serves the program: a second
// request brings it to the front; closing it ends it, and the next request
// reads the list again.
class PreferencesViewController : public QWidget {
    Q_OBJECT
public:
    static constexpr int kWidth = 450;
    static constexpr int kHeight = 300;
    static constexpr int kRowHeight = 20;

    explicit PreferencesViewController(UserDefaults& defaults, QWidget* parent = nullptr);
    ~PreferencesViewController() override;

    // Shows the program's preferences window, made on the first request and
    // brought to the front on later ones.
    static PreferencesViewController* showPreferences(UserDefaults& defaults);
    // The open preferences window, or nullptr.
    static PreferencesViewController* openPreferences();

    // The pages of the window: "Kategorien" first, then one page per further setting.
    QTabWidget* pages() const { return pages_; }
    QTableView* tableView() const { return tableView_; }
    QLineEdit* maxEinnahmenLimit() const { return maxEinnahmenLimit_; }
    QPushButton* removeButton() const { return removeButton_; }
    const std::vector<std::string>& containerArray() const;

    // The row "Entfernen" removes: the current row when it is selected, else
    // the last selected row.
    std::optional<int> selectedRow() const;

    // The limit as the field shows it: the shortest decimal text that reads
    // back as the same single-precision number ("1000.5").
    static QString limitText(float limit);

public slots:
    // Appends "Neu", selects it alone and scrolls to it; the row counts
    // before and after go to standard output.
    void addEntry();
    // Removes the selected row; without one nothing happens.
    void removeEntry();
    // Reads the field's whole text as a number in C notation and makes it the
    // income limit; any other text leaves the limit as it is, silently.
    void maxEinnahmenLimitChanged();

signals:
    // A row of the list was renamed (and the list stored): the open ledgers
    // may let their entries take the new text.
    void kategorieRenamed(const QString& from, const QString& to);

protected:
    void showEvent(QShowEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    void storeList();

    UserDefaults& defaults_;
    CategoryListModel* model_ = nullptr;
    QTabWidget* pages_ = nullptr;
    QTableView* tableView_ = nullptr;
    QLineEdit* maxEinnahmenLimit_ = nullptr;
    QPushButton* removeButton_ = nullptr;
};

} // namespace saldo::gui
