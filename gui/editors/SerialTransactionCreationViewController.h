#pragma once

#include "model/Einnahme.h"

#include <QDialog>
#include <QString>

#include <cstddef>
#include <optional>

class QAbstractButton;
class QComboBox;
class QPlainTextEdit;
class QPushButton;

namespace saldo::gui {

class Document;

// The recurring-entries sheet: a modal dialog over the document window that
// turns the entry at a shown row into a series for the whole year. It
// describes the entry (its labels and values in two aligned columns), offers the day of the month (the 1st or the 15th)
// and the interval ("Monat", "2ter Monat", "3ter Monat"), and computes the series (RecurringSeries) whenever the user
// chooses in either pop-up. "OK" hands a computed series to the document as one step that can be undone
// ("Serienbuchung"): the copies at the end of both lists, all selected, the
// template gone. The pop-ups show no choice until the user makes one, and
// "OK" stays off until both show one; before any choice there is no series.
class SerialTransactionCreationViewController : public QDialog {
    Q_OBJECT
public:
    // The sheet for the entry at `selectedIndex` of the shown list (none: an
    // empty description, no series).
    SerialTransactionCreationViewController(
        Document& document, std::optional<std::size_t> selectedIndex, QWidget* parent = nullptr);

    const EinnahmeList& transactions() const { return transactions_; }
    const EinnahmeList& newlyCreatedTransactions() const { return newlyCreatedTransactions_; }
    std::optional<std::size_t> selectedIndex() const { return selectedIndex_; }
    const QString& transactionDescriptionText() const { return transactionDescriptionText_; }

    QPlainTextEdit* transactionDescriptionLabel() const { return transactionDescriptionLabel_; }
    QComboBox* whenInMonthSelection() const { return whenInMonthSelection_; }
    QComboBox* intervallSelection() const { return intervallSelection_; }
    QPushButton* cancelButton() const { return cancel_; }
    QPushButton* okButton() const { return ok_; }

public slots:
    // Computes the series anew from both pop-ups' choices.
    void popupSelectionChanged();
    // A closing button: "ok" commits the series, if one was computed.
    void dismissTransactionViewControllerWithSender(QAbstractButton* sender);

private:
    Document& document_;
    EinnahmeList transactions_;
    EinnahmeList newlyCreatedTransactions_;
    std::optional<std::size_t> selectedIndex_;
    QString transactionDescriptionText_;

    QPlainTextEdit* transactionDescriptionLabel_ = nullptr;
    QComboBox* whenInMonthSelection_ = nullptr;
    QComboBox* intervallSelection_ = nullptr;
    QPushButton* cancel_ = nullptr;
    QPushButton* ok_ = nullptr;
};

} // namespace saldo::gui
