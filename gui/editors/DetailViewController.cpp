#include "editors/DetailViewController.h"

#include "app/Document.h"
#include "editors/DetailBox.h"
#include "editors/EntryForm.h"
#include "model/Kategorien.h"
#include "model/UnicodeText.h"
#include "platform/DateField.h"
#include "platform/DateTimes.h"
#include "platform/NotificationCenter.h"

#include <QCheckBox>
#include <QComboBox>
#include <QParallelAnimationGroup>
#include <QPropertyAnimation>
#include <QVBoxLayout>

#include <algorithm>

namespace saldo::gui {

namespace {

constexpr int kFadeMilliseconds = 100;

}  // namespace

class DetailViewController::Private {
public:
    DetailBox* box = nullptr;
    EntryForm* form = nullptr;

    QPropertyAnimation* fadeOut = nullptr;
    QParallelAnimationGroup* fadeIn = nullptr;
    QPropertyAnimation* fadeInOpacity = nullptr;
    QPropertyAnimation* fadeInFill = nullptr;
    QPropertyAnimation* fadeInBorder = nullptr;
    QColor pendingFill;
    QColor pendingBorder;
};

DetailViewController::DetailViewController(Document& document, UserDefaults& defaults, QWidget* parent)
    : QWidget(parent)
    , document_(document)
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

    d_->form = new EntryForm(d_->box);
    auto* boxLayout = new QVBoxLayout(d_->box);
    boxLayout->setContentsMargins(12, 12, 12, 12);
    boxLayout->addWidget(d_->form);

    connect(d_->form, &EntryForm::textFieldEdited, this, &DetailViewController::textFieldEdited);
    connect(d_->form, &EntryForm::popUpButtonChangedSelection, this, &DetailViewController::popUpButtonChangedSelection);
    connect(d_->form, &EntryForm::datePickerValueChanged, this, &DetailViewController::datePickerValueChanged);
    connect(d_->form, &EntryForm::checkBoxValueChanged, this, &DetailViewController::checkBoxValueChanged);
    connect(&document_, &Document::changed, this, &DetailViewController::documentChanged);

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
    d_->form->disconnect(this);
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

void DetailViewController::showEntry(const EinnahmePtr& entry)
{
    setSelectedEinnahme(entry);
    updateDetailView();
}

void DetailViewController::documentChanged(const DocumentChange& change)
{
    if (!selectedEinnahme_ || change.kind != DocumentChange::Kind::EntriesEdited)
        return;
    if (std::find(change.entries.begin(), change.entries.end(), selectedEinnahme_) == change.entries.end())
        return;
    // The shown entry changed: its colours and values at once, without a fade.
    if (d_->fadeOut->state() == QAbstractAnimation::Running || d_->fadeIn->state() == QAbstractAnimation::Running)
        return;  // the running refresh fills the form from the current values anyway
    d_->box->setFillColor(fillColorFor(selectedEinnahme_->art()));
    d_->box->setBorderColor(borderColorFor(selectedEinnahme_->art()));
    fillDetailFields();
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
    d_->form->setKategorien(Kategorien::listOrDefault(defaults_));
    d_->fadeInFill->setEndValue(fill);
    d_->fadeInBorder->setEndValue(border);
    d_->fadeIn->start();
    fillDetailFields();
}

void DetailViewController::fillDetailFields()
{
    d_->form->fill(selectedEinnahme_.get());
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
    NotificationCenter::defaultCenter().post(kDetailViewUpdated);
}

void DetailViewController::textFieldEdited()
{
    if (!d_->form->nameLongEnough())
        return;
    if (selectedEinnahme_) {
        document_.editForm(selectedEinnahme_, d_->form->texts());
        // Amounts that could not be taken show the stored values again.
        fillDetailFields();
    }
    d_->form->markTaken();
    announceEdit();
}

void DetailViewController::popUpButtonChangedSelection(QComboBox* sender)
{
    const QString id = sender ? sender->objectName() : QString();
    if (id == QLatin1String(EntryForm::kArtPopUpId)) {
        if (sender->currentIndex() >= 0) {
            const std::string art = sender->currentData().toString().toStdString();
            document_.editEntry(selectedEinnahme_, [&](Einnahme& e) { e.setArt(art); });
        }
        announceEdit();
    } else if (id == QLatin1String(EntryForm::kKategoriePopUpId)) {
        if (sender->currentIndex() < 0)
            return;
        const std::string kategorie = sender->currentText().toStdString();
        document_.editEntry(selectedEinnahme_, [&](Einnahme& e) { e.setKategorie(kategorie); });
        announceEdit();
    } else {
        announceEdit();
    }
}

void DetailViewController::datePickerValueChanged()
{
    const ReferenceSeconds datum = DateTimes::toReferenceSeconds(d_->form->datumPicker()->dateTime());
    document_.editEntry(selectedEinnahme_, [&](Einnahme& e) { e.setDatum(datum); });
    announceEdit();
}

void DetailViewController::checkBoxValueChanged(QCheckBox* sender)
{
    const bool on = sender && sender->isChecked();
    const bool innergem = sender && sender->objectName() == QLatin1String(EntryForm::kInnergemCheckBoxId);
    // The setters clear the other flag before setting one.
    document_.editEntry(selectedEinnahme_, [&](Einnahme& e) {
        if (innergem)
            e.setInnergemeinschaftlicherErwerb(on);
        else
            e.setIsNonEU(on);
    });
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
EntryForm* DetailViewController::form() const { return d_->form; }
QLineEdit* DetailViewController::nameField() const { return d_->form->nameField(); }
QLineEdit* DetailViewController::rechnungsnummerField() const { return d_->form->rechnungsnummerField(); }
QLineEdit* DetailViewController::steuernummerField() const { return d_->form->steuernummerField(); }
QLineEdit* DetailViewController::leistungsartField() const { return d_->form->leistungsartField(); }
QComboBox* DetailViewController::kategoriePopUp() const { return d_->form->kategoriePopUp(); }
QLineEdit* DetailViewController::bruttoField() const { return d_->form->bruttoField(); }
QLineEdit* DetailViewController::nettoField() const { return d_->form->nettoField(); }
QLineEdit* DetailViewController::steuersatzField() const { return d_->form->steuersatzField(); }
QComboBox* DetailViewController::artPopUp() const { return d_->form->artPopUp(); }
DateField* DetailViewController::datumPicker() const { return d_->form->datumPicker(); }
QCheckBox* DetailViewController::innergemCheckBox() const { return d_->form->innergemCheckBox(); }
QCheckBox* DetailViewController::nonEUCheckBox() const { return d_->form->nonEUCheckBox(); }

}  // namespace saldo::gui
