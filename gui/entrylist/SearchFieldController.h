#pragma once

#include "entrylist/SearchOutcome.h"

#include <QObject>
#include <QString>

#include <functional>

class QAction;
class QLineEdit;
class QMenu;
class QWidget;

namespace saldo::gui {

// The search field above the entry table and its search menu. The menu is
// built from the core's SearchMenu; choosing one of its mode items puts the
// item's title into the field's placeholder, which is the only record of the
// search mode, and changes nothing else. Every change of the text is turned
// into a SearchOutcome (mode and text as they are, untrimmed) and handed to the
// owner, except a text that could not be read as a number or date: that one is
// dropped here and the owner hears nothing. The field also answers Ctrl+F
// anywhere in its window (focus) and Escape in itself (clear).
class SearchFieldController : public QObject {
    Q_OBJECT
public:
    // Applies an outcome other than NoChange to the lists and the table.
    using SearchHandler = std::function<void(const SearchOutcome&)>;

    // Makes the field ("searchField") and its menu as children of `parent`;
    // the owner puts the field into its layout.
    explicit SearchFieldController(QWidget* parent);

    QLineEdit* searchField() const { return field_; }
    QMenu* searchMenu() const { return menu_; }
    // The leading action of the field that opens the search menu.
    QAction* menuAction() const { return menuAction_; }
    // The action behind Ctrl+F.
    QAction* findAction() const { return findAction_; }

    // The current search mode: the field's placeholder.
    QString mode() const;

    void setSearchHandler(SearchHandler handler) { handler_ = std::move(handler); }

public slots:
    // The action of the menu's mode items: the placeholder becomes the item's
    // title (empty for an item without one). The text is not filtered again.
    void changeSearchFieldItem(QAction* sender);
    // Opens the search menu below the field.
    void popUpSearchMenu();

private:
    void buildMenu();
    void searchFieldTextChanged(const QString& text);
    bool eventFilter(QObject* watched, QEvent* event) override;

    QLineEdit* field_ = nullptr;
    QMenu* menu_ = nullptr;
    QAction* menuAction_ = nullptr;
    QAction* findAction_ = nullptr;
    SearchHandler handler_;
};

} // namespace saldo::gui
