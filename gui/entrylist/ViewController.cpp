#include "entrylist/ViewController.h"

#include "model/Kategorien.h"

#include <QTableView>
#include <QUndoStack>
#include <QVBoxLayout>

namespace saldo::gui {

class ViewController::Private {
public:
    explicit Private(UserDefaults& d)
        : defaults(d)
    {
    }
    UserDefaults& defaults;
    EinnahmeList einnahmen;
    EinnahmeList backupEinnahmen;
    EinnahmePtr selectedEinnahme;
    QTableView* tableView = nullptr;
    SplitViewController* split = nullptr;
    QUndoStack* undoStack = nullptr;
};

ViewController::ViewController(UserDefaults& defaults, QWidget* parent)
    : QWidget(parent)
    , d_(new Private(defaults))
{
    Kategorien::storeDefaultKategorienIfMissing(defaults);
    d_->tableView = new QTableView(this);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(d_->tableView);
    d_->einnahmen.push_back(Einnahme::make("Neu", "", 0.0f, 19.0f));
    d_->backupEinnahmen = d_->einnahmen;
}

ViewController::~ViewController()
{
    delete d_;
}

const EinnahmeList& ViewController::einnahmen() const { return d_->einnahmen; }
const EinnahmeList& ViewController::backupEinnahmen() const { return d_->backupEinnahmen; }

void ViewController::setEntries(const EinnahmeList& entries)
{
    d_->einnahmen = entries;
    d_->backupEinnahmen = entries;
}

EinnahmePtr ViewController::selectedEinnahme() const { return d_->selectedEinnahme; }
QTableView* ViewController::tableView() const { return d_->tableView; }

void ViewController::viewWillAppear() { }
void ViewController::updateTableView() { }
void ViewController::setSplitViewController(SplitViewController* split) { d_->split = split; }
void ViewController::setUndoStack(QUndoStack* undoStack) { d_->undoStack = undoStack; }

void ViewController::addEntry() { }
void ViewController::duplicateEntry() { }
void ViewController::deleteEntries() { }
void ViewController::handleDoubleClick(const QModelIndex&) { }
void ViewController::initiateSerialTransactionController() { }

}  // namespace saldo::gui
