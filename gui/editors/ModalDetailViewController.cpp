#include "editors/ModalDetailViewController.h"

#include "app/Document.h"
#include "editors/EntryForm.h"
#include "editors/SplitBookingTableModel.h"
#include "editors/SplitBookingWriteBack.h"
#include "editors/SplitBookings.h"
#include "entrylist/EntryTableSetup.h"
#include "entrylist/ViewController.h"
#include "model/Kategorien.h"
#include "platform/DateField.h"
#include "platform/DateTimes.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QPushButton>
#include <QTableView>
#include <QVBoxLayout>

namespace saldo::gui {

ModalDetailViewController::ModalDetailViewController(Document& document, const UserDefaults& defaults,
    const ViewController* presenter, const EinnahmePtr& source, QWidget* parent)
    : QDialog(parent)
    , document_(document)
    , presenter_(presenter)
    , copy_(source ? SplitBookings::workingCopy(*source) : nullptr)
{
    setObjectName(QStringLiteral("ModalDetailViewController"));
    setWindowTitle(QStringLiteral("Splitbuchung bearbeiten"));
    setWindowModality(Qt::WindowModal);
    setFixedSize(kWidth, kHeight);

    form_ = new EntryForm(this);
    form_->setStatusImageVisible(true);
    if (const auto kategorien = Kategorien::storedList(defaults))
        form_->setKategorien(*kategorien);

    model_ = new SplitBookingTableModel(copy_, defaults, this);
    model_->setChangeShared([this](Einnahme& entry, const std::function<void(Einnahme&)>& change) {
        document_.changeInPlace(entry, change);
    });
    setUpTable();

    add_ = new QPushButton(QStringLiteral("&Hinzufuegen"), this);
    add_->setObjectName(QStringLiteral("addChildEntry"));
    remove_ = new QPushButton(QStringLiteral("&Entfernen"), this);
    remove_->setObjectName(QStringLiteral("removeChildEntry"));
    cancel_ = new QPushButton(QStringLiteral("Abbrechen"), this);
    cancel_->setObjectName(QStringLiteral("cancel"));
    ok_ = new QPushButton(QStringLiteral("OK"), this);
    ok_->setObjectName(QStringLiteral("ok"));
    ok_->setDefault(true);
    for (QPushButton* button : { add_, remove_, cancel_ })
        button->setAutoDefault(false);

    auto* buttons = new QHBoxLayout;
    buttons->addWidget(add_);
    buttons->addWidget(remove_);
    buttons->addStretch(1);
    buttons->addWidget(cancel_);
    buttons->addWidget(ok_);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(8, 8, 8, 8);
    layout->setSpacing(6);
    layout->addWidget(form_);
    layout->addWidget(table_, 1);
    layout->addLayout(buttons);

    connect(form_, &EntryForm::textFieldEdited, this, &ModalDetailViewController::textFieldEdited);
    connect(
        form_, &EntryForm::popUpButtonChangedSelection, this, &ModalDetailViewController::popUpButtonChangedSelection);
    connect(form_, &EntryForm::datePickerValueChanged, this, &ModalDetailViewController::datePickerValueChanged);
    connect(form_, &EntryForm::checkBoxValueChanged, this, &ModalDetailViewController::checkBoxValueChanged);
    connect(add_, &QPushButton::clicked, this, &ModalDetailViewController::addChildEntry);
    connect(remove_, &QPushButton::clicked, this, &ModalDetailViewController::removeChildEntry);
    for (QPushButton* button : { cancel_, ok_ })
        connect(button, &QPushButton::clicked, this,
            [this, button] { dismissTransactionViewControllerWithSender(button); });

    // Every change of a split booking's gross amount or kind, every one added
    // or removed, shows in the form's gross field.
    connect(model_, &QAbstractItemModel::dataChanged, this, &ModalDetailViewController::showChildTransactionsSum);
    connect(model_, &QAbstractItemModel::rowsInserted, this, &ModalDetailViewController::showChildTransactionsSum);
    connect(model_, &QAbstractItemModel::rowsRemoved, this, &ModalDetailViewController::showChildTransactionsSum);
    // The source's own split bookings changed: kept even without "OK", so saved.
    connect(model_, &SplitBookingTableModel::sharedSplitBookingEdited, &document_, &Document::noteChangeOutsideVerbs);

    refillForm();
    form_->setFocus();
}

ModalDetailViewController::~ModalDetailViewController()
{
    // Controls that lose the focus while the dialog goes away send no edits.
    form_->disconnect(this);
}

void ModalDetailViewController::setUpTable()
{
    table_ = new QTableView(this);
    table_->setObjectName(QStringLiteral("tableView"));
    table_->setModel(model_);
    EntryTableSetup::apply(table_, SplitBookingTableModel::kColumnCount, &SplitBookingTableModel::columnAt);
    table_->setSelectionMode(QAbstractItemView::SingleSelection);
    table_->setMinimumHeight(80);
    // A double-click edits a cell, as in the entry table.
    table_->setEditTriggers(table_->editTriggers() | QAbstractItemView::DoubleClicked);
    // The window keeps its fixed size: name, kind and gross amount come first
    // and fit its width, the other columns follow behind them.
    QHeaderView* columns = table_->horizontalHeader();
    const struct {
        EntryColumn::Id column;
        int width;
    } first[] = { { EntryColumn::Name, 150 }, { EntryColumn::Art, 90 }, { EntryColumn::Brutto, 80 } };
    for (int place = 0; place < 3; ++place) {
        const int position = SplitBookingTableModel::positionOf(first[place].column);
        columns->moveSection(columns->visualIndex(position), place);
        columns->resizeSection(position, first[place].width);
    }
}

void ModalDetailViewController::refillForm()
{
    form_->fill(copy_.get());
    showChildTransactionsSum();
}

void ModalDetailViewController::showChildTransactionsSum()
{
    // Without split bookings (the last one removed) the field keeps what it
    // showed and can be typed in again.
    form_->showDerivedBrutto(copy_ ? SplitBookings::childTransactionsSum(*copy_) : std::nullopt);
}

void ModalDetailViewController::textFieldEdited()
{
    if (!form_->nameLongEnough())
        return;
    if (copy_) {
        FormEdit::apply(*copy_, form_->texts());
        // Amounts that could not be taken show the copy's values again.
        refillForm();
    }
    form_->markTaken();
}

void ModalDetailViewController::popUpButtonChangedSelection(QComboBox* sender)
{
    if (!copy_ || !sender || sender->currentIndex() < 0)
        return;
    const QString id = sender->objectName();
    if (id == QLatin1String(EntryForm::kArtPopUpId))
        copy_->setArt(sender->currentData().toString().toStdString());
    else if (id == QLatin1String(EntryForm::kKategoriePopUpId))
        copy_->setKategorie(sender->currentText().toStdString());
    refillForm();
}

void ModalDetailViewController::datePickerValueChanged()
{
    if (copy_)
        copy_->setDatum(DateTimes::toReferenceSeconds(form_->datumPicker()->dateTime()));
}

void ModalDetailViewController::checkBoxValueChanged(QCheckBox* sender)
{
    if (!copy_ || !sender)
        return;
    // The setters clear the other flag before setting one.
    if (sender->objectName() == QLatin1String(EntryForm::kInnergemCheckBoxId))
        copy_->setInnergemeinschaftlicherErwerb(sender->isChecked());
    else
        copy_->setIsNonEU(sender->isChecked());
    refillForm();
}

void ModalDetailViewController::abandonCellEdit()
{
    // An editor still open (the button was reached by its mnemonic, without
    // taking the focus) is closed without handing its value over.
    const QModelIndex current = table_->currentIndex();
    if (current.isValid() && table_->indexWidget(current))
        table_->closePersistentEditor(current);
}

void ModalDetailViewController::addChildEntry()
{
    abandonCellEdit();
    const int row = model_->addChildEntry();
    if (row < 0)
        return;
    table_->selectRow(row);
    table_->scrollTo(model_->index(row, 0));
}

void ModalDetailViewController::removeChildEntry()
{
    abandonCellEdit();
    const QModelIndexList selected = table_->selectionModel()->selectedRows();
    if (selected.size() == 1)
        model_->removeChildEntry(selected.front().row());
}

void ModalDetailViewController::dismissTransactionViewControllerWithSender(QAbstractButton* sender)
{
    if (!sender || sender->objectName() != QLatin1String("ok")) {
        reject();
        return;
    }
    if (presenter_ && copy_) {
        // Derives the copy's kind and gross amount from its split bookings.
        if (const auto plan = SplitBookingWriteBack::plan(document_.einnahmen(), presenter_->selectedRows(), copy_))
            document_.replaceEntry(plan->source, plan->replacement);
    }
    accept();
}

} // namespace saldo::gui
