#include "editors/DetailViewController.h"

#include "app/Document.h"
#include "editors/DetailBox.h"
#include "entrylist/FormEdit.h"
#include "model/DecimalCommaText.h"
#include "model/Kategorien.h"
#include "model/UnicodeText.h"
#include "platform/DateTimes.h"
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

#include <algorithm>

namespace saldo::gui {

namespace {

constexpr int kFadeMilliseconds = 100;
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
    // A date the calendar cannot name shows the current moment.
    const QDateTime local = DateTimes::toQDateTime(datum);
    return local.isValid() ? local : QDateTime::currentDateTime();
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
    // Alt with A, B, E and H belongs to the menu bar.
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
    grid->addWidget(label(QStringLiteral("Br&utto"), d_->brutto), row, 0);
    grid->addWidget(d_->brutto, row, 1);
    grid->addWidget(label(QStringLiteral("Netto"), d_->netto), row, 2);
    grid->addWidget(d_->netto, row, 3);
    ++row;
    grid->addWidget(label(QStringLiteral("&Steuersatz (%)"), d_->steuersatz), row, 0);
    grid->addWidget(d_->steuersatz, row, 1);
    grid->addWidget(label(QStringLiteral("A&rt"), d_->art), row, 2);
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
    connect(d_->name, &QLineEdit::textChanged, this, &DetailViewController::updateNameHint);
    for (QLineEdit* amount : {d_->brutto, d_->steuersatz})
        connect(amount, &QLineEdit::textEdited, this, &DetailViewController::previewNetto);
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

void DetailViewController::updateNameHint()
{
    const bool tooShort = !FormEdit::nameLongEnough(d_->name->text().toStdString());
    if (tooShort == d_->name->property("nameTooShort").toBool())
        return;
    d_->name->setProperty("nameTooShort", tooShort);
    d_->name->setStyleSheet(tooShort ? QStringLiteral("QLineEdit { border: 2px solid #d00000; }") : QString());
    d_->name->setToolTip(tooShort ? QString::fromUtf8(FormEdit::kNameTooShort.data(),
                                        static_cast<qsizetype>(FormEdit::kNameTooShort.size()))
                                  : QString());
}

void DetailViewController::previewNetto()
{
    // While a gross amount or rate is typed, the net amount shows what the
    // typed texts would give; the stored values again once they cannot be read.
    const Einnahme* e = selectedEinnahme_.get();
    auto brutto = DecimalCommaText::parse(d_->brutto->text().toStdString());
    auto steuersatz = DecimalCommaText::parse(d_->steuersatz->text().toStdString());
    if (!brutto || *brutto < 0.0f || (e && !e->childTransactions().empty()))
        brutto = e ? e->brutto() : 0.0f;
    if (!steuersatz)
        steuersatz = e ? e->steuersatz() : 0.0f;
    d_->netto->setText(qs(DecimalCommaText::fixed(Einnahme::nettoOf(*brutto, *steuersatz), 2)));
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
    // Split bookings decide the gross amount: it is changed in their editor.
    d_->brutto->setReadOnly(e && !e->childTransactions().empty());
    d_->brutto->setToolTip(d_->brutto->isReadOnly()
            ? QStringLiteral("Die Splitbuchungen bestimmen den Bruttobetrag (Eintrag > Splitbuchung bearbeiten)")
            : QString());
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
    NotificationCenter::defaultCenter().post(kDetailViewUpdated);
}

void DetailViewController::textFieldEdited()
{
    if (!FormEdit::nameLongEnough(d_->name->text().toStdString()))
        return;
    if (selectedEinnahme_) {
        FormEdit::Texts texts;
        texts.name = d_->name->text().toStdString();
        texts.rechnungsnummer = d_->rechnungsnummer->text().toStdString();
        texts.steuernummer = d_->steuernummer->text().toStdString();
        texts.leistungsart = d_->leistungsart->text().toStdString();
        // With no item of the entry's category in the list, the category stays.
        if (d_->kategorie->currentIndex() >= 0)
            texts.kategorie = d_->kategorie->currentText().toStdString();
        texts.brutto = d_->brutto->text().toStdString();
        texts.steuersatz = d_->steuersatz->text().toStdString();
        document_.editForm(selectedEinnahme_, texts);
        // Amounts that could not be taken show the stored values again.
        fillDetailFields();
    }
    for (QLineEdit* field : d_->textFields())
        field->setModified(false);
    announceEdit();
}

void DetailViewController::popUpButtonChangedSelection(QComboBox* sender)
{
    const QString id = sender ? sender->objectName() : QString();
    if (id == QLatin1String(kArtPopUpId)) {
        if (sender->currentIndex() >= 0) {
            const std::string art = sender->currentData().toString().toStdString();
            document_.editEntry(selectedEinnahme_, [&](Einnahme& e) { e.setArt(art); });
        }
        announceEdit();
    } else if (id == QLatin1String(kKategoriePopUpId)) {
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
    const ReferenceSeconds datum = DateTimes::toReferenceSeconds(d_->datum->dateTime());
    document_.editEntry(selectedEinnahme_, [&](Einnahme& e) { e.setDatum(datum); });
    announceEdit();
}

void DetailViewController::checkBoxValueChanged(QCheckBox* sender)
{
    const bool on = sender && sender->isChecked();
    const bool innergem = sender && sender->objectName() == QLatin1String(kInnergemCheckBoxId);
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
