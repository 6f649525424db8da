#pragma once

#include "evaluation/TaxFormWindow.h"
#include "model/Einnahme.h"
#include "platform/NotificationCenter.h"
#include "platform/UserDefaults.h"
#include "tax/KleinunternehmerCheck.h"
#include "tax/TaxPeriod.h"
#include "tax/UstvaCalculation.h"

#include <memory>
#include <optional>

class QComboBox;

namespace saldo::gui {

class ListedItemsView;

// The window "Umsatzsteuer-Voranmeldung" of one ledger, a TaxFormWindow: a
// period chooser (a month, a quarter or the year, of the years Saldo has a
// form for), the form's filled lines with Kz 83 in bold, the VAT as booked
// and the difference, each explained in a sentence, and below them, in tabs,
// the lists "nicht zugeordnet", "nicht Teil der Voranmeldung" and, when there
// are any, the placed amounts that are not exact to the cent. With the
// setting "Kleinunternehmer (§ 19 UStG)" on, it shows no form but the year's
// income against the limits.
//
// It follows the ledger's changes, the chosen period and the setting; the
// figures are worked out on a worker (LedgerWorker) over a snapshot of the
// complete list.
class UstvaViewController : public TaxFormWindow {
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

    ListedItemsView* nichtZugeordnetView() const { return nichtZugeordnet_; }
    ListedItemsView* nichtTeilView() const { return nichtTeil_; }
    ListedItemsView* nichtCentgenauView() const { return nichtCentgenau_; }
    QComboBox* yearChooser() const { return years_; }
    QComboBox* periodChooser() const { return spans_; }

protected:
    QString pdfFileName() const override;

private:
    struct Evaluation;
    void choosePeriod();
    void showEvaluation();
    // The quarter of the ledger's latest entry in the years Saldo has a form
    // for; else the first quarter of the latest such year up to this one.
    tax::TaxPeriod defaultPeriod() const;

    UserDefaults& defaults_;
    tax::TaxPeriod period_;
    std::shared_ptr<Evaluation> pending_;
    std::optional<tax::UstvaResult> ustva_;
    std::optional<tax::KleinunternehmerResult> kleinunternehmer_;
    NotificationCenter::Token settingsObserver_ = 0;

    QComboBox* years_ = nullptr;
    QComboBox* spans_ = nullptr;
    ListedItemsView* nichtZugeordnet_ = nullptr;
    ListedItemsView* nichtTeil_ = nullptr;
    ListedItemsView* nichtCentgenau_ = nullptr;
};

} // namespace saldo::gui
