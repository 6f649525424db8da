#include "settings/DatevPreferencesPage.h"

#include "settings/DatevSettings.h"

#include <QComboBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QRegularExpressionValidator>
#include <QVBoxLayout>

namespace saldo::gui {

namespace {
QLineEdit* numberField(QWidget* parent, const QString& name, int digits, const QString& range)
{
    auto* field = new QLineEdit(parent);
    field->setObjectName(name);
    field->setValidator(
        new QRegularExpressionValidator(QRegularExpression(QStringLiteral("[0-9]{0,%1}").arg(digits)), field));
    field->setPlaceholderText(range);
    field->setClearButtonEnabled(true);
    return field;
}

QString numberText(const std::optional<std::uint32_t>& number)
{
    return number ? QString::number(*number) : QString();
}
} // namespace

DatevPreferencesPage::DatevPreferencesPage(UserDefaults& defaults, QWidget* parent)
    : QWidget(parent)
    , defaults_(defaults)
{
    setObjectName(QStringLiteral("DatevPreferencesPage"));
    const DatevSettings settings = DatevSettings::read(defaults_);

    beraternummer_ = numberField(this, QStringLiteral("beraternummer"), 7, QStringLiteral("1001 bis 9999999"));
    beraternummer_->setText(numberText(settings.beraternummer));
    mandantennummer_ = numberField(this, QStringLiteral("mandantennummer"), 5, QStringLiteral("1 bis 99999"));
    mandantennummer_->setText(numberText(settings.mandantennummer));
    wirtschaftsjahrBeginn_ = new QComboBox(this);
    wirtschaftsjahrBeginn_->setObjectName(QStringLiteral("wirtschaftsjahrBeginn"));
    wirtschaftsjahrBeginn_->addItems(monthNames());
    wirtschaftsjahrBeginn_->setCurrentIndex(settings.wirtschaftsjahrBeginn - 1);
    problem_ = new QLabel(this);
    problem_->setObjectName(QStringLiteral("problem"));
    problem_->setWordWrap(true);
    problem_->setStyleSheet(QStringLiteral("color: #b00020"));

    connect(beraternummer_, &QLineEdit::editingFinished, this, &DatevPreferencesPage::storeNumbers);
    connect(mandantennummer_, &QLineEdit::editingFinished, this, &DatevPreferencesPage::storeNumbers);
    connect(wirtschaftsjahrBeginn_, &QComboBox::currentIndexChanged, this,
        [this](int index) { DatevSettings::storeWirtschaftsjahrBeginn(defaults_, index + 1); });

    auto* form = new QFormLayout;
    form->addRow(QStringLiteral("&Beraternummer:"), beraternummer_);
    form->addRow(QStringLiteral("&Mandantennummer:"), mandantennummer_);
    form->addRow(QStringLiteral("&Wirtschaftsjahr beginnt im:"), wirtschaftsjahrBeginn_);
    auto* note = new QLabel(QStringLiteral("Die Nummern vergibt Ihr Steuerberater. Jeder DATEV-Export "
                                           "(Ablage \u25B8 DATEV-Export\u2026) schreibt sie in den Kopf "
                                           "seiner Dateien; ohne sie beginnt er nicht."),
        this);
    note->setWordWrap(true);
    note->setEnabled(false);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(problem_);
    layout->addWidget(note);
    layout->addStretch();
}

QStringList DatevPreferencesPage::monthNames()
{
    return { QStringLiteral("Januar"), QStringLiteral("Februar"), QStringLiteral("Maerz"), QStringLiteral("April"),
        QStringLiteral("Mai"), QStringLiteral("Juni"), QStringLiteral("Juli"), QStringLiteral("August"),
        QStringLiteral("September"), QStringLiteral("Oktober"), QStringLiteral("November"),
        QStringLiteral("Dezember") };
}

void DatevPreferencesPage::storeNumbers()
{
    QStringList problems;
    const auto store = [&](QLineEdit* field, bool (*valid)(long long), const QString& range,
                           void (*write)(UserDefaults&, std::optional<std::uint32_t>)) {
        if (!field->isModified()) {
            if (!problem_->text().contains(range))
                return;
            problems << range; // still shown, still not stored
            return;
        }
        field->setModified(false);
        const QString text = field->text();
        if (text.isEmpty()) {
            write(defaults_, std::nullopt);
            return;
        }
        const long long number = text.toLongLong();
        if (valid(number))
            write(defaults_, static_cast<std::uint32_t>(number));
        else
            problems << range;
    };
    store(beraternummer_, DatevSettings::isBeraternummer,
        QStringLiteral("Die Beraternummer liegt zwischen 1001 und 9999999."), DatevSettings::storeBeraternummer);
    store(mandantennummer_, DatevSettings::isMandantennummer,
        QStringLiteral("Die Mandantennummer liegt zwischen 1 und 99999."), DatevSettings::storeMandantennummer);
    problem_->setText(problems.join(QLatin1Char(' ')));
}

void DatevPreferencesPage::hideEvent(QHideEvent* event)
{
    storeNumbers();
    QWidget::hideEvent(event);
}

} // namespace saldo::gui
