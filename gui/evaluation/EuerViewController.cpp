#include "evaluation/EuerViewController.h"

#include "app/Document.h"
#include "evaluation/FormTableModel.h"
#include "evaluation/LedgerWorker.h"
#include "evaluation/ListedItemsModel.h"
#include "evaluation/ListedItemsView.h"
#include "tax/EuerEvaluation.h"
#include "tax/EuerReport.h"
#include "tax/LedgerYears.h"
#include "tax/TaxSettings.h"

#include <QComboBox>
#include <QDate>
#include <QFileInfo>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QSplitter>
#include <QTabBar>
#include <QTabWidget>
#include <QTableView>
#include <QVBoxLayout>

#include <algorithm>

namespace saldo::gui {

using namespace saldo::tax;

// What one evaluation works out, on the worker: the ledger's years, the
// year's form (its lists copied out of the entries, so that they outlive the
// snapshot's gate) and the items behind the line asked for.
struct EuerViewController::Evaluation {
    // Asked for: a year (none: the default one) and perhaps a line.
    std::optional<int> chosenYear;
    std::optional<std::size_t> line;
    bool kleinunternehmer = false;
    int thisYear = 0;

    std::vector<int> years;
    int year = 0;
    // The figures of the year's form, when Saldo has one; its lists are empty
    // (they point into the snapshot): the ones below hold them.
    std::optional<EuerResult> result;
    std::vector<ListedItem> nichtZugeordnet;
    std::vector<ListedItem> nichtAbziehbar;
    std::vector<ListedItem> anlagegut;
    std::vector<ListedItem> nichtTeil;
    std::vector<ListedItem> hinweise;
    std::vector<ListedItem> lineItems;
};

namespace {

QString text(const std::string& s)
{
    return QString::fromStdString(s);
}

bool isSum(EuerRole role)
{
    return role == EuerRole::SummeEinnahmen || role == EuerRole::SummeAusgaben || role == EuerRole::Gewinn;
}

// This year when the ledger holds it and Saldo has its form; else the latest
// year of the ledger that has a form; else this year.
int defaultYear(const std::vector<int>& years, int thisYear)
{
    if (std::binary_search(years.begin(), years.end(), thisYear) && EuerForm::forYear(thisYear))
        return thisYear;
    for (auto year = years.rbegin(); year != years.rend(); ++year)
        if (EuerForm::forYear(*year))
            return *year;
    return thisYear;
}

constexpr Qt::Alignment kLeft = Qt::AlignLeft | Qt::AlignVCenter;
constexpr Qt::Alignment kRight = Qt::AlignRight | Qt::AlignVCenter;

} // namespace

EuerViewController::EuerViewController(Document& document, UserDefaults& defaults, QWidget* parent)
    : TaxFormWindow(document, QStringLiteral("Anlage EÜR"), parent)
    , defaults_(defaults)
{
    setObjectName(QStringLiteral("EuerViewController"));

    // The year chooser, filled once the ledger's years are known.
    years_ = new QComboBox(this);
    years_->setObjectName(QStringLiteral("years"));
    years_->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    auto* chooserLabel = new QLabel(QStringLiteral("&Jahr:"), this);
    chooserLabel->setBuddy(years_);

    heading_->setWordWrap(true);
    taxation_ = new QLabel(this);
    taxation_->setWordWrap(true);
    // A double-click, or Enter, on a line: the items behind it.
    connect(formView_, &QTableView::activated, this, [this](const QModelIndex& index) {
        if (index.isValid())
            showItemsBehind(index.row());
    });

    // The lists below the form.
    nichtZugeordnet_ = new ListedItemsView(QStringLiteral("nicht zugeordnet"), this);
    nichtZugeordnet_->setObjectName(QStringLiteral("nichtZugeordnet"));
    nichtAbziehbar_ = new ListedItemsView(QStringLiteral("nicht abziehbar"), this);
    nichtAbziehbar_->setObjectName(QStringLiteral("nichtAbziehbar"));
    anlagegut_ = new ListedItemsView(QStringLiteral("Anlagegut"), this);
    anlagegut_->setObjectName(QStringLiteral("anlagegut"));
    nichtTeil_ = new ListedItemsView(QStringLiteral("nicht Teil der EÜR"), this);
    nichtTeil_->setObjectName(QStringLiteral("nichtTeil"));
    hinweise_ = new ListedItemsView(QStringLiteral("Hinweise"), this);
    hinweise_->setObjectName(QStringLiteral("hinweise"));
    lineItems_ = new ListedItemsView(QString(), this);
    lineItems_->setObjectName(QStringLiteral("lineItems"));
    // Its amounts are the items' shares of the line; there is no reason.
    lineItems_->tableView()->setColumnHidden(ListedItemsModel::Grund, true);
    lineItems_->tableView()->horizontalHeader()->setSectionResizeMode(ListedItemsModel::Name, QHeaderView::Stretch);
    for (ListedItemsView* list : { nichtZugeordnet_, nichtAbziehbar_, anlagegut_, nichtTeil_, hinweise_ })
        addList(list);
    addList(lineItems_, false);
    lists_->setTabVisible(lists_->indexOf(hinweise_), false);
    lists_->setTabVisible(lists_->indexOf(lineItems_), false);
    // Only the line's tab can be closed.
    lists_->setTabsClosable(true);
    for (int tab = 0; tab < lists_->count(); ++tab)
        if (lists_->widget(tab) != lineItems_)
            lists_->tabBar()->setTabButton(tab, QTabBar::RightSide, nullptr);
    connect(lists_, &QTabWidget::tabCloseRequested, this, [this](int tab) {
        if (lists_->widget(tab) == lineItems_)
            closeLineTab();
    });

    // The form and its notes over the lists; the user moves the border.
    auto* form = new QWidget(this);
    auto* formLayout = new QVBoxLayout(form);
    formLayout->setContentsMargins(0, 0, 0, 0);
    formLayout->addWidget(formView_, 1);
    formLayout->addWidget(notes_);
    splitter_ = new QSplitter(Qt::Vertical, this);
    splitter_->setChildrenCollapsible(false);
    splitter_->addWidget(form);
    splitter_->addWidget(lists_);
    splitter_->setStretchFactor(0, 1);
    splitter_->setStretchFactor(1, 1);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(chooserRow(chooserLabel, { years_ }));
    layout->addWidget(heading_);
    layout->addWidget(taxation_);
    layout->addWidget(splitter_, 1);
    layout->addLayout(buttonRow(QStringLiteral("Doppelklick auf eine Zeile: die Buchungen darin. Saldo sendet nichts "
                                               "an das Finanzamt: bitte die Werte in ELSTER eintragen.")));

    connect(years_, &QComboBox::currentIndexChanged, this, &EuerViewController::chooseYear);
    resize(1000, 860);

    auto* ledgerWorker = new LedgerWorker(
        document_,
        [this] {
            auto evaluation = std::make_shared<Evaluation>();
            evaluation->chosenYear = chosenYear_;
            evaluation->line = chosenLine_;
            evaluation->kleinunternehmer = TaxSettings::isKleinunternehmer(defaults_);
            evaluation->thisYear = QDate::currentDate().year();
            pending_ = evaluation;
            return [evaluation](
                       const EinnahmeList& entries, const SnapshotGate& gate) { evaluate(*evaluation, entries, gate); };
        },
        this);
    setWorker(ledgerWorker);
    connect(ledgerWorker, &LedgerWorker::evaluated, this, &EuerViewController::showEvaluation);
    settingsObserver_ = NotificationCenter::defaultCenter().addObserver(
        TaxSettings::kChangedNotification, [this] { worker().request(); });
    worker().request();
}

EuerViewController::~EuerViewController()
{
    NotificationCenter::defaultCenter().removeObserver(settingsObserver_);
}

void EuerViewController::evaluate(Evaluation& evaluation, const EinnahmeList& entries, const SnapshotGate& gate)
{
    evaluation.years = LedgerYears::of(entries, &gate);
    evaluation.year = evaluation.chosenYear.value_or(defaultYear(evaluation.years, evaluation.thisYear));
    const EuerForm* form = EuerForm::forYear(evaluation.year);
    if (!form)
        return;
    EuerResult result = EuerEvaluation::evaluate(entries, *form, evaluation.kleinunternehmer, &gate);
    const auto copy = [&](std::vector<EuerListed>& from, std::vector<ListedItem>& to) {
        to = EuerEvaluation::listedItems(from, entries, &gate);
        from.clear();
    };
    copy(result.nichtZugeordnet, evaluation.nichtZugeordnet);
    copy(result.nichtAbziehbar, evaluation.nichtAbziehbar);
    copy(result.anlagegut, evaluation.anlagegut);
    copy(result.nichtTeil, evaluation.nichtTeil);
    copy(result.hinweise, evaluation.hinweise);
    if (evaluation.line && *evaluation.line < form->lines().size())
        evaluation.lineItems = EuerEvaluation::listedItems(
            EuerEvaluation::itemsBehind(entries, *form, evaluation.kleinunternehmer, *evaluation.line, &gate), entries,
            &gate);
    evaluation.result = std::move(result);
}

void EuerViewController::setYear(int year)
{
    const int index = years_->findData(year);
    if (index >= 0) {
        years_->setCurrentIndex(index);
        return;
    }
    // A year the chooser does not hold yet (the ledger has none of its entries).
    chosenYear_ = year;
    closeLineTab();
    worker().request();
}

void EuerViewController::chooseYear()
{
    const QVariant data = years_->currentData();
    if (!data.isValid() || chosenYear_ == data.toInt())
        return;
    chosenYear_ = data.toInt();
    closeLineTab();
    worker().request();
}

std::optional<std::size_t> EuerViewController::lineOfRow(int row) const
{
    if (row < 0 || static_cast<std::size_t>(row) >= lineOfRow_.size())
        return std::nullopt;
    return lineOfRow_[static_cast<std::size_t>(row)];
}

void EuerViewController::showItemsBehind(int row)
{
    const std::optional<std::size_t> line = lineOfRow(row);
    if (!line || !year_)
        return;
    const EuerLine& shown = EuerForm::forYear(*year_)->lines()[*line];
    chosenLine_ = line;
    lineTabWanted_ = true;
    lineItems_->setTitle(QStringLiteral("Zeile %1, Kz %2").arg(shown.zeile).arg(shown.kennzahl));
    lineItems_->setItems({});
    const int tab = lists_->indexOf(lineItems_);
    lists_->setTabVisible(tab, true);
    lists_->setCurrentWidget(lineItems_);
    // No count until the items are there.
    lists_->setTabText(tab, lineItems_->title() + QStringLiteral(" (…)"));
    worker().request();
}

void EuerViewController::closeLineTab()
{
    chosenLine_.reset();
    lineTabWanted_ = false;
    lineItems_->setItems({});
    lists_->setTabVisible(lists_->indexOf(lineItems_), false);
}

void EuerViewController::showEvaluation()
{
    const std::shared_ptr<Evaluation> evaluation = std::move(pending_);
    // An evaluation of a year or a line chosen away from: the one asked for follows.
    if (!evaluation || evaluation->chosenYear != chosenYear_ || evaluation->line != chosenLine_)
        return;
    busy_->setVisible(worker().isRunning());
    // From now on the year stays what it is, whatever entries come and go.
    chosenYear_ = evaluation->year;
    year_ = evaluation->year;
    showYears(evaluation->years);
    showForm(*evaluation);
}

void EuerViewController::showYears(const std::vector<int>& years)
{
    std::vector<int> shown = years;
    for (int year : { *year_, QDate::currentDate().year() })
        if (!std::binary_search(shown.begin(), shown.end(), year))
            shown.insert(std::upper_bound(shown.begin(), shown.end(), year), year);
    QSignalBlocker blocker(years_);
    years_->clear();
    for (int year : shown)
        years_->addItem(QString::number(year), year);
    years_->setCurrentIndex(years_->findData(*year_));
}

void EuerViewController::showForm(Evaluation& evaluation)
{
    heading_->setText(QStringLiteral("Anlage EÜR %1").arg(evaluation.year));
    lineOfRow_.clear();
    QList<FormTableModel::Row> rows;
    QStringList notes;
    const std::optional<EuerResult>& result = evaluation.result;
    if (result) {
        const EuerForm& form = *result->form;
        taxation_->setText(QStringLiteral("%1. %2 Buchungen im Jahr %3.")
                               .arg(text(EuerReport::taxationNote(result->kleinunternehmer)))
                               .arg(result->itemCount)
                               .arg(form.year()));
        const auto lines = form.lines();
        for (std::size_t i = 0; i < lines.size(); ++i) {
            if (result->cents[i] == 0 && !isSum(lines[i].role))
                continue;
            FormTableModel::Row row;
            const QString label = text(EuerReport::label(form, lines[i]));
            row.cells = { QString::number(lines[i].zeile), label, QString::number(lines[i].kennzahl),
                text(EuerReport::euros(result->cents[i])) };
            row.bold = isSum(lines[i].role);
            row.toolTip = label + QStringLiteral("\nDoppelklick: die Buchungen dieser Zeile");
            rows << row;
            lineOfRow_.push_back(i);
        }
        if (result->reverseChargeCount > 0)
            notes << text(EuerReport::reverseChargeNote(form));
        notes << text(EuerReport::correctionsNote(form));
        if (!evaluation.anlagegut.empty())
            notes << text(EuerReport::geringwertigNote(form));
    } else {
        taxation_->setText(text(EuerForm::missingYearMessage(evaluation.year)));
    }
    formModel_->setTable({ { QStringLiteral("Zeile"), kRight }, { QStringLiteral("Bezeichnung"), kLeft },
                             { QStringLiteral("Kz"), kRight }, { QStringLiteral("Betrag (€)"), kRight } },
        std::move(rows));
    QHeaderView* header = formView_->horizontalHeader();
    for (int column = 0; column < formModel_->columnCount(); ++column)
        header->setSectionResizeMode(column, column == 1 ? QHeaderView::Stretch : QHeaderView::ResizeToContents);
    formView_->resizeRowsToContents();
    notes_->setText(notes.join(QStringLiteral("\n")));
    if (chosenLine_) {
        const auto row = std::find(lineOfRow_.begin(), lineOfRow_.end(), *chosenLine_);
        if (row != lineOfRow_.end())
            formView_->selectRow(static_cast<int>(row - lineOfRow_.begin()));
    }

    const bool hinweise = !evaluation.hinweise.empty();
    nichtZugeordnet_->setItems(std::move(evaluation.nichtZugeordnet));
    nichtAbziehbar_->setItems(std::move(evaluation.nichtAbziehbar));
    anlagegut_->setItems(std::move(evaluation.anlagegut));
    nichtTeil_->setItems(std::move(evaluation.nichtTeil));
    hinweise_->setItems(std::move(evaluation.hinweise));
    lists_->setTabVisible(lists_->indexOf(hinweise_), hinweise);
    if (lineTabWanted_) {
        lineItems_->setItems(std::move(evaluation.lineItems));
        lists_->setTabVisible(lists_->indexOf(lineItems_), true);
    }
    copy_->setEnabled(result.has_value());
    pdf_->setEnabled(result.has_value());
    if (!arranged_ && result)
        arrangeFirstForm();
}

void EuerViewController::arrangeFirstForm()
{
    arranged_ = true;
    // The first list that has items in front.
    for (ListedItemsView* list : { nichtZugeordnet_, nichtAbziehbar_, anlagegut_, nichtTeil_, hinweise_ }) {
        if (list->model()->rowCount() > 0) {
            lists_->setCurrentWidget(list);
            break;
        }
    }
    // The form without scrolling, as far as two thirds of the room allow;
    // the lists below take the rest.
    int form = formView_->horizontalHeader()->sizeHint().height() + 2 * formView_->frameWidth();
    for (int row = 0; row < formModel_->rowCount(); ++row)
        form += formView_->rowHeight(row);
    form += notes_->heightForWidth(splitter_->width()) + 2 * splitter_->handleWidth() + 12;
    const int room = std::max(splitter_->height(), 600);
    const int shown = std::min(form, room * 2 / 3);
    splitter_->setSizes({ shown, room - shown });
}

QString EuerViewController::pdfFileName() const
{
    return QStringLiteral("%1 Anlage EÜR %2.pdf")
        .arg(QFileInfo(document_.displayName()).completeBaseName())
        .arg(year_.value_or(0));
}

QString EuerViewController::pdfSubtitle() const
{
    return TaxFormWindow::pdfSubtitle() + QStringLiteral(". ") + taxation_->text();
}

} // namespace saldo::gui
