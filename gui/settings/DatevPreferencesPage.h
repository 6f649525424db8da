#pragma once

#include "platform/UserDefaults.h"

#include <QWidget>

class QComboBox;
class QLabel;
class QLineEdit;

namespace saldo::gui {

// The page "DATEV" of the preferences: the Beraternummer (1001 to 9999999),
// the Mandantennummer (1 to 99999) and the month the fiscal year begins with,
// which every DATEV export writes into its batches' header. A number is
// stored when its field is left or the page is hidden; an empty field clears
// it, and a number out of its range is not stored: the page says why below
// the fields and keeps the number stored before. A field the user did not
// change is not written. The month is stored as soon as it is chosen.
class DatevPreferencesPage : public QWidget {
    Q_OBJECT
public:
    explicit DatevPreferencesPage(UserDefaults& defaults, QWidget* parent = nullptr);

    QLineEdit* beraternummer() const { return beraternummer_; }
    QLineEdit* mandantennummer() const { return mandantennummer_; }
    QComboBox* wirtschaftsjahrBeginn() const { return wirtschaftsjahrBeginn_; }
    // Why a number was not stored, or empty.
    QLabel* problem() const { return problem_; }

    // The German month names, January first ("Maerz").
    static QStringList monthNames();

public slots:
    // Stores the numbers the user changed, as the fields show them (what
    // leaving a field does).
    void storeNumbers();

protected:
    void hideEvent(QHideEvent* event) override;

private:
    UserDefaults& defaults_;
    QLineEdit* beraternummer_ = nullptr;
    QLineEdit* mandantennummer_ = nullptr;
    QComboBox* wirtschaftsjahrBeginn_ = nullptr;
    QLabel* problem_ = nullptr;
};

} // namespace saldo::gui
