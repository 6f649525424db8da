#pragma once

#include "evaluation/TaxFormWindow.h"
#include "model/Einnahme.h"
#include "model/SnapshotGate.h"
#include "platform/NotificationCenter.h"
#include "platform/UserDefaults.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <vector>

class QComboBox;
class QSplitter;

namespace saldo::gui {

class ListedItemsView;

// The window "Anlage EÜR" of one ledger, a TaxFormWindow: a year chooser
// (the years the ledger holds and this one), the form's lines that are not
// zero with Zeile, text, Kennzahl and amount, the sums Zeile 23, 75 and 92 in
// bold, the sentences on what the form leaves to the user, and below them,
// in tabs, the lists "nicht zugeordnet", "nicht abziehbar", "Anlagegut",
// "nicht Teil der EÜR" and, when there are any, the hints. A double-click on
// a line of the form lists the items behind it in a tab of its own, which
// the PDF leaves out. A year Saldo has no form for says so.
//
// It follows the ledger's changes and the Kleinunternehmer setting; the
// figures, the ledger's years and the items behind a line are worked out on
// a worker (LedgerWorker) over a snapshot of the complete list.
class EuerViewController : public TaxFormWindow {
    Q_OBJECT
public:
    EuerViewController(Document& document, UserDefaults& defaults, QWidget* parent = nullptr);
    ~EuerViewController() override;

    // The year shown; none before the first evaluation is done. Setting one
    // selects it in the chooser and computes again.
    std::optional<int> year() const { return year_; }
    void setYear(int year);

    // The line of the form (an index of its lines) that a row of the form's
    // table shows.
    std::optional<std::size_t> lineOfRow(int row) const;
    // What a double-click on a row of the form does: its items in their tab.
    void showItemsBehind(int row);

    ListedItemsView* nichtZugeordnetView() const { return nichtZugeordnet_; }
    ListedItemsView* nichtAbziehbarView() const { return nichtAbziehbar_; }
    ListedItemsView* anlagegutView() const { return anlagegut_; }
    ListedItemsView* nichtTeilView() const { return nichtTeil_; }
    ListedItemsView* hinweiseView() const { return hinweise_; }
    ListedItemsView* lineItemsView() const { return lineItems_; }
    QComboBox* yearChooser() const { return years_; }
    // How the amounts are taken, or why a year has no form.
    QLabel* taxationLabel() const { return taxation_; }

protected:
    QString pdfFileName() const override;
    QString pdfSubtitle() const override;

private:
    struct Evaluation;
    // The worker's part: the years, the form and the line's items, all read through the gate.
    static void evaluate(Evaluation& evaluation, const EinnahmeList& entries, const SnapshotGate& gate);
    void chooseYear();
    void showEvaluation();
    void showYears(const std::vector<int>& years);
    void showForm(Evaluation& evaluation);
    void closeLineTab();
    // Once, for the first form shown: the splitter and the list in front.
    void arrangeFirstForm();

    UserDefaults& defaults_;
    // The year asked for; none until the first evaluation has chosen one.
    std::optional<int> chosenYear_;
    std::optional<int> year_;
    // The line whose items are asked for, an index of the year's form's lines.
    std::optional<std::size_t> chosenLine_;
    bool lineTabWanted_ = false;
    std::vector<std::size_t> lineOfRow_;
    std::shared_ptr<Evaluation> pending_;
    NotificationCenter::Token settingsObserver_ = 0;

    QComboBox* years_ = nullptr;
    QLabel* taxation_ = nullptr;
    ListedItemsView* nichtZugeordnet_ = nullptr;
    ListedItemsView* nichtAbziehbar_ = nullptr;
    ListedItemsView* anlagegut_ = nullptr;
    ListedItemsView* nichtTeil_ = nullptr;
    ListedItemsView* hinweise_ = nullptr;
    ListedItemsView* lineItems_ = nullptr;
    QSplitter* splitter_ = nullptr;
    bool arranged_ = false;
};

} // namespace saldo::gui
