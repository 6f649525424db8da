#include "evaluation/UstvaViewController.h"

#include "app/Document.h"
#include "evaluation/FormTableModel.h"
#include "evaluation/LedgerWorker.h"
#include "evaluation/ListedItemsModel.h"
#include "evaluation/ListedItemsView.h"
#include "evaluation/UstvaTables.h"
#include "platform/Calendar.h"
#include "printing/FormPdf.h"
#include "printing/PdfFile.h"
#include "tax/TaxSettings.h"
#include "tax/UstvaForm.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QDate>
#include <QDir>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
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
    : QWidget(parent, Qt::Window)
    , document_(document)
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
    busy_ = new QLabel(QStringLiteral("wird berechnet…"), this);
    busy_->setEnabled(false);
    auto* chooser = new QHBoxLayout;
    chooser->addWidget(chooserLabel);
    chooser->addWidget(spans_);
    chooser->addWidget(years_);
    chooser->addSpacing(12);
    chooser->addWidget(busy_);
    chooser->addStretch();

    heading_ = new QLabel(this);
    QFont headingFont = heading_->font();
    headingFont.setBold(true);
    headingFont.setPointSizeF(headingFont.pointSizeF() * 1.2);
    heading_->setFont(headingFont);

    // The form.
    formModel_ = new FormTableModel(this);
    formView_ = new QTableView(this);
    formView_->setObjectName(QStringLiteral("form"));
    formView_->setModel(formModel_);
    formView_->setSelectionBehavior(QAbstractItemView::SelectRows);
    formView_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    formView_->setWordWrap(true);
    formView_->setShowGrid(false);
    formView_->verticalHeader()->hide();
    notes_ = new QLabel(this);
    notes_->setObjectName(QStringLiteral("notes"));
    notes_->setWordWrap(true);
    notes_->setTextFormat(Qt::PlainText);
    notes_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    // The lists below it.
    nichtZugeordnet_ = new ListedItemsView(QStringLiteral("nicht zugeordnet"), this);
    nichtZugeordnet_->setObjectName(QStringLiteral("nichtZugeordnet"));
    nichtTeil_ = new ListedItemsView(QStringLiteral("nicht Teil der Voranmeldung"), this);
    nichtTeil_->setObjectName(QStringLiteral("nichtTeil"));
    nichtCentgenau_ = new ListedItemsView(QStringLiteral("zugeordnet, aber nicht centgenau"), this);
    nichtCentgenau_->setObjectName(QStringLiteral("nichtCentgenau"));
    // In tabs, each titled with its number of items.
    lists_ = new QTabWidget(this);
    lists_->setObjectName(QStringLiteral("lists"));
    for (ListedItemsView* list : { nichtZugeordnet_, nichtTeil_, nichtCentgenau_ }) {
        list->setTitleShown(false);
        lists_->addTab(list, list->titleWithCount());
        connect(list, &ListedItemsView::titleChanged, lists_,
            [this, list](const QString& title) { lists_->setTabText(lists_->indexOf(list), title); });
        connect(list, &ListedItemsView::entryActivated, this, [this](std::size_t top) {
            const EinnahmeList& evaluated = worker_->snapshot();
            if (top < evaluated.size())
                emit entryActivated(evaluated[top]);
        });
    }
    lists_->setTabVisible(lists_->indexOf(nichtCentgenau_), false);
    // What the user does with the figures.
    auto* elster = new QLabel(
        QStringLiteral("Saldo sendet nichts an das Finanzamt: bitte die Werte in ELSTER eintragen."), this);
    elster->setEnabled(false);
    auto* copy = new QPushButton(QStringLiteral("&Kopieren"), this);
    copy->setObjectName(QStringLiteral("kopieren"));
    copy->setToolTip(QStringLiteral("Die Tabelle tabulatorgetrennt in die Zwischenablage legen"));
    connect(copy, &QPushButton::clicked, this, &UstvaViewController::kopieren);
    auto* pdf = new QPushButton(QStringLiteral("Als &PDF sichern…"), this);
    pdf->setObjectName(QStringLiteral("alsPdfSichern"));
    connect(pdf, &QPushButton::clicked, this, &UstvaViewController::alsPdfSichern);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(elster, 1);
    buttons->addWidget(copy);
    buttons->addWidget(pdf);

    // The form as high as its lines, the lists below it taking the rest.
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(chooser);
    layout->addWidget(heading_);
    layout->addWidget(formView_);
    layout->addWidget(notes_);
    layout->addWidget(lists_, 1);
    layout->addLayout(buttons);

    auto* close = new QAction(this);
    close->setShortcuts({ QKeySequence(Qt::CTRL | Qt::Key_W), QKeySequence(Qt::Key_Escape) });
    connect(close, &QAction::triggered, this, &QWidget::close);
    addAction(close);

    connect(years_, &QComboBox::currentIndexChanged, this, &UstvaViewController::choosePeriod);
    connect(spans_, &QComboBox::currentIndexChanged, this, &UstvaViewController::choosePeriod);
    connect(&document_, &Document::filePathChanged, this, &UstvaViewController::updateTitle);
    updateTitle();
    resize(980, 840);

    worker_ = new LedgerWorker(
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
    connect(worker_, &LedgerWorker::started, busy_, &QWidget::show);
    connect(worker_, &LedgerWorker::evaluated, this, &UstvaViewController::showEvaluation);
    settingsObserver_ = NotificationCenter::defaultCenter().addObserver(
        TaxSettings::kChangedNotification, [this] { worker_->request(); });
    worker_->request();
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
    worker_->request();
}

void UstvaViewController::updateTitle()
{
    setWindowTitle(QStringLiteral("Umsatzsteuer-Voranmeldung – %1").arg(document_.displayName()));
}

void UstvaViewController::showEvaluation()
{
    const std::shared_ptr<Evaluation> evaluation = std::move(pending_);
    // An evaluation of a period chosen away from: the one asked for follows.
    if (!evaluation || evaluation->period.text() != period_.text())
        return;
    busy_->setVisible(worker_->isRunning());
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

void UstvaViewController::kopieren()
{
    QApplication::clipboard()->setText(formModel_->tabSeparated());
}

bool UstvaViewController::alsPdfSichern()
{
    const QString name
        = QStringLiteral("%1 Umsatzsteuer-Voranmeldung %2.pdf")
              .arg(QFileInfo(document_.displayName()).completeBaseName(),
                  QString::fromStdString(kleinunternehmer_ ? std::to_string(period_.year()) : period_.text()));
    const QString folder = document_.isUntitled() ? QDir::homePath() : QFileInfo(document_.filePath()).path();
    return PdfFile::saveWithDialog(this, QDir(folder).filePath(name), [this] {
        FormPdf::Page page;
        page.title = heading_->text();
        page.subtitle = QStringLiteral("%1, erstellt am %2")
                            .arg(document_.displayName(), QDate::currentDate().toString(QStringLiteral("dd.MM.yyyy")));
        page.form = formModel_;
        page.notes = notes_->text().split(QLatin1Char('\n'), Qt::SkipEmptyParts);
        for (const ListedItemsView* list : { nichtZugeordnet_, nichtTeil_, nichtCentgenau_ })
            if (lists_->isTabVisible(lists_->indexOf(list)))
                page.lists << FormPdf::List { list->title(), list->model() };
        page.footer = QStringLiteral("Saldo sendet nichts an das Finanzamt: die Werte sind in ELSTER einzutragen.");
        return FormPdf::render(page);
    });
}

} // namespace saldo::gui
