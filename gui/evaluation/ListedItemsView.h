#pragma once

#include "tax/ListedItem.h"

#include <QWidget>

#include <cstddef>
#include <vector>

class QLabel;
class QTableView;

namespace saldo::gui {

class ListedItemsModel;

// One list below a tax form: its title with the number of items ("nicht
// zugeordnet (3)") over a table of the items. A double-click, or Enter, on an
// item asks for its entry to be selected in the ledger's table. The title
// may be shown elsewhere (a tab) instead of above the table.
class ListedItemsView : public QWidget {
    Q_OBJECT
public:
    explicit ListedItemsView(const QString& title, QWidget* parent = nullptr);

    void setTitle(const QString& title);
    const QString& title() const { return title_; }
    // The title with the number of items, "nicht zugeordnet (3)".
    QString titleWithCount() const;
    void setTitleShown(bool shown);
    void setItems(std::vector<tax::ListedItem> items);

    ListedItemsModel* model() const { return model_; }
    QTableView* tableView() const { return table_; }
    QLabel* titleLabel() const { return titleLabel_; }

signals:
    void titleChanged(const QString& titleWithCount);
    // The 0-based position of the item's top-level entry in the evaluated list.
    void entryActivated(std::size_t top);

private:
    void updateTitle();

    QString title_;
    QLabel* titleLabel_ = nullptr;
    QTableView* table_ = nullptr;
    ListedItemsModel* model_ = nullptr;
};

} // namespace saldo::gui
