#include "entrylist/ViewController.h"

#include "app/SplitViewController.h"
#include "editors/DetailViewController.h"
#include "entrylist/CellEdit.h"
#include "entrylist/CheckBoxDelegate.h"
#include "entrylist/DateDelegate.h"
#include "entrylist/DeleteEntriesCommand.h"
#include "entrylist/EntryLists.h"
#include "entrylist/EntryTableModel.h"
#include "entrylist/PopUpDelegate.h"
#include "entrylist/SearchFieldController.h"
#include "entrylist/SelectionSummaryView.h"
#include "entrylist/TextDelegate.h"
#include "model/Kategorien.h"
#include "platform/Diagnostics.h"
#include "platform/Dialogs.h"
#include "platform/NotificationCenter.h"
#include "platform/Sound.h"

#include <QHeaderView>
#include <QItemSelectionModel>
#include <QLineEdit>
#include <QMenu>
#include <QPointer>
#include <QSplitter>
#include <QTableView>
#include <QUndoStack>
#include <QVBoxLayout>

#include <algorithm>
#include <unordered_map>

namespace saldo::gui {

class ViewController::Private final : public DeleteEntriesCommand::Target {
public:
    Private(ViewController* owner, UserDefaults& d)
        : q(owner)
        , defaults(d)
    {
    }

    ViewController* q;
    UserDefaults& defaults;
    EntryLists lists;
    EntryTableModel* model = nullptr;
    QTableView* table = nullptr;
    SearchFieldController* search = nullptr;
    SelectionSummaryView* summary = nullptr;
    EinnahmePtr selectedEinnahme;
    QPointer<SplitViewController> split;
    QPointer<QUndoStack> undoStack;
    NotificationCenter::Token observer = 0;
    // While the lists and the table are being changed, selection signals wait:
    // the change ends with one selection update if the selected entries differ.
    int structuralChanges = 0;

    void setUpTable();

    // The selection, in ascending row order.
    std::vector<std::size_t> selectedRows() const;
    // The table's selected row: the current row when it is selected, else the
    // last selected row; none without a selection.
    std::optional<std::size_t> selectedRow() const;
    // Replaces the selection by exactly these rows.
    void selectRows(const std::vector<std::size_t>& rows);
    std::vector<const Einnahme*> selectedEntries() const;

    // Runs a change of lists or table; afterwards, when the selected entries
    // differ from before, the selection is handled once.
    void structuralChange(const std::function<void()>& change);
    // Resets the model around `change`, then selects again those entries that
    // were selected and are still shown.
    void resetKeepingSelection(const std::function<void()>& change);
    // Shows the lists again (rows added or removed behind the table's back included).
    void reloadTable();

    void selectionDidChange();
    void rebuildSelectionSummary();
    DetailViewController* detailPanel() const;

    // The action of every edited cell; answers whether a value was stored.
    bool cellViewEdited(int row, EntryColumn::Id column, const QVariant& value);

    void insertDuplicate(std::size_t row);
    void pushDeletion(std::vector<std::size_t> rows);
    void contextMenu(const QPoint& position);

    // DeleteEntriesCommand::Target
    DeletionRecord deleteRows(const std::vector<std::size_t>& rows) override;
    void undoDeletion(const DeletionRecord& record) override;
    void redoDeletion(const DeletionRecord& record) override;
};

ViewController::ViewController(UserDefaults& defaults, QWidget* parent)
    : QWidget(parent)
    , d_(new Private(this, defaults))
{
    setObjectName(QStringLiteral("ViewController"));
    Kategorien::storeDefaultKategorienIfMissing(defaults);
    d_->setUpTable();
    d_->search = new SearchFieldController(this);
    d_->search->setSearchHandler([this](const SearchOutcome& outcome) {
        // A new list from the complete one has its order: no sort indicator.
        d_->structuralChange([&] { d_->resetKeepingSelection([&] { d_->lists.applySearch(outcome); }); });
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
    auto* splitter = new QSplitter(Qt::Vertical, this);
    splitter->setChildrenCollapsible(false);
    splitter->addWidget(d_->table);
    splitter->addWidget(d_->summary);
    splitter->setStretchFactor(0, 3);
    splitter->setStretchFactor(1, 1);
    splitter->setSizes({ 560, 180 });
    layout->addWidget(splitter);

    d_->observer = NotificationCenter::defaultCenter().addObserver(kDetailViewUpdated, [this] { updateTableView(); });

    d_->structuralChange([this] { d_->model->resetWith([this] { d_->lists.setStartingEntry(); }); });
}

ViewController::~ViewController()
{
    NotificationCenter::defaultCenter().removeObserver(d_->observer);
    // The table goes with this widget; its model must not outlive the lists.
    d_->table->setModel(nullptr);
    delete d_->model;
    delete d_;
}

void ViewController::Private::setUpTable()
{
    table = new QTableView(q);
    table->setObjectName(QStringLiteral("tableView"));
    model = new EntryTableModel(lists, defaults);
    model->setEditHandler(
        [this](int row, EntryColumn::Id column, const QVariant& value) { return cellViewEdited(row, column, value); });
    table->setModel(model);
    model->setSortHandler(
        [this](std::optional<std::string_view> key, bool ascending) { lists.sortEinnahmen(key, ascending); });

    auto* text = new TextDelegate(table);
    auto* checkBox = new CheckBoxDelegate(table);
    auto* art = new PopUpDelegate(PopUpDelegate::Answer::Index, table);
    auto* kategorie = new PopUpDelegate(PopUpDelegate::Answer::Title, table);
    auto* date = new DateDelegate(table);
    art->setOpensPopup(true);
    kategorie->setOpensPopup(true);
    for (int column = 0; column < EntryColumn::Count; ++column) {
        const auto id = EntryColumn::fromIndex(column);
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
        table->setItemDelegateForColumn(column, delegate);
    }

    QHeaderView* rows = table->verticalHeader();
    rows->setMinimumSectionSize(16);
    rows->setDefaultSectionSize(20);
    rows->setSectionResizeMode(QHeaderView::Fixed);
    rows->hide();
    QHeaderView* columns = table->horizontalHeader();
    columns->setSectionsMovable(false);
    columns->setHighlightSections(false);
    columns->setStretchLastSection(true);
    // Header clicks sort; the list starts in its own order, without indicator.
    columns->setSortIndicator(-1, Qt::AscendingOrder);
    table->setSortingEnabled(true);
    for (int column = 0; column < EntryColumn::Count; ++column)
        columns->resizeSection(column, EntryColumn::defaultWidth(EntryColumn::fromIndex(column)));

    table->setSelectionBehavior(QAbstractItemView::SelectRows);
    table->setSelectionMode(QAbstractItemView::ExtendedSelection);
    table->setEditTriggers(
        QAbstractItemView::SelectedClicked | QAbstractItemView::EditKeyPressed | QAbstractItemView::AnyKeyPressed);
    table->setShowGrid(false);
    table->setWordWrap(false);
    table->setCornerButtonEnabled(false);
    table->setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);

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
    // Pop-ups and the date open with one click, as controls do.
    connect(table, &QAbstractItemView::clicked, q, [this](const QModelIndex& index) {
        const auto kind = EntryColumn::kind(EntryColumn::fromIndex(index.column()));
        if ((kind == EntryColumn::Kind::PopUp || kind == EntryColumn::Kind::Date)
            && (index.flags() & Qt::ItemIsEditable))
            table->edit(index);
    });
    table->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(table, &QWidget::customContextMenuRequested, q, [this](const QPoint& position) { contextMenu(position); });
}

// --- state -----------------------------------------------------------------

const EinnahmeList& ViewController::einnahmen() const
{
    return d_->lists.einnahmen();
}

const EinnahmeList& ViewController::backupEinnahmen() const
{
    return d_->lists.backupEinnahmen();
}

void ViewController::setEntries(const EinnahmeList& entries)
{
    d_->structuralChange([&] { d_->model->resetWith([&] { d_->lists.setEntries(entries); }); });
    // The new list is in its own order: no sort indicator.
    d_->table->horizontalHeader()->setSortIndicator(-1, Qt::AscendingOrder);
}

EinnahmePtr ViewController::selectedEinnahme() const
{
    return d_->selectedEinnahme;
}

QTableView* ViewController::tableView() const
{
    return d_->table;
}

void ViewController::setSplitViewController(SplitViewController* split)
{
    d_->split = split;
}

void ViewController::setUndoStack(QUndoStack* undoStack)
{
    d_->undoStack = undoStack;
}

// --- selection ---------------------------------------------------------------

std::vector<std::size_t> ViewController::Private::selectedRows() const
{
    // Ranges of rows in ascending order, each row once: the ranges are sorted,
    // not the rows (select-all at a million rows is one range).
    const QItemSelection selection = table->selectionModel()->selection();
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

std::optional<std::size_t> ViewController::Private::selectedRow() const
{
    QItemSelectionModel* selection = table->selectionModel();
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
    for (std::size_t row : selectedRows())
        if (const auto entry = model->entryAt(static_cast<int>(row)))
            entries.push_back(entry.get());
    return entries;
}

void ViewController::Private::structuralChange(const std::function<void()>& change)
{
    const auto before = selectedEntries();
    ++structuralChanges;
    change();
    --structuralChanges;
    if (structuralChanges == 0 && selectedEntries() != before)
        selectionDidChange();
}

void ViewController::Private::resetKeepingSelection(const std::function<void()>& change)
{
    const auto before = selectedEntries();
    EinnahmePtr current = model->entryAt(table->selectionModel()->currentIndex().row());
    model->resetWith(change);
    if (before.empty())
        return;
    std::unordered_map<const Einnahme*, std::size_t> rowOf;
    rowOf.reserve(before.size());
    for (const Einnahme* entry : before)
        rowOf.emplace(entry, SIZE_MAX);
    const auto& einnahmen = lists.einnahmen();
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
    // The current row stays the current one when it survived.
    if (current) {
        auto it = rowOf.find(current.get());
        if (it != rowOf.end() && it->second != SIZE_MAX) {
            rows.erase(std::find(rows.begin(), rows.end(), it->second));
            rows.push_back(it->second);
        }
    }
    selectRows(rows);
}

void ViewController::Private::reloadTable()
{
    if (static_cast<std::size_t>(model->rowCount()) != lists.einnahmen().size())
        resetKeepingSelection([] {});
    else
        model->reload();
}

void ViewController::Private::selectionDidChange()
{
    const auto rows = selectedRows();
    rebuildSelectionSummary();
    selectedEinnahme = rows.size() == 1 ? model->entryAt(static_cast<int>(rows.front())) : nullptr;
    DetailViewController* detail = detailPanel();
    if (detail) {
        detail->setSelectedEinnahme(selectedEinnahme);
        detail->updateDetailView();
    }
    NotificationCenter::defaultCenter().post(kTableViewUpdated);
    if (rows.empty() && detail) {
        detail->setSelectedEinnahme(nullptr);
        detail->setBoxOpacity(0.0);
    }
}

void ViewController::Private::rebuildSelectionSummary()
{
    summary->showSelection(lists.einnahmen(), selectedRows());
}

DetailViewController* ViewController::Private::detailPanel() const
{
    return split ? split->detailViewController() : nullptr;
}

void ViewController::viewWillAppear()
{
    d_->structuralChange([this] {
        d_->reloadTable();
        if (!d_->lists.einnahmen().empty())
            d_->selectRows({ 0 });
    });
}

void ViewController::updateTableView()
{
    const auto row = d_->selectedRow();
    if (!row) {
        d_->structuralChange([this] { d_->reloadTable(); });
        return;
    }
    const EinnahmePtr entry = d_->model->entryAt(static_cast<int>(*row));
    d_->structuralChange([&] {
        d_->reloadTable();
        if (const auto moved = d_->lists.rowOf(entry.get()))
            d_->selectRows({ *moved });
    });
}

// --- editing in cells ----------------------------------------------------------

bool ViewController::Private::cellViewEdited(int row, EntryColumn::Id column, const QVariant& value)
{
    if (row < 0 || static_cast<std::size_t>(row) >= lists.einnahmen().size())
        return false;
    const EinnahmePtr entry = lists.einnahmen()[static_cast<std::size_t>(row)];

    if (CellEdit::isTextField(column))
        diagnosticLine(CellEdit::diagnosticText(row, column, value.toString()));

    const auto outcome = CellEdit::apply(*entry, column, value);
    if (outcome == CellEdit::Outcome::Refused) {
        playSound("Basso");
        return false;
    }
    if (outcome == CellEdit::Outcome::Dropped)
        return false;

    rebuildSelectionSummary();
    if (!selectedRows().empty()) {
        if (split)
            split->showEntryInDetailView(selectedEinnahme);
        emit q->changeDone();
        NotificationCenter::defaultCenter().post(kTableViewUpdated);
    }
    return outcome == CellEdit::Outcome::Stored;
}

// --- list commands -------------------------------------------------------------

void ViewController::addEntry()
{
    d_->structuralChange([this] {
        const auto row = d_->lists.einnahmen().size();
        d_->model->insertEntries(static_cast<int>(row), 1, [this] { d_->lists.addEntry(); });
        d_->selectRows({ row });
        d_->table->scrollTo(d_->model->index(static_cast<int>(row), 0));
    });
    emit changeDone();
}

void ViewController::duplicateEntry()
{
    const std::size_t count = d_->lists.einnahmen().size();
    if (!d_->selectedRow() && count > 0)
        d_->structuralChange([&] { d_->selectRows({ count - 1 }); });
    const auto source = EntryLists::duplicateSourceRow(d_->selectedRow(), count);
    if (!source)
        return;
    d_->insertDuplicate(*source);
}

void ViewController::duplicateRow(int row)
{
    if (row < 0 || static_cast<std::size_t>(row) >= d_->lists.einnahmen().size())
        return;
    d_->insertDuplicate(static_cast<std::size_t>(row));
}

void ViewController::Private::insertDuplicate(std::size_t row)
{
    structuralChange([&] {
        const int copyRow = static_cast<int>(row) + 1;
        model->insertEntries(copyRow, 1, [&] { lists.duplicate(row); });
        selectRows({ row + 1 });
        table->scrollTo(model->index(copyRow, 0));
    });
    emit q->changeDone();
}

void ViewController::deleteEntries()
{
    auto rows = d_->selectedRows();
    if (rows.empty())
        return;
    const QString question = QString::fromStdString(EntryLists::deleteConfirmationText(rows.size()));
    if (!Dialogs::instance().confirmDelete(this, question)) {
        d_->structuralChange([this] { d_->reloadTable(); });
        return;
    }
    d_->pushDeletion(std::move(rows));
}

void ViewController::deleteRow(int row)
{
    if (row < 0 || static_cast<std::size_t>(row) >= d_->lists.einnahmen().size())
        return;
    const QString question = QString::fromStdString(EntryLists::deleteConfirmationText(1));
    if (!Dialogs::instance().confirmDelete(this, question))
        return;
    d_->pushDeletion({ static_cast<std::size_t>(row) });
}

void ViewController::Private::pushDeletion(std::vector<std::size_t> rows)
{
    auto* command = new DeleteEntriesCommand(q, *this, std::move(rows));
    if (undoStack) {
        undoStack->push(command); // runs the deletion
        return;
    }
    command->redo();
    delete command;
}

DeletionRecord ViewController::Private::deleteRows(const std::vector<std::size_t>& rows)
{
    // Few blocks of neighbouring rows go out block by block, so that the table
    // keeps its scroll position and selection by itself; many go out at once.
    std::vector<std::size_t> valid;
    for (std::size_t row : rows)
        if (row < lists.einnahmen().size())
            valid.push_back(row);
    std::sort(valid.begin(), valid.end(), std::greater<>());
    valid.erase(std::unique(valid.begin(), valid.end()), valid.end());

    std::vector<std::pair<std::size_t, std::size_t>> blocks; // (first, last), highest first
    for (std::size_t row : valid) {
        if (!blocks.empty() && blocks.back().first == row + 1)
            blocks.back().first = row;
        else
            blocks.emplace_back(row, row);
    }

    DeletionRecord record;
    structuralChange([&] {
        if (blocks.size() > 8) {
            resetKeepingSelection([&] { record = lists.deleteRows(valid); });
            return;
        }
        EinnahmeList removed;
        for (const auto& [first, last] : blocks) {
            std::vector<std::size_t> blockRows;
            for (std::size_t row = last + 1; row-- > first;)
                blockRows.push_back(row);
            model->removeEntries(static_cast<int>(first), static_cast<int>(last - first + 1), [&] {
                const DeletionRecord part = lists.deleteRows(blockRows);
                removed.insert(removed.end(), part.entries().begin(), part.entries().end());
            });
        }
        record = DeletionRecord(std::move(removed));
    });
    return record;
}

void ViewController::Private::undoDeletion(const DeletionRecord& record)
{
    structuralChange([&] {
        const int first = static_cast<int>(lists.einnahmen().size());
        std::vector<std::size_t> rows;
        model->insertEntries(first, static_cast<int>(record.size()), [&] { rows = lists.undoDeletion(record); });
        model->reload();
        selectRows(rows);
        if (const auto row = selectedRow())
            table->scrollTo(model->index(static_cast<int>(*row), 0));
    });
}

void ViewController::Private::redoDeletion(const DeletionRecord& record)
{
    structuralChange([&] { resetKeepingSelection([&] { lists.redoDeletion(record); }); });
}

void ViewController::Private::contextMenu(const QPoint& position)
{
    const QModelIndex index = table->indexAt(position);
    if (!index.isValid())
        return;
    const int row = index.row();
    QMenu menu(table);
    QAction* duplicate = menu.addAction(QStringLiteral("Duplizieren"));
    QAction* remove = menu.addAction(QStringLiteral("Loeschen"));
    QAction* chosen = menu.exec(table->viewport()->mapToGlobal(position));
    if (chosen == duplicate)
        q->duplicateRow(row);
    else if (chosen == remove)
        q->deleteRow(row);
}

// --- editors -----------------------------------------------------------------

void ViewController::handleDoubleClick(const QModelIndex& index)
{
    // Below the last row there is no row and nothing opens.
    if (!index.isValid() || index.row() < 0)
        return;
    const auto row = d_->selectedRow();
    if (!row)
        return;
    const EinnahmePtr source = d_->model->entryAt(static_cast<int>(*row));
    if (!source)
        return;
    // The copy rule appends " Kopie"; the editor's working copy keeps the name.
    EinnahmePtr workingCopy = source->copy();
    workingCopy->setName(source->name());
    emit splitBookingEditorRequested(workingCopy);
}

void ViewController::initiateSerialTransactionController()
{
    const auto row = d_->selectedRow();
    if (!row)
        return;
    emit serialTransactionRequested(d_->lists.einnahmen(), static_cast<int>(*row));
}

} // namespace saldo::gui
