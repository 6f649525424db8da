#pragma once

#include <QDialog>

#include <cstdint>
#include <optional>
#include <utility>

class QComboBox;
class QDateEdit;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;
class QSpinBox;

namespace saldo {
struct LocalDay;
}

namespace saldo::gui {

class Document;

// "DATEV-Export" of a document window: writes the whole ledger's items of a
// chosen year, quarter, month or span of days as booking batches for the tax
// adviser, with the money account (1200 Bank, 1000 Kasse, or a number typed)
// as Konto, to a file of the user's choice: one file per calendar year, the
// year put before the extension when there are several. It does not start
// while the Beraternummer or the Mandantennummer is missing from the
// preferences, says which, and offers to open them; it reads them again
// whenever it becomes the active window. The files are written through the
// atomic writer; one that exists already and was not confirmed in the save
// panel is replaced only when the user agrees. Afterwards the dialog shows
// what was written and what was left out, and stays open for another export.
// It is not modal: the window can be used while it is open.
class DatevExportDialog : public QDialog {
    Q_OBJECT
public:
    enum PeriodKind { Jahr, Quartal, Monat, Zeitraum };

    DatevExportDialog(Document& document, QWidget* parent);

    QComboBox* periodKind() const { return periodKind_; }
    QSpinBox* year() const { return year_; }
    QComboBox* quarter() const { return quarter_; }
    QComboBox* month() const { return month_; }
    QDateEdit* from() const { return from_; }
    QDateEdit* to() const { return to_; }
    QComboBox* konto() const { return konto_; }
    QLineEdit* file() const { return file_; }
    QLabel* fileNote() const { return fileNote_; }
    QLabel* missingSettings() const { return missingSettings_; }
    QPushButton* exportButton() const { return exportButton_; }
    QPlainTextEdit* summary() const { return summary_; }

    // The days the period fields name, first and last included.
    std::pair<LocalDay, LocalDay> chosenDays() const;
    // The money account as typed or chosen ("1200 Bank" is 1200), or nothing
    // when the text does not begin with an account of one to four digits.
    std::optional<std::uint32_t> chosenKonto() const;

public slots:
    // Reads the preferences again: says what is missing and enables the export.
    void refreshSettings();
    // The save panel for the file.
    void chooseFile();
    // Writes the batches and shows the summary; false when nothing was written.
    bool exportBatches();

protected:
    bool event(QEvent* event) override;

private:
    void periodChanged();
    QString periodLabel() const;
    QString startFolder() const;

    Document& document_;
    QComboBox* periodKind_ = nullptr;
    QSpinBox* year_ = nullptr;
    QComboBox* quarter_ = nullptr;
    QComboBox* month_ = nullptr;
    QDateEdit* from_ = nullptr;
    QDateEdit* to_ = nullptr;
    QLabel* bis_ = nullptr;
    QComboBox* konto_ = nullptr;
    QLineEdit* file_ = nullptr;
    QLabel* fileNote_ = nullptr;
    QLabel* missingSettings_ = nullptr;
    QPushButton* settingsButton_ = nullptr;
    QPushButton* exportButton_ = nullptr;
    QPlainTextEdit* summary_ = nullptr;
    // The file name follows the period until the user names a file.
    bool fileFollowsPeriod_ = true;
    // The file the save panel confirmed replacing.
    QString confirmedFile_;
};

} // namespace saldo::gui
