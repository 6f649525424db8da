#include "settings/TaxPreferencesPage.h"

#include "tax/TaxSettings.h"

#include <QCheckBox>
#include <QLabel>
#include <QVBoxLayout>

namespace saldo::gui {

TaxPreferencesPage::TaxPreferencesPage(UserDefaults& defaults, QWidget* parent)
    : QWidget(parent)
    , defaults_(defaults)
{
    kleinunternehmer_ = new QCheckBox(QStringLiteral("&Kleinunternehmer (§ 19 UStG)"), this);
    kleinunternehmer_->setObjectName(QStringLiteral("kleinunternehmer"));
    kleinunternehmer_->setChecked(tax::TaxSettings::isKleinunternehmer(defaults_));
    connect(kleinunternehmer_, &QCheckBox::toggled, this,
        [this](bool on) { tax::TaxSettings::setKleinunternehmer(defaults_, on); });
    auto* note = new QLabel(QStringLiteral("Ohne Umsatzsteuer: statt der Umsatzsteuer-Voranmeldung zeigt Saldo die "
                                           "Einnahmen des Jahres und des Vorjahres gegen die Grenzen des § 19 UStG."),
        this);
    note->setWordWrap(true);
    note->setEnabled(false);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(kleinunternehmer_);
    layout->addWidget(note);
    layout->addStretch();
}

} // namespace saldo::gui
