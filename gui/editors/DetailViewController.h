#pragma once

#include "model/Einnahme.h"
#include "platform/UserDefaults.h"

#include <QColor>
#include <QWidget>

class QCheckBox;
class QComboBox;
class QDateTimeEdit;
class QLineEdit;

namespace saldo::gui {

class DetailBox;

// The detail panel: the one entry selected in the entry table as a form inside
// a coloured box (green on black for income, orange on red for an expense).
// Edits go straight into the shared entry, mark the document changed
// (changeDone) and post "DetailViewUpdated" so every entry table reloads. The
// box is hidden (opacity 0) unless exactly one entry is selected.
class DetailViewController : public QWidget {
    Q_OBJECT
public:
    explicit DetailViewController(UserDefaults& defaults, QWidget* parent = nullptr);
    ~DetailViewController() override;

    EinnahmePtr selectedEinnahme() const { return selectedEinnahme_; }
    void setSelectedEinnahme(EinnahmePtr entry) { selectedEinnahme_ = std::move(entry); }

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

    // The box and the form's controls (for the window and for tests).
    DetailBox* box() const;
    QLineEdit* nameField() const;
    QLineEdit* rechnungsnummerField() const;
    QLineEdit* steuernummerField() const;
    QLineEdit* leistungsartField() const;
    QComboBox* kategoriePopUp() const;
    QLineEdit* bruttoField() const;
    QLineEdit* nettoField() const;
    QLineEdit* steuersatzField() const;
    QComboBox* artPopUp() const;
    QDateTimeEdit* datumPicker() const;
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

signals:
    // The document is to be marked changed.
    void changeDone();

private:
    void fadeInDetailBox(const QColor& fill, const QColor& border);
    void fillDetailFields();
    void refillKategorien();
    void updateBoxEnabled();
    void announceEdit();

    class Private;
    UserDefaults& defaults_;
    EinnahmePtr selectedEinnahme_;
    Private* d_ = nullptr;
};

}  // namespace saldo::gui
