#include "app/ShortcutsDialog.h"

#include "app/ShortcutList.h"

#include <QDialogButtonBox>
#include <QHeaderView>
#include <QMainWindow>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace saldo::gui {

ShortcutsDialog::ShortcutsDialog(QMainWindow& window)
    : QDialog(&window)
    , window_(window)
{
    setObjectName(QStringLiteral("ShortcutsDialog"));
    setWindowTitle(QStringLiteral("Tastenkuerzel"));
    list_ = new QTreeWidget(this);
    list_->setColumnCount(2);
    list_->setHeaderLabels({ QStringLiteral("Befehl"), QStringLiteral("Tasten") });
    list_->setRootIsDecorated(false);
    list_->setSelectionMode(QAbstractItemView::NoSelection);
    list_->setFocusPolicy(Qt::NoFocus);
    auto* buttons = new QDialogButtonBox(this);
    buttons->addButton(QStringLiteral("S&chliessen"), QDialogButtonBox::RejectRole);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::close);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(list_);
    layout->addWidget(buttons);
    resize(480, 560);
}

void ShortcutsDialog::showEvent(QShowEvent* event)
{
    fill();
    QDialog::showEvent(event);
}

void ShortcutsDialog::fill()
{
    list_->clear();
    QTreeWidgetItem* group = nullptr;
    for (const ShortcutList::Row& row : ShortcutList::of(window_)) {
        if (!group || group->text(0) != row.menu) {
            group = new QTreeWidgetItem(list_, { row.menu });
            QFont bold = group->font(0);
            bold.setBold(true);
            group->setFont(0, bold);
            group->setFirstColumnSpanned(true);
            group->setExpanded(true);
        }
        new QTreeWidgetItem(group, { row.command, row.keys });
    }
    list_->expandAll();
    list_->resizeColumnToContents(0);
    list_->header()->setStretchLastSection(true);
}

} // namespace saldo::gui
