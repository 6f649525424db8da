#pragma once

#include "model/Einnahme.h"
#include "platform/UserDefaults.h"

#include <QColor>
#include <QWidget>

class QCheckBox;
class QComboBox;
class QLineEdit;

namespace saldo::gui {

class DateField;
class DetailBox;
class Document;
class EntryForm;
struct DocumentChange;

// The detail panel: the one entry selected in the entry table as a form inside
// a coloured box (green on black for income, orange on red for an expense).
// Each edit is one of the document's verbs on that entry (so it can be undone)
// and posts "DetailViewUpdated" so every entry table reloads. The form always
// shows the entry's current values: an edit made anywhere shows at once, and
// the form (EntryForm, shared with the split-booking editor) keeps its own
// display current. While the entry has split bookings, their sum decides its
// gross amount, so the gross field is read-only and shows the stored amount.
// The box is hidden (opacity 0) unless an entry is shown.
class DetailViewController : public QWidget {
    Q_OBJECT
public:
    DetailViewController(Document& document, UserDefaults& defaults, QWidget* parent = nullptr);
    ~DetailViewController() override;

    EinnahmePtr selectedEinnahme() const { return selectedEinnahme_; }
    void setSelectedEinnahme(EinnahmePtr entry) { selectedEinnahme_ = std::move(entry); }
    // The entry list's hand-over: shows the entry (none hides the box).
    void showEntry(const EinnahmePtr& entry);

    // Refreshes the panel from selectedEinnahme (fade out 0.1 s, refill, fade in
    // 0.1 s); with no entry the box is hidden at once.
    void updateDetailView();

    // Opacity of the box, 0 hidden .. 1 shown.
    qreal boxOpacity() const;
    void setBoxOpacity(qreal opacity);

    // The box's colours for an entry's kind: orange on red for "Ausgabe",
    // green on black for anything else.
    static QColor fillColorFor(const std::string& art);
    static QColor borderColorFor(const std::string& art);

    // The box, the form and its controls (for the window and for tests).
    DetailBox* box() const;
    EntryForm* form() const;
    QLineEdit* nameField() const;
    QLineEdit* rechnungsnummerField() const;
    QLineEdit* steuernummerField() const;
    QLineEdit* leistungsartField() const;
    QComboBox* kategoriePopUp() const;
    QLineEdit* bruttoField() const;
    QLineEdit* nettoField() const;
    QLineEdit* steuersatzField() const;
    QComboBox* artPopUp() const;
    DateField* datumPicker() const;
    QCheckBox* innergemCheckBox() const;
    QCheckBox* nonEUCheckBox() const;

    // Runs a running fade to its end at once, completion included.
    void finishAnimationsForTesting();

public slots:
    // The edit actions, as the controls send them after a user's edit.
    // Takes the whole form over (name of at least 3 characters).
    void textFieldEdited();
    // Art or category chosen in the sender pop-up.
    void popUpButtonChangedSelection(QComboBox* sender);
    // A new date in the date picker.
    void datePickerValueChanged();
    // One of the two flags toggled; the flags exclude each other.
    void checkBoxValueChanged(QCheckBox* sender);

private:
    void fadeInDetailBox(const QColor& fill, const QColor& border);
    void fillDetailFields();
    void updateBoxEnabled();
    void announceEdit();
    void documentChanged(const DocumentChange& change);

    class Private;
    Document& document_;
    UserDefaults& defaults_;
    EinnahmePtr selectedEinnahme_;
    Private* d_ = nullptr;
};

}  // namespace saldo::gui
