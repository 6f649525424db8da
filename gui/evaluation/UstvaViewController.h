#pragma once

#include "model/Einnahme.h"
#include "platform/NotificationCenter.h"
#include "platform/UserDefaults.h"
#include "tax/KleinunternehmerCheck.h"
#include "tax/TaxPeriod.h"
#include "tax/UstvaCalculation.h"

#include <QWidget>

#include <memory>
#include <optional>

class QComboBox;
class QLabel;
class QPushButton;
class QTabWidget;
class QTableView;

namespace saldo::gui {

class Document;
class FormTableModel;
class LedgerWorker;
class ListedItemsView;

// The window "Umsatzsteuer-Voranmeldung" of one ledger: a period chooser
// (a month, a quarter or the year, of the years Saldo has a form for), the
// form's filled lines with Kz 83 in bold, the VAT as booked and the
// difference, each explained in a sentence, and below them, in tabs, the
// lists "nicht zugeordnet", "nicht Teil der Voranmeldung" and, when there are
// any, the placed amounts that are not exact to the cent. A double-click on a listed
// item asks for its entry in the ledger's table. "Kopieren" puts the form's
// table on the clipboard, tab-separated; "Als PDF sichern…" writes it on one
// A4 page. With the setting "Kleinunternehmer (§ 19 UStG)" on, it shows no
// form but the year's income against the limits.
//
// It follows the ledger's changes, the chosen period and the setting; the
// figures are worked out on a worker (LedgerWorker) over a snapshot of the
// complete list.
class UstvaViewController : public QWidget {
    Q_OBJECT
public:
    UstvaViewController(Document& document, UserDefaults& defaults, QWidget* parent = nullptr);
    ~UstvaViewController() override;

    // The period shown; setting one selects it in the chooser and computes again.
    const tax::TaxPeriod& period() const { return period_; }
    void setPeriod(const tax::TaxPeriod& period);

    // The figures now shown; none before the first evaluation is done.
    const std::optional<tax::UstvaResult>& ustva() const { return ustva_; }
    const std::optional<tax::KleinunternehmerResult>& kleinunternehmer() const { return kleinunternehmer_; }

    LedgerWorker& worker() const { return *worker_; }
    FormTableModel* formModel() const { return formModel_; }
    QTableView* formView() const { return formView_; }
    ListedItemsView* nichtZugeordnetView() const { return nichtZugeordnet_; }
    ListedItemsView* nichtTeilView() const { return nichtTeil_; }
    ListedItemsView* nichtCentgenauView() const { return nichtCentgenau_; }
    QTabWidget* lists() const { return lists_; }
    QComboBox* yearChooser() const { return years_; }
    QComboBox* periodChooser() const { return spans_; }
    QLabel* notesLabel() const { return notes_; }

public slots:
    // The form's table, tab-separated, on the clipboard.
    void kopieren();
    // Asks for a file and writes the page; answers whether it was written.
    bool alsPdfSichern();

signals:
    // A listed item was double-clicked: its top-level entry.
    void entryActivated(const saldo::EinnahmePtr& entry);

private:
    struct Evaluation;
    void choosePeriod();
    void showEvaluation();
    void updateTitle();
    // The quarter of the ledger's latest entry in the years Saldo has a form
    // for; else the first quarter of the latest such year up to this one.
    tax::TaxPeriod defaultPeriod() const;

    Document& document_;
    UserDefaults& defaults_;
    tax::TaxPeriod period_;
    LedgerWorker* worker_ = nullptr;
    std::shared_ptr<Evaluation> pending_;
    std::optional<tax::UstvaResult> ustva_;
    std::optional<tax::KleinunternehmerResult> kleinunternehmer_;
    NotificationCenter::Token settingsObserver_ = 0;

    QComboBox* years_ = nullptr;
    QComboBox* spans_ = nullptr;
    QLabel* busy_ = nullptr;
    QLabel* heading_ = nullptr;
    FormTableModel* formModel_ = nullptr;
    QTableView* formView_ = nullptr;
    QLabel* notes_ = nullptr;
    ListedItemsView* nichtZugeordnet_ = nullptr;
    ListedItemsView* nichtTeil_ = nullptr;
    ListedItemsView* nichtCentgenau_ = nullptr;
    QTabWidget* lists_ = nullptr;
};

} // namespace saldo::gui
