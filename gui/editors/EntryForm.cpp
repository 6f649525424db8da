#include "editors/EntryForm.h"

#include "entrylist/EntryCells.h"
#include "entrylist/StatusImages.h"
#include "model/DecimalCommaText.h"
#include "model/UnicodeText.h"
#include "platform/DateField.h"
#include "platform/DateTimes.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>

namespace saldo::gui {

namespace {

const char* const kNonEUCheckBoxId = "NonEUCheckBox";

QString qs(const std::string& text)
{
    return QString::fromStdString(text);
}

// A field that shows a value it does not take has a grey ground.
void showReadOnly(QLineEdit* field, bool readOnly)
{
    field->setReadOnly(readOnly);
    // An empty palette resolves nothing of its own: the parent's colours again.
    QPalette palette;
    if (readOnly)
        palette.setColor(QPalette::Base, QColor(235, 235, 235));
    field->setPalette(palette);
}

} // namespace

EntryForm::EntryForm(QWidget* parent)
    : QWidget(parent)
{
    auto makeLineEdit = [this](const char* objectName) {
        auto* edit = new QLineEdit(this);
        edit->setObjectName(QLatin1String(objectName));
        return edit;
    };
    name_ = makeLineEdit("name");
    rechnungsnummer_ = makeLineEdit("rechnungsnummer");
    steuernummer_ = makeLineEdit("steuernummer");
    leistungsart_ = makeLineEdit("leistungsart");
    brutto_ = makeLineEdit("brutto");
    netto_ = makeLineEdit("netto");
    steuersatz_ = makeLineEdit("steuersatz");
    for (QLineEdit* amount : { brutto_, netto_, steuersatz_ })
        amount->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    showReadOnly(netto_, true);
    netto_->setFocusPolicy(Qt::ClickFocus);
    brutto_->setPlaceholderText(QStringLiteral("0,00"));
    steuersatz_->setPlaceholderText(QStringLiteral("19,00"));

    kategorie_ = new QComboBox(this);
    kategorie_->setObjectName(QLatin1String(kKategoriePopUpId));
    kategorie_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    kategorie_->setMinimumContentsLength(24);
    kategorie_->setMaxVisibleItems(20);

    art_ = new QComboBox(this);
    art_->setObjectName(QLatin1String(kArtPopUpId));
    art_->addItem(QStringLiteral("Einnahme"), QString::fromLatin1(kArtEinnahme));
    art_->addItem(QStringLiteral("Ausgabe"), QString::fromLatin1(kArtAusgabe));

    // Minutes, as the table shows them: the seconds stay as they are.
    datum_ = new DateField(this);
    datum_->setObjectName(QStringLiteral("datum"));

    innergem_ = new QCheckBox(QStringLiteral("Innergemeinschaftlicher Erwerb"), this);
    innergem_->setObjectName(QLatin1String(kInnergemCheckBoxId));
    nonEU_ = new QCheckBox(QStringLiteral("Non EU"), this);
    nonEU_->setObjectName(QLatin1String(kNonEUCheckBoxId));

    imageView_ = new QLabel(this);
    imageView_->setObjectName(QStringLiteral("imageView"));
    imageView_->setFixedSize(StatusImages::kSize + 4, StatusImages::kSize + 4);
    imageView_->setAlignment(Qt::AlignCenter);
    imageView_->hide();

    buildLayout();
    connectEdits();
}

EntryForm::~EntryForm()
{
    // Controls that lose the focus while the form goes away send no edits.
    for (QObject* control : children())
        control->disconnect(this);
}

void EntryForm::buildLayout()
{
    // Two columns of labelled fields, the long texts across both: the form
    // fits the detail panel and the split-booking editor's fixed window alike.
    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setHorizontalSpacing(6);
    grid->setVerticalSpacing(4);
    auto label = [this](const QString& text, QWidget* buddy) {
        auto* l = new QLabel(text, this);
        l->setBuddy(buddy);
        return l;
    };
    auto* nameRow = new QHBoxLayout;
    nameRow->setSpacing(4);
    nameRow->addWidget(imageView_);
    nameRow->addWidget(name_);

    int row = 0;
    grid->addWidget(label(QStringLiteral("&Name"), name_), row, 0);
    grid->addLayout(nameRow, row, 1, 1, 3);
    ++row;
    grid->addWidget(label(QStringLiteral("&Kategorie"), kategorie_), row, 0);
    grid->addWidget(kategorie_, row, 1, 1, 3);
    ++row;
    // A row of two labelled fields.
    const auto pair = [&](const QString& leftText, QWidget* left, const QString& rightText, QWidget* right) {
        grid->addWidget(label(leftText, left), row, 0);
        grid->addWidget(left, row, 1);
        grid->addWidget(label(rightText, right), row, 2);
        grid->addWidget(right, row, 3);
        ++row;
    };
    pair(QStringLiteral("Rechnungsnr."), rechnungsnummer_, QStringLiteral("Steuernr."), steuernummer_);
    pair(QStringLiteral("Leistungsart"), leistungsart_, QStringLiteral("A&rt"), art_);
    pair(QStringLiteral("Br&utto"), brutto_, QStringLiteral("Netto"), netto_);
    pair(QStringLiteral("&Steuersatz %"), steuersatz_, QStringLiteral("&Datum"), datum_);
    grid->addWidget(innergem_, row, 0, 1, 2);
    grid->addWidget(nonEU_, row, 2, 1, 2);
    grid->setColumnStretch(1, 1);
    grid->setColumnStretch(3, 1);

    setTabOrder(name_, kategorie_);
    setTabOrder(kategorie_, rechnungsnummer_);
    setTabOrder(rechnungsnummer_, steuernummer_);
    setTabOrder(steuernummer_, leistungsart_);
    setTabOrder(leistungsart_, art_);
    setTabOrder(art_, brutto_);
    setTabOrder(brutto_, steuersatz_);
    setTabOrder(steuersatz_, datum_);
    setTabOrder(datum_, innergem_);
    setTabOrder(innergem_, nonEU_);
}

QList<QLineEdit*> EntryForm::textFields() const
{
    return { name_, rechnungsnummer_, steuernummer_, leistungsart_, brutto_, steuersatz_ };
}

void EntryForm::connectEdits()
{
    // Only a user's edits are reported: Return, or leaving a field whose text
    // the user changed; the choice of a pop-up item (activated, never the
    // programmatic refill); a date the user set; a click on a check box.
    for (QLineEdit* field : textFields()) {
        connect(field, &QLineEdit::returnPressed, this, &EntryForm::textFieldEdited);
        connect(field, &QLineEdit::editingFinished, this, [this, field] {
            if (field->isModified())
                emit textFieldEdited();
        });
    }
    // Choosing the entry's own category, which the list no longer holds, changes nothing.
    for (QComboBox* popUp : { art_, kategorie_ })
        connect(popUp, &QComboBox::activated, this, [this, popUp](int index) {
            if (popUp != kategorie_ || !isOwnKategorie(index))
                emit popUpButtonChangedSelection(popUp);
        });
    // A typed date counts on Return and when the field is left; a day picked
    // in the calendar at once.
    connect(datum_, &QLineEdit::editingFinished, this, [this] {
        if (datum_->commit() == DateField::Outcome::Changed && !filling_)
            emit datePickerValueChanged();
    });
    connect(datum_, &DateField::dateChosen, this, [this](bool changed) {
        if (changed && !filling_)
            emit datePickerValueChanged();
    });
    for (QCheckBox* check : { innergem_, nonEU_ })
        connect(check, &QCheckBox::clicked, this, [this, check] { emit checkBoxValueChanged(check); });
    connect(name_, &QLineEdit::textChanged, this, &EntryForm::updateNameHint);
    for (QLineEdit* amount : { brutto_, steuersatz_ })
        connect(amount, &QLineEdit::textEdited, this, &EntryForm::previewNetto);
}

void EntryForm::setKategorien(const std::vector<std::string>& rows)
{
    filling_ = true;
    kategorie_->clear();
    ownKategorie_ = false;
    QStringList items;
    for (const std::string& row : rows)
        items << qs(row);
    kategorie_->addItems(items);
    filling_ = false;
}

void EntryForm::fill(const Einnahme* e)
{
    filling_ = true;
    name_->setText(e ? qs(e->name()) : QString());
    rechnungsnummer_->setText(e ? qs(e->rechnungsnummer()) : QString());
    steuernummer_->setText(e ? qs(e->steuernummer()) : QString());
    leistungsart_->setText(e ? qs(e->leistungsart()) : QString());
    shownBrutto_ = e ? e->brutto() : 0.0f;
    shownSteuersatz_ = e ? e->steuersatz() : 0.0f;
    brutto_->setText(qs(DecimalCommaText::editable(shownBrutto_)));
    netto_->setText(qs(DecimalCommaText::fixed(Einnahme::nettoOf(shownBrutto_, shownSteuersatz_), 2)));
    steuersatz_->setText(qs(DecimalCommaText::editable(shownSteuersatz_)));
    art_->setCurrentIndex(e && UnicodeText::equal(e->art(), kArtEinnahme) ? 0 : 1);

    showKategorie(e);
    datum_->setDateTime(e ? DateTimes::toQDateTime(e->datum()) : QDateTime());
    innergem_->setChecked(e && e->innergemeinschaftlicherErwerb());
    nonEU_->setChecked(e && e->isNonEU());
    if (e)
        imageView_->setPixmap(StatusImages::pixmap(e->statusImage()));
    else
        imageView_->clear();
    // Split bookings decide the gross amount: it is changed in their editor.
    showReadOnly(brutto_, e && !e->childTransactions().empty());
    brutto_->setToolTip(brutto_->isReadOnly()
            ? QStringLiteral("Die Splitbuchungen bestimmen den Bruttobetrag (Eintrag > Splitbuchung bearbeiten)")
            : QString());
    markTaken();
    filling_ = false;
}

void EntryForm::showKategorie(const Einnahme* e)
{
    if (ownKategorie_) {
        kategorie_->removeItem(1); // the separator
        kategorie_->removeItem(0);
        ownKategorie_ = false;
    }
    int index = -1;
    if (e) {
        for (int i = 0; i < kategorie_->count(); ++i) {
            if (UnicodeText::equal(kategorie_->itemText(i).toStdString(), e->kategorie())) {
                index = i;
                break;
            }
        }
    }
    // A category the list no longer holds shows as itself, first and marked.
    if (index < 0 && e && !e->kategorie().empty()) {
        kategorie_->insertItem(0, EntryCells::notInList(qs(e->kategorie())));
        QFont italic = kategorie_->font();
        italic.setItalic(true);
        kategorie_->setItemData(0, italic, Qt::FontRole);
        kategorie_->insertSeparator(1);
        ownKategorie_ = true;
        index = 0;
    }
    kategorie_->setCurrentIndex(index);
    kategorie_->setToolTip(ownKategorie_
            ? QStringLiteral("Die Kategorie steht nicht in der Kategorienliste (Bearbeiten ▸ Einstellungen); "
                             "der Eintrag behaelt sie.")
            : QString());
}

void EntryForm::showDerivedBrutto(std::optional<float> brutto)
{
    showReadOnly(brutto_, brutto.has_value());
    brutto_->setToolTip(brutto ? QStringLiteral("Die Summe der Splitbuchungen") : QString());
    if (!brutto)
        return;
    shownBrutto_ = *brutto;
    brutto_->setText(qs(DecimalCommaText::editable(*brutto)));
    brutto_->setModified(false);
    previewNetto();
}

void EntryForm::setStatusImageVisible(bool visible)
{
    imageView_->setVisible(visible);
}

bool EntryForm::nameLongEnough() const
{
    return FormEdit::nameLongEnough(name_->text().toStdString());
}

FormEdit::Texts EntryForm::texts() const
{
    FormEdit::Texts texts;
    texts.name = name_->text().toStdString();
    texts.rechnungsnummer = rechnungsnummer_->text().toStdString();
    texts.steuernummer = steuernummer_->text().toStdString();
    texts.leistungsart = leistungsart_->text().toStdString();
    // With no item of the entry's category in the list, the category stays.
    if (kategorie_->currentIndex() >= 0 && !isOwnKategorie(kategorie_->currentIndex()))
        texts.kategorie = kategorie_->currentText().toStdString();
    texts.brutto = brutto_->text().toStdString();
    texts.steuersatz = steuersatz_->text().toStdString();
    return texts;
}

void EntryForm::markTaken()
{
    for (QLineEdit* field : textFields())
        field->setModified(false);
}

void EntryForm::updateNameHint()
{
    const bool tooShort = !nameLongEnough();
    if (tooShort == name_->property("nameTooShort").toBool())
        return;
    name_->setProperty("nameTooShort", tooShort);
    name_->setStyleSheet(tooShort ? QStringLiteral("QLineEdit { border: 2px solid #d00000; }") : QString());
    name_->setToolTip(tooShort
            ? QString::fromUtf8(FormEdit::kNameTooShort.data(), static_cast<qsizetype>(FormEdit::kNameTooShort.size()))
            : QString());
}

void EntryForm::previewNetto()
{
    // While a gross amount or rate is typed, the net amount shows what the
    // typed texts would give; the shown values again once they cannot be read.
    auto brutto = DecimalCommaText::parse(brutto_->text().toStdString());
    auto steuersatz = DecimalCommaText::parse(steuersatz_->text().toStdString());
    if (!brutto || *brutto < 0.0f || brutto_->isReadOnly())
        brutto = shownBrutto_;
    if (!steuersatz)
        steuersatz = shownSteuersatz_;
    netto_->setText(qs(DecimalCommaText::fixed(Einnahme::nettoOf(*brutto, *steuersatz), 2)));
}

} // namespace saldo::gui
