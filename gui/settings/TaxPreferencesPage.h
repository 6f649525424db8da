#pragma once

#include "platform/UserDefaults.h"

#include <QWidget>

class QCheckBox;

namespace saldo::gui {

// The preferences page "Steuer": whether the business is a Kleinunternehmer
// (§ 19 UStG), stored in the program's settings at once on every click; the
// tax windows follow it.
class TaxPreferencesPage : public QWidget {
    Q_OBJECT
public:
    explicit TaxPreferencesPage(UserDefaults& defaults, QWidget* parent = nullptr);

    QCheckBox* kleinunternehmer() const { return kleinunternehmer_; }

private:
    UserDefaults& defaults_;
    QCheckBox* kleinunternehmer_ = nullptr;
};

} // namespace saldo::gui
