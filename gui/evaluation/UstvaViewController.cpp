#include "evaluation/UstvaViewController.h"

#include "app/Document.h"
#include "evaluation/FormTableModel.h"
#include "evaluation/LedgerWorker.h"
#include "evaluation/ListedItemsView.h"
#include "evaluation/UstvaTables.h"
#include "platform/Calendar.h"
#include "tax/TaxSettings.h"
#include "tax/UstvaForm.h"

#include <QComboBox>
#include <QDate>
#include <QFileInfo>
#include <QHeaderView>
#include <QLabel>
#include <QTabWidget>
#include <QTableView>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>

namespace saldo::gui {

using namespace saldo::tax;

// What one evaluation works out, on the worker: the form of the period, or
// the Kleinunternehmer's limits of its year.
struct UstvaViewController::Evaluation {
    TaxPeriod period;
    std::optional<UstvaResult> ustva;
    std::optional<KleinunternehmerResult> kleinunternehmer;
};

namespace {
// The chooser's spans as first and last month: the months, the quarters, the year.
int spanKey(int first, int last)
{
    return first * 100 + last;
}
} // namespace

UstvaViewController::UstvaViewController(Document& document, UserDefaults& defaults, QWidget* parent)
    : TaxFormWindow(document, QStringLiteral("Umsatzsteuer-Voranmeldung"), parent)
    , defaults_(defaults)
    , period_(defaultPeriod())
{
    setObjectName(QStringLiteral("UstvaViewController"));

    // The period chooser.
    years_ = new QComboBox(this);
    years_->setObjectName(QStringLiteral("years"));
    for (int year : UstvaForm::years())
        years_->addItem(QString::number(year), year);
    spans_ = new QComboBox(this);
    spans_->setObjectName(QStringLiteral("periods"));
    for (int month = 1; month <= 12; ++month)
        spans_->addItem(QString::fromUtf8(TaxPeriod::monthName(month)), spanKey(month, month));
    for (int quarter = 1; quarter <= 4; ++quarter)
        spans_->addItem(QStringLiteral("%1. Quartal").arg(quarter), spanKey(quarter * 3 - 2, quarter * 3));
    spans_->addItem(QStringLiteral("Ganzes Jahr"), spanKey(1, 12));
    years_->setCurrentIndex(years_->findData(period_.year()));
    spans_->setCurrentIndex(spans_->findData(spanKey(period_.firstMonth(), period_.lastMonth())));
    auto* chooserLabel = new QLabel(QStringLiteral("&Zeitraum:"), this);
    chooserLabel->setBuddy(spans_);

    // The lists below the form.
    nichtZugeordnet_ = new ListedItemsView(QStringLiteral("nicht zugeordnet"), this);
    nichtZugeordnet_->setObjectName(QStringLiteral("nichtZugeordnet"));
    nichtTeil_ = new ListedItemsView(QStringLiteral("nicht Teil der Voranmeldung"), this);
    nichtTeil_->setObjectName(QStringLiteral("nichtTeil"));
    nichtCentgenau_ = new ListedItemsView(QStringLiteral("zugeordnet, aber nicht centgenau"), this);
    nichtCentgenau_->setObjectName(QStringLiteral("nichtCentgenau"));
    for (ListedItemsView* list : { nichtZugeordnet_, nichtTeil_, nichtCentgenau_ })
        addList(list);
    lists_->setTabVisible(lists_->indexOf(nichtCentgenau_), false);

    // The form as high as its lines, the lists below it taking the rest.
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(chooserRow(chooserLabel, { spans_, years_ }));
    layout->addWidget(heading_);
    layout->addWidget(formView_);
    layout->addWidget(notes_);
    layout->addWidget(lists_, 1);
    layout->addLayout(
        buttonRow(QStringLiteral("Saldo sendet nichts an das Finanzamt: bitte die Werte in ELSTER eintragen.")));

    connect(years_, &QComboBox::currentIndexChanged, this, &UstvaViewController::choosePeriod);
    connect(spans_, &QComboBox::currentIndexChanged, this, &UstvaViewController::choosePeriod);
    resize(980, 840);

    auto* ledgerWorker = new LedgerWorker(
        document_,
        [this] {
            auto evaluation = std::make_shared<Evaluation>();
            evaluation->period = period_;
            pending_ = evaluation;
            const UstvaForm* form = UstvaForm::forYear(period_.year());
            const bool klein = TaxSettings::isKleinunternehmer(defaults_);
            return [evaluation, form, klein](const EinnahmeList& entries, const SnapshotGate& gate) {
                if (klein)
                    evaluation->kleinunternehmer = KleinunternehmerCheck::check(entries, *form, &gate);
                else
                    evaluation->ustva = UstvaCalculation::calculate(entries, evaluation->period, *form, &gate);
            };
        },
        this);
    setWorker(ledgerWorker);
    connect(ledgerWorker, &LedgerWorker::evaluated, this, &UstvaViewController::showEvaluation);
    settingsObserver_ = NotificationCenter::defaultCenter().addObserver(
        TaxSettings::kChangedNotification, [this] { worker().request(); });
    worker().request();
}

UstvaViewController::~UstvaViewController()
{
    NotificationCenter::defaultCenter().removeObserver(settingsObserver_);
}

TaxPeriod UstvaViewController::defaultPeriod() const
{
    // The span of the years Saldo has a form for, between local midnights:
    // one comparison per entry, no calendar on the way.
    const std::vector<int> years = UstvaForm::years();
    const double first = TaxPeriod::months(years.front(), 1, 12)->start();
    const double end = TaxPeriod::months(years.back(), 1, 12)->end();
    double latest = -INFINITY;
    for (const EinnahmePtr& entry : document_.backupEinnahmen()) {
        const double datum = entry->datum();
        if (datum > latest && datum >= first && datum < end)
            latest = datum;
    }
    int year = years.back();
    int month = 1;
    const Calendar::Fields fields = Calendar::localFields(latest);
    if (std::isfinite(latest) && UstvaForm::forYear(fields.year)) {
        year = fields.year;
        month = fields.month;
    } else {
        const int today = QDate::currentDate().year();
        for (int y : years)
            if (y <= today)
                year = y;
    }
    const int quarter = (month - 1) / 3 + 1;
    return *TaxPeriod::months(year, quarter * 3 - 2, quarter * 3);
}

void UstvaViewController::setPeriod(const TaxPeriod& period)
{
    years_->setCurrentIndex(years_->findData(period.year()));
    spans_->setCurrentIndex(spans_->findData(spanKey(period.firstMonth(), period.lastMonth())));
    choosePeriod();
}

void UstvaViewController::choosePeriod()
{
    const int span = spans_->currentData().toInt();
    const std::optional<TaxPeriod> period = TaxPeriod::months(years_->currentData().toInt(), span / 100, span % 100);
    if (!period || period->text() == period_.text())
        return;
    period_ = *period;
    worker().request();
}

void UstvaViewController::showEvaluation()
{
    const std::shared_ptr<Evaluation> evaluation = std::move(pending_);
    // An evaluation of a period chosen away from: the one asked for follows.
    if (!evaluation || evaluation->period.text() != period_.text())
        return;
    busy_->setVisible(worker().isRunning());
    ustva_ = std::move(evaluation->ustva);
    kleinunternehmer_ = std::move(evaluation->kleinunternehmer);
    QStringList notes;
    int stretched = 0; // the column that takes the room left: the label, the result
    if (ustva_) {
        heading_->setText(QStringLiteral("Umsatzsteuer-Voranmeldung %1 (Formular %2)")
                              .arg(QString::fromStdString(period_.germanName()))
                              .arg(ustva_->form->year));
        UstvaTables::showForm(*formModel_, *ustva_);
        notes = UstvaTables::formNotes(*ustva_);
        nichtZugeordnet_->setTitle(QStringLiteral("nicht zugeordnet"));
        nichtZugeordnet_->setItems(ustva_->nichtZugeordnet);
        nichtTeil_->setItems(ustva_->nichtTeil);
        nichtCentgenau_->setItems(ustva_->nichtCentgenau);
        lists_->setTabVisible(lists_->indexOf(nichtTeil_), true);
        lists_->setTabVisible(lists_->indexOf(nichtCentgenau_), !ustva_->nichtCentgenau.empty());
        spans_->setEnabled(true);
        stretched = 2;
    } else if (kleinunternehmer_) {
        heading_->setText(QStringLiteral("Kleinunternehmer (§ 19 UStG): Einnahmen %1").arg(kleinunternehmer_->year));
        UstvaTables::showKleinunternehmer(*formModel_, *kleinunternehmer_);
        notes = UstvaTables::kleinunternehmerNotes(*kleinunternehmer_);
        nichtZugeordnet_->setTitle(QStringLiteral("nicht gezaehlt"));
        nichtZugeordnet_->setItems(kleinunternehmer_->notCounted);
        lists_->setTabVisible(lists_->indexOf(nichtTeil_), false);
        lists_->setTabVisible(lists_->indexOf(nichtCentgenau_), false);
        // Only the year counts.
        spans_->setEnabled(false);
        stretched = 3;
    }
    QHeaderView* header = formView_->horizontalHeader();
    for (int column = 0; column < formModel_->columnCount(); ++column)
        header->setSectionResizeMode(
            column, column == stretched ? QHeaderView::Stretch : QHeaderView::ResizeToContents);
    formView_->resizeRowsToContents();
    // The whole form without scrolling, as far as the screen allows.
    int height = header->height() + 2 * formView_->frameWidth();
    for (int row = 0; row < formModel_->rowCount(); ++row)
        height += formView_->rowHeight(row);
    formView_->setFixedHeight(std::min(height, 420));
    notes_->setText(notes.join(QStringLiteral("\n")));
}

QString UstvaViewController::pdfFileName() const
{
    return QStringLiteral("%1 Umsatzsteuer-Voranmeldung %2.pdf")
        .arg(QFileInfo(document_.displayName()).completeBaseName(),
            QString::fromStdString(kleinunternehmer_ ? std::to_string(period_.year()) : period_.text()));
}

} // namespace saldo::gui
