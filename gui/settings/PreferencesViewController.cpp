#include "settings/PreferencesViewController.h"

#include "entrylist/SearchText.h"
#include "evaluation/CalcEngine.h"
#include "model/Kategorien.h"
#include "platform/Diagnostics.h"
#include "platform/NotificationCenter.h"
#include "settings/BankRulesPage.h"
#include "settings/CategoryListModel.h"
#include "settings/TaxPreferencesPage.h"
#include "settings/DatevPreferencesPage.h"

#include <QAction>
#include <QCloseEvent>
#include <QCoreApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QTabWidget>
#include <QTableView>
#include <QVBoxLayout>

#include <charconv>

namespace saldo::gui {

namespace {
QPointer<PreferencesViewController> g_preferences;

QAction* tableKey(QTableView* table, const QList<QKeySequence>& keys)
{
    auto* action = new QAction(table);
    action->setShortcuts(keys);
    action->setShortcutContext(Qt::WidgetShortcut);
    table->addAction(action);
    return action;
}
} // namespace

PreferencesViewController::PreferencesViewController(UserDefaults& defaults, QWidget* parent)
    : QWidget(parent, Qt::Window)
    , defaults_(defaults)
{
    setObjectName(QStringLiteral("PreferencesViewController"));
    setWindowTitle(QStringLiteral("Einstellungen"));

    // The stored list when it is a list of strings, else the default chart;
    // either way nothing is written until the first change.
    model_ = new CategoryListModel(Kategorien::listOrDefault(defaults_), this);
    connect(model_, &CategoryListModel::listEdited, this, &PreferencesViewController::storeList);
    connect(model_, &CategoryListModel::rowRenamed, this, &PreferencesViewController::kategorieRenamed);

    // The category list and the income limit are the first page; the
    // program's other settings follow, a page each.
    pages_ = new QTabWidget(this);
    pages_->setObjectName(QStringLiteral("pages"));
    pages_->setDocumentMode(true);
    auto* kategorienPage = new QWidget(pages_);

    tableView_ = new QTableView(kategorienPage);
    tableView_->setObjectName(QStringLiteral("tableView"));
    tableView_->setModel(model_);
    tableView_->horizontalHeader()->hide();
    tableView_->horizontalHeader()->setStretchLastSection(true);
    QHeaderView* rows = tableView_->verticalHeader();
    rows->hide();
    rows->setMinimumSectionSize(kRowHeight);
    rows->setDefaultSectionSize(kRowHeight);
    rows->setSectionResizeMode(QHeaderView::Fixed);
    tableView_->setShowGrid(false);
    tableView_->setWordWrap(false);
    tableView_->setAlternatingRowColors(true);
    tableView_->setSelectionBehavior(QAbstractItemView::SelectRows);
    tableView_->setSelectionMode(QAbstractItemView::ExtendedSelection);
    tableView_->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed);
    tableView_->setDragEnabled(true);
    tableView_->setAcceptDrops(true);
    tableView_->setDragDropMode(QAbstractItemView::InternalMove);
    tableView_->setDefaultDropAction(Qt::MoveAction);
    tableView_->setDragDropOverwriteMode(false);
    tableView_->setDropIndicatorShown(true);
    // Enter edits the current row as F2 and a double-click do; Del removes.
    connect(tableKey(tableView_, { QKeySequence(Qt::Key_Return), QKeySequence(Qt::Key_Enter) }), &QAction::triggered,
        this, [this] {
            const QModelIndex current = tableView_->currentIndex();
            if (current.isValid())
                tableView_->edit(current);
        });
    connect(tableKey(tableView_, { QKeySequence(Qt::Key_Delete) }), &QAction::triggered, this,
        &PreferencesViewController::removeEntry);

    auto* kategorien = new QLabel(QStringLiteral("&Kategorien:"), kategorienPage);
    kategorien->setBuddy(tableView_);

    auto* addButton = new QPushButton(QStringLiteral("&Hinzufuegen"), kategorienPage);
    addButton->setObjectName(QStringLiteral("addButton"));
    addButton->setAutoDefault(false);
    connect(addButton, &QPushButton::clicked, this, &PreferencesViewController::addEntry);
    removeButton_ = new QPushButton(QStringLiteral("&Entfernen"), kategorienPage);
    removeButton_->setObjectName(QStringLiteral("removeButton"));
    removeButton_->setAutoDefault(false);
    removeButton_->setEnabled(false);
    connect(removeButton_, &QPushButton::clicked, this, &PreferencesViewController::removeEntry);
    connect(tableView_->selectionModel(), &QItemSelectionModel::selectionChanged, this,
        [this] { removeButton_->setEnabled(selectedRow().has_value()); });

    maxEinnahmenLimit_ = new QLineEdit(kategorienPage);
    maxEinnahmenLimit_->setObjectName(QStringLiteral("maxEinnahmenLimit"));
    maxEinnahmenLimit_->setPlaceholderText(QStringLiteral("keine"));
    maxEinnahmenLimit_->setToolTip(QStringLiteral("Bruttoeinnahmen in Euro, mit Dezimalpunkt (1000.50)"));
    connect(
        maxEinnahmenLimit_, &QLineEdit::editingFinished, this, &PreferencesViewController::maxEinnahmenLimitChanged);
    auto* limitLabel = new QLabel(QStringLiteral("Einnahme&grenze (€):"), kategorienPage);
    limitLabel->setBuddy(maxEinnahmenLimit_);
    auto* limitNote = new QLabel(QStringLiteral("Gilt bis Saldo endet; sie wird nicht gespeichert."), kategorienPage);
    limitNote->setEnabled(false);

    auto* buttons = new QHBoxLayout;
    buttons->addWidget(addButton);
    buttons->addWidget(removeButton_);
    buttons->addStretch();
    auto* limit = new QHBoxLayout;
    limit->addWidget(limitLabel);
    limit->addWidget(maxEinnahmenLimit_, 1);
    auto* layout = new QVBoxLayout(kategorienPage);
    layout->addWidget(kategorien);
    layout->addWidget(tableView_, 1);
    layout->addLayout(buttons);
    layout->addSpacing(6);
    layout->addLayout(limit);
    layout->addWidget(limitNote);
    pages_->addTab(kategorienPage, QStringLiteral("Kategorien"));
    pages_->addTab(new TaxPreferencesPage(defaults_, pages_), QStringLiteral("Steuer"));
    pages_->addTab(new DatevPreferencesPage(defaults_, pages_), QStringLiteral("DATEV"));
    pages_->addTab(new BankRulesPage(defaults_, pages_), QStringLiteral("Bankregeln"));

    auto* window = new QVBoxLayout(this);
    window->setContentsMargins(0, 0, 0, 0);
    window->addWidget(pages_);

    auto* close = new QAction(this);
    close->setShortcuts(QKeySequence::Close);
    connect(close, &QAction::triggered, this, &QWidget::close);
    addAction(close);
}

PreferencesViewController::~PreferencesViewController() = default;

PreferencesViewController* PreferencesViewController::showPreferences(UserDefaults& defaults)
{
    if (!g_preferences) {
        g_preferences = new PreferencesViewController(defaults);
        g_preferences->setAttribute(Qt::WA_DeleteOnClose);
        // Still open when the program quits through "Beenden": it goes with it.
        connect(
            QCoreApplication::instance(), &QCoreApplication::aboutToQuit, g_preferences.data(), &QObject::deleteLater);
    }
    g_preferences->show();
    g_preferences->raise();
    g_preferences->activateWindow();
    return g_preferences;
}

PreferencesViewController* PreferencesViewController::openPreferences()
{
    return g_preferences;
}

const std::vector<std::string>& PreferencesViewController::containerArray() const
{
    return model_->containerArray();
}

std::optional<int> PreferencesViewController::selectedRow() const
{
    const QItemSelectionModel* selection = tableView_->selectionModel();
    const QModelIndex current = selection->currentIndex();
    if (current.isValid() && selection->isRowSelected(current.row()))
        return current.row();
    const QModelIndexList selected = selection->selectedRows();
    if (selected.isEmpty())
        return std::nullopt;
    int last = selected.front().row();
    for (const QModelIndex& index : selected)
        last = std::max(last, index.row());
    return last;
}

QString PreferencesViewController::limitText(float limit)
{
    char buffer[64];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, limit, std::chars_format::fixed);
    return QString::fromLatin1(buffer, static_cast<qsizetype>(result.ptr - buffer));
}

void PreferencesViewController::addEntry()
{
    diagnosticLine(std::to_string(containerArray().size()));
    const QModelIndex added = model_->index(model_->appendRow("Neu"));
    tableView_->selectionModel()->setCurrentIndex(
        added, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    tableView_->scrollTo(added);
    storeList();
    diagnosticLine(std::to_string(containerArray().size()));
}

void PreferencesViewController::removeEntry()
{
    const std::optional<int> row = selectedRow();
    if (!row)
        return;
    model_->removeRowAt(*row);
    storeList();
}

void PreferencesViewController::maxEinnahmenLimitChanged()
{
    // The same strict reader as the search field's numbers: the whole text in
    // C notation, read as single precision.
    if (const auto limit = SearchText::number(maxEinnahmenLimit_->text().toStdString()))
        einnahmenLimit() = *limit;
    maxEinnahmenLimit_->setModified(false);
}

void PreferencesViewController::storeList()
{
    defaults_.setStringArray(Kategorien::kKey, containerArray());
    NotificationCenter::defaultCenter().post(kDetailViewUpdated);
}

void PreferencesViewController::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    setFixedSize(kWidth, kHeight);
    if (const std::optional<float>& limit = einnahmenLimit())
        maxEinnahmenLimit_->setText(limitText(*limit));
}

void PreferencesViewController::keyPressEvent(QKeyEvent* event)
{
    // Escape closes the window, as it closes a dialog. A cell being edited
    // takes the key itself (its edit is abandoned) and the window stays.
    if (event->key() == Qt::Key_Escape && event->modifiers() == Qt::NoModifier) {
        close();
        return;
    }
    QWidget::keyPressEvent(event);
}

void PreferencesViewController::closeEvent(QCloseEvent* event)
{
    // A limit typed and not yet confirmed counts when the window closes.
    if (maxEinnahmenLimit_->isModified())
        maxEinnahmenLimitChanged();
    QWidget::closeEvent(event);
}

} // namespace saldo::gui
