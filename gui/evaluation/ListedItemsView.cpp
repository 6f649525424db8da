#include "evaluation/ListedItemsView.h"

#include "evaluation/ListedItemsModel.h"

#include <QHeaderView>
#include <QLabel>
#include <QTableView>
#include <QVBoxLayout>

namespace saldo::gui {

ListedItemsView::ListedItemsView(const QString& title, QWidget* parent)
    : QWidget(parent)
    , title_(title)
{
    model_ = new ListedItemsModel(this);
    table_ = new QTableView(this);
    table_->setModel(model_);
    table_->setSelectionBehavior(QAbstractItemView::SelectRows);
    table_->setSelectionMode(QAbstractItemView::SingleSelection);
    table_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table_->setAlternatingRowColors(true);
    table_->setWordWrap(false);
    table_->setShowGrid(false);
    table_->verticalHeader()->hide();
    table_->verticalHeader()->setDefaultSectionSize(table_->fontMetrics().height() + 6);
    QHeaderView* header = table_->horizontalHeader();
    header->setSectionResizeMode(ListedItemsModel::Name, QHeaderView::Stretch);
    header->setSectionResizeMode(ListedItemsModel::Grund, QHeaderView::Stretch);
    for (int column : { ListedItemsModel::Row, ListedItemsModel::Datum, ListedItemsModel::Betrag })
        header->setSectionResizeMode(column, QHeaderView::ResizeToContents);
    // ResizeToContents would measure every row of a long list: the first rows decide.
    header->setResizeContentsPrecision(200);
    // Room for three items at least.
    table_->setMinimumHeight(header->sizeHint().height() + 3 * table_->verticalHeader()->defaultSectionSize() + 4);
    table_->setFrameShape(QFrame::NoFrame);
    connect(table_, &QTableView::activated, this, [this](const QModelIndex& index) {
        if (index.isValid())
            emit entryActivated(model_->items()[static_cast<std::size_t>(index.row())].top);
    });

    titleLabel_ = new QLabel(this);
    titleLabel_->setBuddy(table_);
    QFont bold = titleLabel_->font();
    bold.setBold(true);
    titleLabel_->setFont(bold);
    updateTitle();

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(2);
    layout->addWidget(titleLabel_);
    layout->addWidget(table_, 1);
}

void ListedItemsView::setTitle(const QString& title)
{
    title_ = title;
    updateTitle();
}

void ListedItemsView::setItems(std::vector<tax::ListedItem> items)
{
    model_->setItems(std::move(items));
    updateTitle();
}

QString ListedItemsView::titleWithCount() const
{
    return QStringLiteral("%1 (%2)").arg(title_).arg(model_->rowCount());
}

void ListedItemsView::setTitleShown(bool shown)
{
    titleLabel_->setVisible(shown);
}

void ListedItemsView::updateTitle()
{
    titleLabel_->setText(titleWithCount());
    emit titleChanged(titleWithCount());
}

} // namespace saldo::gui
