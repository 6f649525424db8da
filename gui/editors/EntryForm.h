#pragma once

#include "entrylist/FormEdit.h"
#include "model/Einnahme.h"

#include <QWidget>

#include <optional>
#include <string>
#include <vector>

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;

namespace saldo::gui {

class DateField;

// The form over one entry that the detail panel and the split-booking editor
// share: a control for every field (name, invoice and tax number, kind of
// service, category, gross, net, rate, kind, date and the two flags) and, in
// the editor, the entry's status circle. It fills its controls from an entry,
// hands the typed texts over as FormEdit takes them, and tells its owner of
// every edit a user makes (Return or leaving a changed field, choosing a
// pop-up item, setting the date, clicking a flag) but never of its own
// filling. What an edit changes is the owner's business. The form keeps its
// display current by itself: the net amount follows the gross amount and
// rate as they are typed, and a name too short to be taken is framed in red
// with the reason as its tooltip; a category the list does not hold shows as
// itself, marked, and is kept. While split bookings decide the gross amount,
// the gross field shows the amount the owner derives and is read-only.
class EntryForm : public QWidget {
    Q_OBJECT
public:
    explicit EntryForm(QWidget* parent = nullptr);
    ~EntryForm() override;

    // Replaces the category pop-up's items.
    void setKategorien(const std::vector<std::string>& rows);
    // Shows the entry's values; without an entry empty texts, zero amounts,
    // "Ausgabe", no category and the current date. The gross field is
    // read-only and shows the stored gross amount while the entry has split
    // bookings.
    void fill(const Einnahme* entry);
    // Split bookings decide the gross amount: the field shows `brutto` and
    // is read-only. Nothing: the field can be typed in again and keeps its text.
    void showDerivedBrutto(std::optional<float> brutto);
    // Shows the status circle (for the split-booking editor); hidden otherwise.
    void setStatusImageVisible(bool visible);

    bool nameLongEnough() const;
    // The texts as they stand, for FormEdit; no category without a chosen item.
    FormEdit::Texts texts() const;
    // The fields' texts count as taken over: leaving them sends no edit.
    void markTaken();

    QLineEdit* nameField() const { return name_; }
    QLineEdit* rechnungsnummerField() const { return rechnungsnummer_; }
    QLineEdit* steuernummerField() const { return steuernummer_; }
    QLineEdit* leistungsartField() const { return leistungsart_; }
    QComboBox* kategoriePopUp() const { return kategorie_; }
    QLineEdit* bruttoField() const { return brutto_; }
    QLineEdit* nettoField() const { return netto_; }
    QLineEdit* steuersatzField() const { return steuersatz_; }
    QComboBox* artPopUp() const { return art_; }
    DateField* datumPicker() const { return datum_; }
    QCheckBox* innergemCheckBox() const { return innergem_; }
    QCheckBox* nonEUCheckBox() const { return nonEU_; }
    QLabel* imageView() const { return imageView_; }

    static constexpr const char* kArtPopUpId = "ArtPopUp";
    static constexpr const char* kKategoriePopUpId = "KategoriePopUp";
    static constexpr const char* kInnergemCheckBoxId = "innergemCheckBox";

signals:
    // A text field was edited: the whole form is to be taken over.
    void textFieldEdited();
    // The user chose an item of the kind or the category pop-up.
    void popUpButtonChangedSelection(QComboBox* sender);
    // The user set a date.
    void datePickerValueChanged();
    // The user toggled one of the two flags.
    void checkBoxValueChanged(QCheckBox* sender);

private:
    void buildLayout();
    void connectEdits();
    // Selects the entry's category, first and marked when the list does not hold it.
    void showKategorie(const Einnahme* e);
    bool isOwnKategorie(int index) const { return ownKategorie_ && index == 0; }
    void updateNameHint();
    void previewNetto();
    QList<QLineEdit*> textFields() const;

    QLineEdit* name_ = nullptr;
    QLineEdit* rechnungsnummer_ = nullptr;
    QLineEdit* steuernummer_ = nullptr;
    QLineEdit* leistungsart_ = nullptr;
    QComboBox* kategorie_ = nullptr;
    QLineEdit* brutto_ = nullptr;
    QLineEdit* netto_ = nullptr;
    QLineEdit* steuersatz_ = nullptr;
    QComboBox* art_ = nullptr;
    DateField* datum_ = nullptr;
    QCheckBox* innergem_ = nullptr;
    QCheckBox* nonEU_ = nullptr;
    QLabel* imageView_ = nullptr;

    // The amounts the net amount falls back to while a typed text cannot be read.
    float shownBrutto_ = 0.0f;
    float shownSteuersatz_ = 0.0f;
    // True while the form writes into its own controls: never an edit.
    bool filling_ = false;
    // The category pop-up's first item is the entry's own category, not in the list.
    bool ownKategorie_ = false;
};

} // namespace saldo::gui
