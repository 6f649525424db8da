#include "app/DatevExportDialog.h"

#include "app/Document.h"
#include "exchange/DatevExport.h"
#include "exchange/DatevExportSummary.h"
#include "exchange/DatevPeriod.h"
#include "platform/Clock.h"
#include "platform/Dialogs.h"
#include "platform/FileWriteError.h"
#include "platform/FileWriteErrorText.h"
#include "settings/DatevPreferencesPage.h"
#include "settings/DatevSettings.h"
#include "settings/PreferencesViewController.h"
#include "tax/TaxItems.h"

#include <QComboBox>
#include <QDateEdit>
#include <QDialogButtonBox>
#include <QDir>
#include <QEvent>
#include <QFile>
#include <QFileInfo>
#include <QFormLayout>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QTabWidget>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>

namespace saldo::gui {

namespace {
LocalDay dayOf(const QDate& date)
{
    return { date.year(), date.month(), date.day() };
}

// The year of the ledger's latest entry, else this year: the year a user
// hands over is nearly always the last one booked.
int latestYear(const EinnahmeList& entries)
{
    std::optional<ReferenceSeconds> latest;
    for (const EinnahmePtr& entry : entries) {
        if (std::isfinite(entry->datum()) && (!latest || entry->datum() > *latest))
            latest = entry->datum();
    }
    const std::optional<LocalDay> day = latest ? LocalDay::of(*latest) : std::nullopt;
    return day && day->year >= 1000 && day->year <= 9998 ? day->year : QDate::currentDate().year();
}
} // namespace

DatevExportDialog::DatevExportDialog(Document& document, QWidget* parent)
    : QDialog(parent)
    , document_(document)
{
    setObjectName(QStringLiteral("DatevExportDialog"));
    setWindowTitle(QStringLiteral("DATEV-Export"));

    missingSettings_ = new QLabel(this);
    missingSettings_->setObjectName(QStringLiteral("missingSettings"));
    missingSettings_->setWordWrap(true);
    missingSettings_->setStyleSheet(QStringLiteral("color: #b00020"));
    settingsButton_ = new QPushButton(QStringLiteral("&Einstellungen oeffnen…"), this);
    settingsButton_->setAutoDefault(false);
    connect(settingsButton_, &QPushButton::clicked, this, [this] {
        PreferencesViewController* preferences = PreferencesViewController::showPreferences(document_.defaults());
        if (auto* page = preferences->pages()->findChild<DatevPreferencesPage*>())
            preferences->pages()->setCurrentWidget(page);
    });

    // The period: a year, a quarter or a month of a year, or any span of days.
    periodKind_ = new QComboBox(this);
    periodKind_->setObjectName(QStringLiteral("periodKind"));
    periodKind_->addItems(
        { QStringLiteral("Jahr"), QStringLiteral("Quartal"), QStringLiteral("Monat"), QStringLiteral("Von – bis") });
    year_ = new QSpinBox(this);
    year_->setObjectName(QStringLiteral("year"));
    year_->setRange(1000, 9998);
    year_->setValue(latestYear(document_.backupEinnahmen()));
    quarter_ = new QComboBox(this);
    quarter_->setObjectName(QStringLiteral("quarter"));
    for (int q = 1; q <= 4; ++q)
        quarter_->addItem(QStringLiteral("%1. Quartal").arg(q));
    month_ = new QComboBox(this);
    month_->setObjectName(QStringLiteral("month"));
    month_->addItems(DatevPreferencesPage::monthNames());
    from_ = new QDateEdit(QDate(year_->value(), 1, 1), this);
    from_->setObjectName(QStringLiteral("from"));
    to_ = new QDateEdit(QDate(year_->value(), 12, 31), this);
    to_->setObjectName(QStringLiteral("to"));
    for (QDateEdit* date : { from_, to_ }) {
        date->setDisplayFormat(QStringLiteral("dd.MM.yyyy"));
        date->setCalendarPopup(true);
        date->setDateRange(QDate(1000, 1, 1), QDate(9998, 12, 31));
    }
    bis_ = new QLabel(QStringLiteral("bis"), this);
    auto* period = new QHBoxLayout;
    for (QWidget* widget : std::initializer_list<QWidget*> { periodKind_, year_, quarter_, month_, from_, bis_, to_ })
        period->addWidget(widget);
    period->addStretch();

    konto_ = new QComboBox(this);
    konto_->setObjectName(QStringLiteral("konto"));
    konto_->setEditable(true);
    konto_->setMinimumContentsLength(16);
    konto_->addItems({ QStringLiteral("1200 Bank"), QStringLiteral("1000 Kasse") });
    konto_->setToolTip(QStringLiteral("Das Konto, ueber das das Geld floss (Konto im Buchungsstapel); "
                                      "jede andere Kontonummer mit bis zu vier Ziffern laesst sich eintippen."));

    file_ = new QLineEdit(this);
    file_->setObjectName(QStringLiteral("file"));
    connect(file_, &QLineEdit::textEdited, this, [this] {
        fileFollowsPeriod_ = false;
        periodChanged();
    });
    auto* choose = new QPushButton(QStringLiteral("&Auswaehlen…"), this);
    choose->setAutoDefault(false);
    connect(choose, &QPushButton::clicked, this, &DatevExportDialog::chooseFile);
    auto* fileRow = new QHBoxLayout;
    fileRow->addWidget(file_, 1);
    fileRow->addWidget(choose);
    fileNote_ = new QLabel(this);
    fileNote_->setObjectName(QStringLiteral("fileNote"));
    fileNote_->setWordWrap(true);
    fileNote_->setEnabled(false);

    auto* form = new QFormLayout;
    form->addRow(QStringLiteral("&Zeitraum:"), period);
    auto* kontoRow = new QHBoxLayout;
    kontoRow->addWidget(konto_);
    kontoRow->addStretch();
    form->addRow(QStringLiteral("&Geldkonto:"), kontoRow);
    qobject_cast<QLabel*>(form->labelForField(kontoRow))->setBuddy(konto_);
    form->addRow(QStringLiteral("&Datei:"), fileRow);
    form->addRow(QString(), fileNote_);
    qobject_cast<QLabel*>(form->labelForField(period))->setBuddy(periodKind_);
    qobject_cast<QLabel*>(form->labelForField(fileRow))->setBuddy(file_);

    summary_ = new QPlainTextEdit(this);
    summary_->setObjectName(QStringLiteral("summary"));
    summary_->setReadOnly(true);
    summary_->setLineWrapMode(QPlainTextEdit::NoWrap);
    summary_->setPlaceholderText(
        QStringLiteral("Nach dem Export steht hier, was geschrieben und was ausgelassen wurde."));

    auto* buttons = new QDialogButtonBox(this);
    exportButton_ = buttons->addButton(QStringLiteral("E&xportieren"), QDialogButtonBox::ApplyRole);
    exportButton_->setDefault(true);
    buttons->addButton(QStringLiteral("Schliessen"), QDialogButtonBox::RejectRole);
    connect(exportButton_, &QPushButton::clicked, this, &DatevExportDialog::exportBatches);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto* missing = new QHBoxLayout;
    missing->addWidget(missingSettings_, 1);
    missing->addWidget(settingsButton_);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(missing);
    layout->addLayout(form);
    layout->addWidget(summary_, 1);
    layout->addWidget(buttons);
    resize(640, 420);

    connect(periodKind_, &QComboBox::currentIndexChanged, this, &DatevExportDialog::periodChanged);
    connect(year_, &QSpinBox::valueChanged, this, &DatevExportDialog::periodChanged);
    connect(quarter_, &QComboBox::currentIndexChanged, this, &DatevExportDialog::periodChanged);
    connect(month_, &QComboBox::currentIndexChanged, this, &DatevExportDialog::periodChanged);
    connect(from_, &QDateEdit::dateChanged, this, &DatevExportDialog::periodChanged);
    connect(to_, &QDateEdit::dateChanged, this, &DatevExportDialog::periodChanged);
    periodChanged();
    refreshSettings();
}

std::pair<LocalDay, LocalDay> DatevExportDialog::chosenDays() const
{
    const int year = year_->value();
    switch (periodKind_->currentIndex()) {
    case Quartal: {
        const int last = quarter_->currentIndex() * 3 + 3;
        return { { year, last - 2, 1 }, { year, last, LocalDay::daysInMonth(year, last) } };
    }
    case Monat: {
        const int month = month_->currentIndex() + 1;
        return { { year, month, 1 }, { year, month, LocalDay::daysInMonth(year, month) } };
    }
    case Zeitraum:
        return { dayOf(from_->date()), dayOf(to_->date()) };
    default:
        return { { year, 1, 1 }, { year, 12, 31 } };
    }
}

std::optional<std::uint32_t> DatevExportDialog::chosenKonto() const
{
    const auto number = tax::categoryNumber(konto_->currentText().trimmed().toStdString());
    if (!number || number->digits > 4 || number->value == 0)
        return std::nullopt;
    return number->value;
}

QString DatevExportDialog::periodLabel() const
{
    const auto [from, to] = chosenDays();
    switch (periodKind_->currentIndex()) {
    case Quartal:
        return QStringLiteral("%1-Q%2").arg(from.year).arg(quarter_->currentIndex() + 1);
    case Monat:
        return QString::fromStdString(from.compact().substr(0, 4) + '-' + from.compact().substr(4, 2));
    case Zeitraum:
        return QString::fromStdString(from.compact() + '-' + to.compact());
    default:
        return QString::number(from.year);
    }
}

QString DatevExportDialog::startFolder() const
{
    return document_.isUntitled() ? QDir::homePath() : QFileInfo(document_.filePath()).absolutePath();
}

void DatevExportDialog::periodChanged()
{
    const int kind = periodKind_->currentIndex();
    year_->setVisible(kind != Zeitraum);
    quarter_->setVisible(kind == Quartal);
    month_->setVisible(kind == Monat);
    for (QWidget* widget : std::initializer_list<QWidget*> { from_, bis_, to_ })
        widget->setVisible(kind == Zeitraum);
    const auto [from, to] = chosenDays();
    const DatevSettings settings = DatevSettings::read(document_.defaults());
    std::vector<DatevBatchFile> files;
    for (const DatevPeriod& batch : DatevPeriod::split(from, to, settings.wirtschaftsjahrBeginn)) {
        files.emplace_back();
        files.back().period = batch;
    }
    // Several batches get their years in their names anyway.
    if (fileFollowsPeriod_)
        file_->setText(
            QDir(startFolder())
                .filePath(files.size() > 1 ? QStringLiteral("EXTF_Buchungsstapel.csv")
                                           : QStringLiteral("EXTF_Buchungsstapel_%1.csv").arg(periodLabel())));
    if (files.empty()) {
        fileNote_->setText(QStringLiteral("Der Zeitraum endet vor seinem Beginn."));
    } else if (files.size() == 1) {
        fileNote_->setText(QString());
    } else {
        QStringList names;
        for (const std::string& path : DatevExport::filePaths(QFile::encodeName(file_->text()).toStdString(), files))
            names << QFileInfo(QFile::decodeName(path.c_str())).fileName();
        fileNote_->setText(QStringLiteral("Je Kalender- und Wirtschaftsjahr ein Stapel, also %1 Dateien: %2")
                               .arg(files.size())
                               .arg(names.join(QStringLiteral(", "))));
    }
    exportButton_->setEnabled(!files.empty() && missingSettings_->text().isEmpty());
}

void DatevExportDialog::refreshSettings()
{
    const std::string missing = DatevSettings::read(document_.defaults()).missingText();
    missingSettings_->setText(QString::fromStdString(missing));
    missingSettings_->setVisible(!missing.empty());
    settingsButton_->setVisible(!missing.empty());
    periodChanged(); // the fiscal year may have moved, and with it the files
}

void DatevExportDialog::chooseFile()
{
    QString path = Dialogs::instance().getSaveFileName(
        this, QStringLiteral("DATEV-Export"), file_->text(), QStringLiteral("DATEV-Buchungsstapel (*.csv)"));
    if (path.isEmpty())
        return;
    if (QFileInfo(path).suffix().isEmpty())
        path += QStringLiteral(".csv");
    else
        confirmedFile_ = path; // the panel asked before it offered an existing file
    fileFollowsPeriod_ = false;
    file_->setText(path);
    periodChanged();
}

bool DatevExportDialog::exportBatches()
{
    refreshSettings();
    const DatevSettings settings = DatevSettings::read(document_.defaults());
    if (!settings.beraternummer || !settings.mandantennummer)
        return false;
    const std::optional<std::uint32_t> konto = chosenKonto();
    if (!konto) {
        Dialogs::instance().showError(this, QStringLiteral("Das Geldkonto ist keine Kontonummer."),
            QStringLiteral("Geben Sie eine Kontonummer mit bis zu vier Ziffern ein, etwa 1200 fuer die Bank "
                           "oder 1000 fuer die Kasse."));
        return false;
    }
    if (file_->text().trimmed().isEmpty())
        chooseFile();
    const QString path = file_->text().trimmed();
    if (path.isEmpty())
        return false;

    DatevExportRequest request;
    request.beraternummer = *settings.beraternummer;
    request.mandantennummer = *settings.mandantennummer;
    request.wirtschaftsjahrBeginn = settings.wirtschaftsjahrBeginn;
    request.konto = *konto;
    std::tie(request.from, request.to) = chosenDays();
    request.bezeichnung = QFileInfo(document_.displayName()).completeBaseName().toStdString();
    request.erzeugtAm = now();
    if (const std::string fault = DatevExport::requestFault(request); !fault.empty()) {
        Dialogs::instance().showError(
            this, QStringLiteral("Der DATEV-Export kann so nicht beginnen."), QString::fromStdString(fault));
        return false;
    }

    QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    const DatevExportResult result = DatevExport::run(document_.backupEinnahmen(), request);
    QGuiApplication::restoreOverrideCursor();
    const std::vector<std::string> paths = DatevExport::filePaths(QFile::encodeName(path).toStdString(), result.files);

    QStringList existing;
    for (const std::string& target : paths) {
        const QString name = QFile::decodeName(target.c_str());
        if (QFileInfo::exists(name) && name != confirmedFile_)
            existing << QFileInfo(name).fileName();
    }
    if (!existing.isEmpty()
        && !Dialogs::instance().confirm(this,
            existing.size() == 1
                ? QStringLiteral("Die Datei „%1“ gibt es schon. Ersetzen?").arg(existing.front())
                : QStringLiteral("Diese Dateien gibt es schon: %1. Ersetzen?").arg(existing.join(QStringLiteral(", "))),
            QStringLiteral("Ihr bisheriger Inhalt geht verloren."), QStringLiteral("Ersetzen"),
            QStringLiteral("Abbrechen")))
        return false;

    try {
        DatevExport::write(paths, result);
    } catch (const FileWriteError& error) {
        Dialogs::instance().showError(this,
            QStringLiteral("Der DATEV-Export nach „%1“ konnte nicht gesichert werden.")
                .arg(QFileInfo(QFile::decodeName(error.path().c_str())).fileName()),
            FileWriteErrorText::reason(error));
        return false;
    }
    summary_->setPlainText(QString::fromStdString(DatevExportSummary::text(result, paths)));
    return true;
}

bool DatevExportDialog::event(QEvent* event)
{
    // Back from the preferences: the numbers may be there now.
    if (event->type() == QEvent::WindowActivate)
        refreshSettings();
    return QDialog::event(event);
}

} // namespace saldo::gui
