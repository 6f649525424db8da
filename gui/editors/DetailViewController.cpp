#include "editors/DetailViewController.h"

#include "editors/DetailBox.h"
#include "model/DecimalCommaText.h"
#include "model/Kategorien.h"
#include "model/UnicodeText.h"
#include "platform/Clock.h"
#include "platform/NotificationCenter.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDateTimeEdit>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QParallelAnimationGroup>
#include <QPropertyAnimation>
#include <QVBoxLayout>

#include <cmath>

namespace saldo::gui {

namespace {

constexpr int kFadeMilliseconds = 100;
constexpr int kMinimumNameLength = 3;
const char* const kArtPopUpId = "ArtPopUp";
const char* const kKategoriePopUpId = "KategoriePopUp";
const char* const kInnergemCheckBoxId = "innergemCheckBox";
const char* const kNonEUCheckBoxId = "NonEUCheckBox";

QString qs(const std::string& text)
{
    return QString::fromStdString(text);
}

QDateTime toDateTime(ReferenceSeconds datum)
{
    const double ms = (datum + kReferenceDateUnixSeconds) * 1000.0;
    // A date the editor cannot hold (or no number at all) shows the current moment.
    if (!std::isfinite(ms) || std::fabs(ms) > 2.5e14)
        return QDateTime::currentDateTime();
    return QDateTime::fromMSecsSinceEpoch(static_cast<qint64>(std::llround(ms)), Qt::LocalTime);
}

ReferenceSeconds toReferenceSeconds(const QDateTime& dateTime)
{
    return static_cast<double>(dateTime.toMSecsSinceEpoch()) / 1000.0 - kReferenceDateUnixSeconds;
}

}  // namespace

class DetailViewController::Private {
public:
    DetailBox* box = nullptr;
    QLineEdit* name = nullptr;
    QLineEdit* rechnungsnummer = nullptr;
    QLineEdit* steuernummer = nullptr;
    QLineEdit* leistungsart = nullptr;
    QComboBox* kategorie = nullptr;
    QLineEdit* brutto = nullptr;
    QLineEdit* netto = nullptr;
    QLineEdit* steuersatz = nullptr;
    QComboBox* art = nullptr;
    QDateTimeEdit* datum = nullptr;
    QCheckBox* innergem = nullptr;
    QCheckBox* nonEU = nullptr;

    QPropertyAnimation* fadeOut = nullptr;
    QParallelAnimationGroup* fadeIn = nullptr;
    QPropertyAnimation* fadeInOpacity = nullptr;
    QPropertyAnimation* fadeInFill = nullptr;
    QPropertyAnimation* fadeInBorder = nullptr;
    QColor pendingFill;
    QColor pendingBorder;

    // True while the panel writes into its own controls: such changes are
    // never edits and must not reach the entry.
    bool filling = false;

    QList<QLineEdit*> textFields() const { return {name, rechnungsnummer, steuernummer, leistungsart, brutto, steuersatz}; }
};

DetailViewController::DetailViewController(UserDefaults& defaults, QWidget* parent)
    : QWidget(parent)
    , defaults_(defaults)
    , d_(new Private)
{
    auto* outer = new QVBoxLayout(this);
    outer->setContentsMargins(8, 8, 8, 8);
    d_->box = new DetailBox(this);
    d_->box->setObjectName(QStringLiteral("box"));
    outer->addWidget(d_->box);
    outer->addStretch(1);

    // The box's colours are pure and loud; the controls keep white fields and
    // black text on them so the form stays readable on green and on orange.
    QPalette palette = d_->box->palette();
    palette.setColor(QPalette::Base, Qt::white);
    palette.setColor(QPalette::Text, Qt::black);
    palette.setColor(QPalette::WindowText, Qt::black);
    palette.setColor(QPalette::Button, QColor(245, 245, 245));
    palette.setColor(QPalette::ButtonText, Qt::black);
    palette.setColor(QPalette::Window, QColor(245, 245, 245));
    d_->box->setPalette(palette);

    auto makeLineEdit = [this](const char* objectName) {
        auto* edit = new QLineEdit(d_->box);
        edit->setObjectName(QLatin1String(objectName));
        return edit;
    };
    d_->name = makeLineEdit("name");
    d_->rechnungsnummer = makeLineEdit("rechnungsnummer");
    d_->steuernummer = makeLineEdit("steuernummer");
    d_->leistungsart = makeLineEdit("leistungsart");
    d_->brutto = makeLineEdit("brutto");
    d_->netto = makeLineEdit("netto");
    d_->steuersatz = makeLineEdit("steuersatz");
    for (QLineEdit* amount : {d_->brutto, d_->netto, d_->steuersatz})
        amount->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    d_->netto->setReadOnly(true);
    d_->netto->setFocusPolicy(Qt::ClickFocus);
    QPalette readOnly = palette;
    readOnly.setColor(QPalette::Base, QColor(235, 235, 235));
    d_->netto->setPalette(readOnly);
    d_->brutto->setPlaceholderText(QStringLiteral("0,00"));
    d_->steuersatz->setPlaceholderText(QStringLiteral("19,00"));

    d_->kategorie = new QComboBox(d_->box);
    d_->kategorie->setObjectName(QLatin1String(kKategoriePopUpId));
    d_->kategorie->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    d_->kategorie->setMinimumContentsLength(24);
    d_->kategorie->setMaxVisibleItems(20);

    d_->art = new QComboBox(d_->box);
    d_->art->setObjectName(QLatin1String(kArtPopUpId));
    d_->art->addItem(QStringLiteral("Einnahme"), QString::fromLatin1(kArtEinnahme));
    d_->art->addItem(QStringLiteral("Ausgabe"), QString::fromLatin1(kArtAusgabe));

    d_->datum = new QDateTimeEdit(d_->box);
    d_->datum->setObjectName(QStringLiteral("datum"));
    d_->datum->setCalendarPopup(true);
    d_->datum->setTimeSpec(Qt::LocalTime);
    d_->datum->setDisplayFormat(QStringLiteral("dd.MM.yyyy HH:mm:ss"));

    d_->innergem = new QCheckBox(QStringLiteral("Innergemeinschaftlicher Erwerb"), d_->box);
    d_->innergem->setObjectName(QLatin1String(kInnergemCheckBoxId));
    d_->nonEU = new QCheckBox(QStringLiteral("Non EU"), d_->box);
    d_->nonEU->setObjectName(QLatin1String(kNonEUCheckBoxId));

    auto* grid = new QGridLayout(d_->box);
    grid->setHorizontalSpacing(8);
    grid->setVerticalSpacing(6);
    auto label = [this](const QString& text, QWidget* buddy) {
        auto* l = new QLabel(text, d_->box);
        l->setBuddy(buddy);
        return l;
    };
    int row = 0;
    grid->addWidget(label(QStringLiteral("&Name"), d_->name), row, 0);
    grid->addWidget(d_->name, row, 1, 1, 3);
    ++row;
    grid->addWidget(label(QStringLiteral("Rechnungsnummer"), d_->rechnungsnummer), row, 0);
    grid->addWidget(d_->rechnungsnummer, row, 1);
    grid->addWidget(label(QStringLiteral("Steuernummer"), d_->steuernummer), row, 2);
    grid->addWidget(d_->steuernummer, row, 3);
    ++row;
    grid->addWidget(label(QStringLiteral("Leistungsart"), d_->leistungsart), row, 0);
    grid->addWidget(d_->leistungsart, row, 1, 1, 3);
    ++row;
    grid->addWidget(label(QStringLiteral("&Kategorie"), d_->kategorie), row, 0);
    grid->addWidget(d_->kategorie, row, 1, 1, 3);
    ++row;
    grid->addWidget(label(QStringLiteral("&Brutto"), d_->brutto), row, 0);
    grid->addWidget(d_->brutto, row, 1);
    grid->addWidget(label(QStringLiteral("Netto"), d_->netto), row, 2);
    grid->addWidget(d_->netto, row, 3);
    ++row;
    grid->addWidget(label(QStringLiteral("&Steuersatz (%)"), d_->steuersatz), row, 0);
    grid->addWidget(d_->steuersatz, row, 1);
    grid->addWidget(label(QStringLiteral("&Art"), d_->art), row, 2);
    grid->addWidget(d_->art, row, 3);
    ++row;
    grid->addWidget(label(QStringLiteral("&Datum"), d_->datum), row, 0);
    grid->addWidget(d_->datum, row, 1);
    ++row;
    grid->addWidget(d_->innergem, row, 1);
    grid->addWidget(d_->nonEU, row, 3);
    grid->setColumnStretch(1, 1);
    grid->setColumnStretch(3, 1);

    setTabOrder(d_->name, d_->rechnungsnummer);
    setTabOrder(d_->rechnungsnummer, d_->steuernummer);
    setTabOrder(d_->steuernummer, d_->leistungsart);
    setTabOrder(d_->leistungsart, d_->kategorie);
    setTabOrder(d_->kategorie, d_->brutto);
    setTabOrder(d_->brutto, d_->steuersatz);
    setTabOrder(d_->steuersatz, d_->art);
    setTabOrder(d_->art, d_->datum);
    setTabOrder(d_->datum, d_->innergem);
    setTabOrder(d_->innergem, d_->nonEU);

    // Only a user's edits reach the entry: Return, or leaving a field whose
    // text the user changed; the choice of a pop-up item (activated, never the
    // programmatic refill); a date the user set; a click on a check box.
    for (QLineEdit* field : d_->textFields()) {
        connect(field, &QLineEdit::returnPressed, this, &DetailViewController::textFieldEdited);
        connect(field, &QLineEdit::editingFinished, this, [this, field] {
            if (field->isModified())
                textFieldEdited();
        });
    }
    for (QComboBox* popUp : {d_->art, d_->kategorie})
        connect(popUp, &QComboBox::activated, this, [this, popUp] { popUpButtonChangedSelection(popUp); });
    connect(d_->datum, &QDateTimeEdit::dateTimeChanged, this, [this] {
        if (!d_->filling)
            datePickerValueChanged();
    });
    for (QCheckBox* check : {d_->innergem, d_->nonEU})
        connect(check, &QCheckBox::clicked, this, [this, check] { checkBoxValueChanged(check); });

    d_->fadeOut = new QPropertyAnimation(d_->box, "opacity", this);
    d_->fadeOut->setDuration(kFadeMilliseconds);
    d_->fadeOut->setEndValue(0.0);
    connect(d_->fadeOut, &QAbstractAnimation::finished, this,
        [this] { fadeInDetailBox(d_->pendingFill, d_->pendingBorder); });

    d_->fadeIn = new QParallelAnimationGroup(this);
    d_->fadeInOpacity = new QPropertyAnimation(d_->box, "opacity", d_->fadeIn);
    d_->fadeInFill = new QPropertyAnimation(d_->box, "fillColor", d_->fadeIn);
    d_->fadeInBorder = new QPropertyAnimation(d_->box, "borderColor", d_->fadeIn);
    for (QPropertyAnimation* a : {d_->fadeInOpacity, d_->fadeInFill, d_->fadeInBorder}) {
        a->setDuration(kFadeMilliseconds);
        d_->fadeIn->addAnimation(a);
    }
    d_->fadeInOpacity->setEndValue(1.0);

    // Hidden until the entry list shows an entry.
    setBoxOpacity(0.0);
}

DetailViewController::~DetailViewController()
{
    d_->fadeOut->stop();
    d_->fadeIn->stop();
    // Controls that lose the focus while the window goes away send no edits.
    for (QObject* control : d_->box->children())
        control->disconnect(this);
    delete d_;
}

QColor DetailViewController::fillColorFor(const std::string& art)
{
    if (UnicodeText::equal(art, kArtAusgabe))
        return QColor::fromRgbF(1.0f, 0.5f, 0.0f);
    return QColor::fromRgbF(0.0f, 1.0f, 0.0f);
}

QColor DetailViewController::borderColorFor(const std::string& art)
{
    if (UnicodeText::equal(art, kArtAusgabe))
        return QColor::fromRgbF(1.0f, 0.0f, 0.0f);
    return QColor::fromRgbF(0.0f, 0.0f, 0.0f);
}

void DetailViewController::updateDetailView()
{
    if (!selectedEinnahme_) {
        d_->fadeOut->stop();
        d_->fadeIn->stop();
        setBoxOpacity(0.0);
        return;
    }
    updateBoxEnabled();
    // The colours belong to the entry shown when the refresh starts; the form
    // is filled from the entry selected when the fade-out has completed.
    d_->pendingFill = fillColorFor(selectedEinnahme_->art());
    d_->pendingBorder = borderColorFor(selectedEinnahme_->art());
    d_->fadeIn->stop();
    d_->fadeOut->stop();
    d_->fadeOut->start();
}

void DetailViewController::fadeInDetailBox(const QColor& fill, const QColor& border)
{
    refillKategorien();
    d_->fadeInFill->setEndValue(fill);
    d_->fadeInBorder->setEndValue(border);
    d_->fadeIn->start();
    fillDetailFields();
}

void DetailViewController::refillKategorien()
{
    d_->filling = true;
    d_->kategorie->clear();
    QStringList items;
    for (const std::string& row : Kategorien::listOrDefault(defaults_))
        items << qs(row);
    d_->kategorie->addItems(items);
    d_->filling = false;
}

void DetailViewController::fillDetailFields()
{
    d_->filling = true;
    const Einnahme* e = selectedEinnahme_.get();
    d_->name->setText(e ? qs(e->name()) : QString());
    d_->rechnungsnummer->setText(e ? qs(e->rechnungsnummer()) : QString());
    d_->steuernummer->setText(e ? qs(e->steuernummer()) : QString());
    d_->leistungsart->setText(e ? qs(e->leistungsart()) : QString());
    d_->brutto->setText(qs(DecimalCommaText::editable(e ? e->brutto() : 0.0f)));
    d_->netto->setText(qs(DecimalCommaText::fixed(e ? e->netto() : 0.0f, 2)));
    d_->steuersatz->setText(qs(DecimalCommaText::editable(e ? e->steuersatz() : 0.0f)));
    d_->art->setCurrentIndex(e && UnicodeText::equal(e->art(), kArtEinnahme) ? 0 : 1);

    int kategorieIndex = -1;
    if (e) {
        for (int i = 0; i < d_->kategorie->count(); ++i) {
            if (UnicodeText::equal(d_->kategorie->itemText(i).toStdString(), e->kategorie())) {
                kategorieIndex = i;
                break;
            }
        }
    }
    d_->kategorie->setCurrentIndex(kategorieIndex);

    d_->datum->setDateTime(e ? toDateTime(e->datum()) : QDateTime::currentDateTime());
    d_->innergem->setChecked(e && e->innergemeinschaftlicherErwerb());
    d_->nonEU->setChecked(e && e->isNonEU());
    for (QLineEdit* field : d_->textFields())
        field->setModified(false);
    d_->filling = false;
}

qreal DetailViewController::boxOpacity() const
{
    return d_->box->opacity();
}

void DetailViewController::setBoxOpacity(qreal opacity)
{
    d_->box->setOpacity(opacity);
    updateBoxEnabled();
}

void DetailViewController::updateBoxEnabled()
{
    // A hidden box takes no clicks and no keys. While an entry is shown the
    // box stays enabled through its fades, so that a field holding the focus
    // is not left (and taken over) in the middle of a refresh.
    d_->box->setEnabled(selectedEinnahme_ || d_->box->opacity() > 0.0);
}

void DetailViewController::announceEdit()
{
    emit changeDone();
    NotificationCenter::defaultCenter().post(kDetailViewUpdated);
}

void DetailViewController::textFieldEdited()
{
    if (UnicodeText::graphemeCount(d_->name->text().toStdString()) < kMinimumNameLength)
        return;
    if (Einnahme* e = selectedEinnahme_.get()) {
        e->setName(d_->name->text().toStdString());
        e->setRechnungsnummer(d_->rechnungsnummer->text().toStdString());
        e->setSteuernummer(d_->steuernummer->text().toStdString());
        e->setLeistungsart(d_->leistungsart->text().toStdString());
        // With no item of the entry's category in the list, the category stays.
        if (d_->kategorie->currentIndex() >= 0)
            e->setKategorie(d_->kategorie->currentText().toStdString());
        // A text that is no number leaves the value as it was; the setter
        // refuses a negative gross amount.
        if (auto brutto = DecimalCommaText::parse(d_->brutto->text().toStdString()))
            e->setBrutto(*brutto);
        if (auto steuersatz = DecimalCommaText::parse(d_->steuersatz->text().toStdString()))
            e->setSteuersatz(*steuersatz);
    }
    for (QLineEdit* field : d_->textFields())
        field->setModified(false);
    announceEdit();
}

void DetailViewController::popUpButtonChangedSelection(QComboBox* sender)
{
    const QString id = sender ? sender->objectName() : QString();
    if (id == QLatin1String(kArtPopUpId)) {
        if (selectedEinnahme_ && sender->currentIndex() >= 0)
            selectedEinnahme_->setArt(sender->currentData().toString().toStdString());
        announceEdit();
    } else if (id == QLatin1String(kKategoriePopUpId)) {
        if (sender->currentIndex() < 0)
            return;
        if (selectedEinnahme_)
            selectedEinnahme_->setKategorie(sender->currentText().toStdString());
        announceEdit();
    } else {
        NotificationCenter::defaultCenter().post(kDetailViewUpdated);
    }
}

void DetailViewController::datePickerValueChanged()
{
    if (selectedEinnahme_)
        selectedEinnahme_->setDatum(toReferenceSeconds(d_->datum->dateTime()));
    announceEdit();
}

void DetailViewController::checkBoxValueChanged(QCheckBox* sender)
{
    const bool on = sender && sender->isChecked();
    if (Einnahme* e = selectedEinnahme_.get()) {
        // The setters clear the other flag before setting one.
        if (sender && sender->objectName() == QLatin1String(kInnergemCheckBoxId))
            e->setInnergemeinschaftlicherErwerb(on);
        else
            e->setIsNonEU(on);
    }
    announceEdit();
}

void DetailViewController::finishAnimationsForTesting()
{
    if (d_->fadeOut->state() == QAbstractAnimation::Running)
        d_->fadeOut->setCurrentTime(d_->fadeOut->totalDuration());
    if (d_->fadeIn->state() == QAbstractAnimation::Running)
        d_->fadeIn->setCurrentTime(d_->fadeIn->totalDuration());
}

DetailBox* DetailViewController::box() const { return d_->box; }
QLineEdit* DetailViewController::nameField() const { return d_->name; }
QLineEdit* DetailViewController::rechnungsnummerField() const { return d_->rechnungsnummer; }
QLineEdit* DetailViewController::steuernummerField() const { return d_->steuernummer; }
QLineEdit* DetailViewController::leistungsartField() const { return d_->leistungsart; }
QComboBox* DetailViewController::kategoriePopUp() const { return d_->kategorie; }
QLineEdit* DetailViewController::bruttoField() const { return d_->brutto; }
QLineEdit* DetailViewController::nettoField() const { return d_->netto; }
QLineEdit* DetailViewController::steuersatzField() const { return d_->steuersatz; }
QComboBox* DetailViewController::artPopUp() const { return d_->art; }
QDateTimeEdit* DetailViewController::datumPicker() const { return d_->datum; }
QCheckBox* DetailViewController::innergemCheckBox() const { return d_->innergem; }
QCheckBox* DetailViewController::nonEUCheckBox() const { return d_->nonEU; }

}  // namespace saldo::gui
