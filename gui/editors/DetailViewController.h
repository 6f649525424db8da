#pragma once

#include "model/Einnahme.h"
#include "platform/UserDefaults.h"

#include <QWidget>

namespace saldo::gui {

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

signals:
    // The document is to be marked changed.
    void changeDone();

private:
    class Private;
    UserDefaults& defaults_;
    EinnahmePtr selectedEinnahme_;
    Private* d_ = nullptr;
};

}  // namespace saldo::gui
