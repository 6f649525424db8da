#include "entrylist/EntryTableSetup.h"

#include "entrylist/CheckBoxDelegate.h"
#include "entrylist/DateDelegate.h"
#include "entrylist/PopUpDelegate.h"
#include "entrylist/TextDelegate.h"

#include <QHeaderView>
#include <QTableView>

namespace saldo::gui {

namespace {

// Initial widths of the columns, by EntryColumn.
constexpr int kColumnWidths[EntryColumn::Count] = { 170, 56, 70, 100, 230, 80, 80, 72, 118, 120, 110, 82, 120 };

void installDelegates(QTableView* table, int columnCount, EntryTableSetup::ColumnAt columnAt)
{
    auto* text = new TextDelegate(table);
    auto* checkBox = new CheckBoxDelegate(table);
    auto* art = new PopUpDelegate(PopUpDelegate::Answer::Index, table);
    auto* kategorie = new PopUpDelegate(PopUpDelegate::Answer::Title, table);
    auto* date = new DateDelegate(table);
    art->setOpensPopup(true);
    kategorie->setOpensPopup(true);
    for (int position = 0; position < columnCount; ++position) {
        const auto id = columnAt(position);
        QAbstractItemDelegate* delegate = text;
        switch (EntryColumn::kind(id)) {
        case EntryColumn::Kind::CheckBox:
            delegate = checkBox;
            break;
        case EntryColumn::Kind::PopUp:
            delegate = id == EntryColumn::Art ? art : kategorie;
            break;
        case EntryColumn::Kind::Date:
            delegate = date;
            break;
        case EntryColumn::Kind::Text:
        case EntryColumn::Kind::Number:
            break;
        }
        table->setItemDelegateForColumn(position, delegate);
    }

    // Pop-ups and the date open with one click, as controls do.
    QObject::connect(table, &QAbstractItemView::clicked, table, [table, columnAt](const QModelIndex& index) {
        const auto kind = EntryColumn::kind(columnAt(index.column()));
        if ((kind == EntryColumn::Kind::PopUp || kind == EntryColumn::Kind::Date)
            && (index.flags() & Qt::ItemIsEditable))
            table->edit(index);
    });
}

} // namespace

void EntryTableSetup::apply(QTableView* table, int columnCount, ColumnAt columnAt)
{
    installDelegates(table, columnCount, columnAt);

    QHeaderView* rows = table->verticalHeader();
    rows->setMinimumSectionSize(16);
    rows->setDefaultSectionSize(20);
    rows->setSectionResizeMode(QHeaderView::Fixed);
    rows->hide();
    QHeaderView* columns = table->horizontalHeader();
    columns->setSectionsMovable(false);
    columns->setHighlightSections(false);
    columns->setStretchLastSection(true);
    for (int position = 0; position < columnCount; ++position)
        columns->resizeSection(position, kColumnWidths[columnAt(position)]);

    table->setSelectionBehavior(QAbstractItemView::SelectRows);
    table->setEditTriggers(
        QAbstractItemView::SelectedClicked | QAbstractItemView::EditKeyPressed | QAbstractItemView::AnyKeyPressed);
    table->setShowGrid(false);
    table->setWordWrap(false);
    table->setCornerButtonEnabled(false);
    table->setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
}

} // namespace saldo::gui
