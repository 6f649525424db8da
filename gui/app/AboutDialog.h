#pragma once

#include <QDialog>

class QLabel;

namespace saldo::gui {

// "Ueber Saldo": the program's version and licence, and where its files live
// on this machine: the folder of the last ledger (ledgers live wherever the
// user saves them), the settings file and the folder of the recovery copies of
// untitled ledgers. The paths are asked for when the window is made, so they
// follow the XDG variables. Not modal.
class AboutDialog : public QDialog {
    Q_OBJECT
public:
    explicit AboutDialog(QWidget* parent = nullptr);

    // The text shown, rich text.
    QString text() const;

private:
    QLabel* text_ = nullptr;
};

} // namespace saldo::gui
