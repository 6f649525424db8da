#include "entrylist/ViewController.h"

#include "app/Document.h"
#include "app/DocumentEntries.h"
#include "entrylist/EntryColumn.h"
#include "entrylist/EntryLists.h"
#include "entrylist/EntryTableModel.h"
#include "entrylist/EntryTableSetup.h"
#include "entrylist/SearchFieldController.h"
#include "entrylist/SearchOutcome.h"
#include "entrylist/SelectionSummaryView.h"
#include "model/Kategorien.h"
#include "platform/Dialogs.h"
#include "platform/NotificationCenter.h"

#include <QHeaderView>
#include <QItemSelectionModel>
#include <QLineEdit>
#include <QSignalBlocker>
#include <QMenu>
#include <QSplitter>
#include <QTableView>
#include <QVBoxLayout>

#include <algorithm>
#include <unordered_map>
#include <utility>

namespace saldo::gui {

namespace {

// A ledger's names are mostly a client or a supplier with a word or two
// ("Gestaltung Kanzlei Weiss & Partner", "Schriftenlizenz Type Foundry Inc."):
// the name column has room for that beside the status image.
int nameColumnWidth(const QFontMetrics& metrics)
{
    return metrics.horizontalAdvance(QStringLiteral("Gestaltung Kanzlei Weiss & Partner")) + 40;
}

} // namespace

class ViewController::Private {
public:
    Private(ViewController* owner, Document& doc, UserDefaults& d)
        : q(owner)
        , document(doc)
        , defaults(d)
    {
    }

    ViewController* q;
    Document& document;
    UserDefaults& defaults;
    EntryTableModel* model = nullptr;
    QTableView* table = nullptr;
    SearchFieldController* search = nullptr;
    SelectionSummaryView* summary = nullptr;
    QSplitter* splitter = nullptr;
    EinnahmePtr selectedEinnahme;
    NotificationCenter::Token observer = 0;

    // While the lists and the table are being changed, selection signals wait:
    // the change ends with one selection update if the selected entries differ.
    int structuralChanges = 0;
    std::vector<const Einnahme*> selectedBefore;
    std::vector<std::size_t> rowsBefore;
    EinnahmePtr currentBefore;
    // An imported list keeps the selected rows and tells the window of the
    // entries now selected, but posts no "TableViewUpdated".
    bool announceSelection = true;

    void setUpTable();

    void selectRows(const std::vector<std::size_t>& rows);
    std::vector<const Einnahme*> selectedEntries() const;

    void beginChange();
    void endChange();
    // Runs a change of the selection or the table made here; afterwards, when
    // the selected entries differ from before, the selection is handled once.
    void structuralChange(const std::function<void()>& change);
    // After the shown list was rebuilt: selects again those entries that were
    // selected and are still shown; the current one stays the current one.
    void reselectEntries();

    void documentChanged(const DocumentChange& change);
    void selectionDidChange(bool announce = true);
    void rebuildSelectionSummary();
    void contextMenu(const QPoint& position);
    void confirmAndDelete(std::vector<std::size_t> rows, bool reloadWhenRefused);
};

ViewController::ViewController(Document& document, UserDefaults& defaults, QWidget* parent)
    : QWidget(parent)
    , d_(new Private(this, document, defaults))
{
    setObjectName(QStringLiteral("ViewController"));
    Kategorien::storeDefaultKategorienIfMissing(defaults);
    d_->model = document.model();
    // The stored chart may have been written just now.
    d_->model->reload();
    d_->setUpTable();
    d_->search = new SearchFieldController(this);
    d_->search->setSearchHandler([this](const SearchOutcome& outcome) {
        d_->document.applySearch(outcome);
        // A new list from the complete one has its order: no sort indicator.
        if (outcome.kind() != SearchOutcome::Kind::KeepShown)
            d_->table->horizontalHeader()->setSortIndicator(-1, Qt::AscendingOrder);
        NotificationCenter::defaultCenter().post(kTableViewUpdated);
    });
    d_->summary = new SelectionSummaryView;

    // The search field above; below it the table, which keeps most of the
    // height, over the selection summary.
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(4);
    layout->addWidget(d_->search->searchField());
    auto* splitter = d_->splitter = new QSplitter(Qt::Vertical, this);
    splitter->setObjectName(QStringLiteral("entryListSplitter"));
    splitter->setChildrenCollapsible(false);
    splitter->addWidget(d_->table);
    splitter->addWidget(d_->summary);
    splitter->setStretchFactor(0, 3);
    splitter->setStretchFactor(1, 1);
    splitter->setSizes({ 560, 180 });
    layout->addWidget(splitter);

    connect(&document, &Document::aboutToChange, this, [this] { d_->beginChange(); });
    connect(&document, &Document::changed, this, [this](const DocumentChange& change) {
        d_->documentChanged(change);
        d_->endChange();
    });
    connect(&document, &Document::cellEditCompleted, this, [this] {
        if (!selectedRows().empty())
            NotificationCenter::defaultCenter().post(kTableViewUpdated);
    });
    d_->observer = NotificationCenter::defaultCenter().addObserver(kDetailViewUpdated, [this] { updateTableView(); });
}

ViewController::~ViewController()
{
    NotificationCenter::defaultCenter().removeObserver(d_->observer);
    // The model belongs to the document, which outlives this view.
    d_->table->setModel(nullptr);
    delete d_;
}

void ViewController::Private::setUpTable()
{
    table = new QTableView(q);
    table->setObjectName(QStringLiteral("tableView"));
    table->setModel(model);

    EntryTableSetup::apply(table, EntryColumn::Count, &EntryColumn::fromIndex);
    // Header clicks sort; the list starts in its own order, without indicator.
    table->horizontalHeader()->setSortIndicator(-1, Qt::AscendingOrder);
    table->setSortingEnabled(true);
    table->horizontalHeader()->resizeSection(EntryColumn::Name, nameColumnWidth(table->fontMetrics()));
    table->setSelectionMode(QAbstractItemView::ExtendedSelection);

    // The table's background is the standard blue; the rows are light over it.
    // Only the viewport gets the blue: the cells' controls keep the usual colours.
    QPalette background = table->viewport()->palette();
    background.setColor(QPalette::Base, QColor(0x00, 0x00, 0xff));
    table->viewport()->setPalette(background);

    connect(table->selectionModel(), &QItemSelectionModel::selectionChanged, q, [this] {
        if (structuralChanges == 0)
            selectionDidChange();
    });
    connect(table, &QAbstractItemView::doubleClicked, q, &ViewController::handleDoubleClick);
    table->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(table, &QWidget::customContextMenuRequested, q, [this](const QPoint& position) { contextMenu(position); });
}

// --- state -----------------------------------------------------------------

Document& ViewController::document() const
{
    return d_->document;
}

const EinnahmeList& ViewController::einnahmen() const
{
    return d_->document.einnahmen();
}

const EinnahmeList& ViewController::backupEinnahmen() const
{
    return d_->document.backupEinnahmen();
}

EinnahmePtr ViewController::selectedEinnahme() const
{
    return d_->selectedEinnahme;
}

QTableView* ViewController::tableView() const
{
    return d_->table;
}

SearchFieldController* ViewController::searchFieldController() const
{
    return d_->search;
}

SelectionSummaryView* ViewController::selectedEntriesView() const
{
    return d_->summary;
}

QSplitter* ViewController::tableSplitter() const
{
    return d_->splitter;
}

// --- selection ---------------------------------------------------------------

std::vector<std::size_t> ViewController::selectedRows() const
{
    // Ranges of rows in ascending order, each row once: the ranges are sorted,
    // not the rows (select-all at a million rows is one range).
    const QItemSelection selection = d_->table->selectionModel()->selection();
    std::vector<std::pair<int, int>> ranges;
    ranges.reserve(static_cast<std::size_t>(selection.size()));
    std::size_t total = 0;
    for (const QItemSelectionRange& range : selection) {
        ranges.emplace_back(range.top(), range.bottom());
        total += static_cast<std::size_t>(range.bottom() - range.top() + 1);
    }
    std::sort(ranges.begin(), ranges.end());
    std::vector<std::size_t> rows;
    rows.reserve(total);
    for (const auto& [top, bottom] : ranges)
        for (int row = top; row <= bottom; ++row)
            if (rows.empty() || static_cast<std::size_t>(row) > rows.back())
                rows.push_back(static_cast<std::size_t>(row));
    return rows;
}

std::optional<std::size_t> ViewController::selectedRow() const
{
    QItemSelectionModel* selection = d_->table->selectionModel();
    const QModelIndex current = selection->currentIndex();
    if (current.isValid() && selection->isRowSelected(current.row()))
        return static_cast<std::size_t>(current.row());
    const auto rows = selectedRows();
    if (rows.empty())
        return std::nullopt;
    return rows.back();
}

void ViewController::Private::selectRows(const std::vector<std::size_t>& rows)
{
    QItemSelection selection;
    const int lastColumn = EntryColumn::Count - 1;
    for (std::size_t row : rows) {
        const int r = static_cast<int>(row);
        if (r >= model->rowCount())
            continue;
        selection.merge(QItemSelection(model->index(r, 0), model->index(r, lastColumn)), QItemSelectionModel::Select);
    }
    QItemSelectionModel* selectionModel = table->selectionModel();
    if (!rows.empty() && static_cast<int>(rows.back()) < model->rowCount())
        selectionModel->setCurrentIndex(model->index(static_cast<int>(rows.back()), 0), QItemSelectionModel::NoUpdate);
    selectionModel->select(selection, QItemSelectionModel::ClearAndSelect);
}

std::vector<const Einnahme*> ViewController::Private::selectedEntries() const
{
    std::vector<const Einnahme*> entries;
    for (std::size_t row : q->selectedRows())
        if (const auto entry = model->entryAt(static_cast<int>(row)))
            entries.push_back(entry.get());
    return entries;
}

void ViewController::Private::beginChange()
{
    if (structuralChanges++ > 0)
        return;
    selectedBefore = selectedEntries();
    rowsBefore = q->selectedRows();
    currentBefore = model->entryAt(table->selectionModel()->currentIndex().row());
}

void ViewController::Private::endChange()
{
    if (--structuralChanges > 0)
        return;
    currentBefore.reset();
    const bool announce = std::exchange(announceSelection, true);
    if (selectedEntries() != selectedBefore)
        selectionDidChange(announce);
}

void ViewController::Private::structuralChange(const std::function<void()>& change)
{
    beginChange();
    change();
    endChange();
}

void ViewController::Private::reselectEntries()
{
    if (selectedBefore.empty())
        return;
    std::unordered_map<const Einnahme*, std::size_t> rowOf;
    rowOf.reserve(selectedBefore.size());
    for (const Einnahme* entry : selectedBefore)
        rowOf.emplace(entry, SIZE_MAX);
    const auto& einnahmen = document.einnahmen();
    for (std::size_t row = 0; row < einnahmen.size(); ++row) {
        auto it = rowOf.find(einnahmen[row].get());
        if (it != rowOf.end() && it->second == SIZE_MAX)
            it->second = row;
    }
    std::vector<std::size_t> rows;
    for (const auto& [entry, row] : rowOf)
        if (row != SIZE_MAX)
            rows.push_back(row);
    std::sort(rows.begin(), rows.end());
    if (currentBefore) {
        auto it = rowOf.find(currentBefore.get());
        if (it != rowOf.end() && it->second != SIZE_MAX) {
            rows.erase(std::find(rows.begin(), rows.end(), it->second));
            rows.push_back(it->second);
        }
    }
    selectRows(rows);
}

void ViewController::Private::documentChanged(const DocumentChange& change)
{
    switch (change.selection) {
    case DocumentChange::Selection::Rows:
        selectRows(change.rows);
        if (change.scroll && !change.rows.empty())
            table->scrollTo(model->index(static_cast<int>(change.rows.back()), 0));
        break;
    case DocumentChange::Selection::KeepRows:
        selectRows(rowsBefore);
        announceSelection = false;
        break;
    case DocumentChange::Selection::KeepEntries:
        // Inserted and removed rows keep the selection by themselves; a rebuilt
        // list has lost it.
        if (change.kind == DocumentChange::Kind::ListsReplaced)
            reselectEntries();
        break;
    }
    // The selection summary follows edits, wherever they were made.
    if (change.kind == DocumentChange::Kind::EntriesEdited && !q->selectedRows().empty())
        rebuildSelectionSummary();
}

void ViewController::Private::selectionDidChange(bool announce)
{
    const auto rows = q->selectedRows();
    rebuildSelectionSummary();
    selectedEinnahme = rows.size() == 1 ? model->entryAt(static_cast<int>(rows.front())) : nullptr;
    emit q->selectionChanged(selectedEinnahme, static_cast<int>(rows.size()));
    if (announce)
        NotificationCenter::defaultCenter().post(kTableViewUpdated);
}

void ViewController::Private::rebuildSelectionSummary()
{
    summary->showSelection(document.einnahmen(), q->selectedRows());
}

void ViewController::viewWillAppear()
{
    d_->structuralChange([this] {
        d_->model->reload();
        if (!einnahmen().empty())
            d_->selectRows({ 0 });
    });
}

void ViewController::updateTableView()
{
    const auto row = selectedRow();
    const EinnahmePtr entry = row ? d_->model->entryAt(static_cast<int>(*row)) : nullptr;
    d_->structuralChange([&] {
        d_->model->reload();
        if (!entry)
            return;
        if (const auto moved = d_->document.entries().lists().rowOf(entry.get()))
            d_->selectRows({ *moved });
    });
}

// --- list commands -------------------------------------------------------------

void ViewController::addEntry()
{
    d_->document.addEntry();
}

void ViewController::duplicateEntry()
{
    const std::size_t count = einnahmen().size();
    if (!selectedRow() && count > 0)
        d_->structuralChange([&] { d_->selectRows({ count - 1 }); });
    if (const auto source = EntryLists::duplicateSourceRow(selectedRow(), count))
        d_->document.duplicateEntry(*source);
}

void ViewController::duplicateRow(int row)
{
    if (row >= 0 && static_cast<std::size_t>(row) < einnahmen().size())
        d_->document.duplicateEntry(static_cast<std::size_t>(row));
}

void ViewController::deleteEntries()
{
    auto rows = selectedRows();
    if (!rows.empty())
        d_->confirmAndDelete(std::move(rows), true);
}

void ViewController::deleteRow(int row)
{
    if (row >= 0 && static_cast<std::size_t>(row) < einnahmen().size())
        d_->confirmAndDelete({ static_cast<std::size_t>(row) }, false);
}

void ViewController::Private::confirmAndDelete(std::vector<std::size_t> rows, bool reloadWhenRefused)
{
    const QString question = QString::fromStdString(EntryLists::deleteConfirmationText(rows.size()));
    if (!Dialogs::instance().confirmDelete(q, question)) {
        if (reloadWhenRefused)
            structuralChange([this] { model->reload(); });
        return;
    }
    document.deleteRows(std::move(rows));
}

void ViewController::Private::contextMenu(const QPoint& position)
{
    const QModelIndex index = table->indexAt(position);
    if (!index.isValid())
        return;
    const int row = index.row();
    QMenu menu(table);
    QAction* duplicate = menu.addAction(QStringLiteral("&Duplizieren"));
    QAction* remove = menu.addAction(QStringLiteral("&Loeschen"));
    QAction* chosen = menu.exec(table->viewport()->mapToGlobal(position));
    if (chosen == duplicate)
        q->duplicateRow(row);
    else if (chosen == remove)
        q->deleteRow(row);
}

bool ViewController::selectEntry(const Einnahme* entry)
{
    const EntryLists& lists = d_->document.entries().lists();
    std::optional<std::size_t> row = lists.rowOf(entry);
    if (!row) {
        // Hidden by a search: shown again with all the others, if it is still in the ledger.
        const auto& all = lists.backupEinnahmen();
        if (std::none_of(all.begin(), all.end(), [entry](const EinnahmePtr& e) { return e.get() == entry; }))
            return false;
        {
            const QSignalBlocker quiet(d_->search->searchField());
            d_->search->searchField()->clear();
        }
        d_->document.applySearch(SearchOutcome::showAll());
        row = lists.rowOf(entry);
        if (!row)
            return false;
    }
    d_->structuralChange([&] { d_->selectRows({ *row }); });
    d_->table->scrollTo(d_->model->index(static_cast<int>(*row), 0));
    d_->table->setFocus(Qt::OtherFocusReason);
    return true;
}

// --- editors -----------------------------------------------------------------

void ViewController::handleDoubleClick(const QModelIndex& index)
{
    // Below the last row there is no row and nothing opens.
    if (!index.isValid() || index.row() < 0)
        return;
    if (const auto row = selectedRow())
        emit splitBookingEditorRequested(static_cast<int>(*row));
}

void ViewController::initiateSerialTransactionController()
{
    if (const auto row = selectedRow())
        emit serialTransactionRequested(static_cast<int>(*row));
}

} // namespace saldo::gui
