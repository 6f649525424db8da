#include "evaluation/UstvaTables.h"

#include "tax/CentText.h"
#include "tax/UstvaText.h"

namespace saldo::gui {

namespace {
QString text(const std::string& s)
{
    return QString::fromStdString(s);
}

QString euros(std::int64_t cents)
{
    return text(tax::CentText::euros(cents));
}

constexpr Qt::Alignment kLeft = Qt::AlignLeft | Qt::AlignVCenter;
constexpr Qt::Alignment kRight = Qt::AlignRight | Qt::AlignVCenter;
} // namespace

void UstvaTables::showForm(FormTableModel& model, const tax::UstvaResult& result)
{
    QList<FormTableModel::Row> rows;
    for (const tax::UstvaText::Row& row : tax::UstvaText::rows(result)) {
        FormTableModel::Row shown;
        shown.cells
            = { QString::number(row.zeile), text(row.kennzahl), text(row.label), text(row.base), text(row.tax) };
        shown.bold = row.result;
        shown.toolTip = text(row.label);
        rows << shown;
    }
    FormTableModel::Row booked;
    booked.cells
        = { QString(), QString(), QStringLiteral("Umsatzsteuer laut Buchungen"), QString(), euros(result.bookedTax) };
    booked.note = true;
    booked.toolTip = QString::fromUtf8(tax::UstvaText::bookedTaxExplanation());
    FormTableModel::Row difference;
    difference.cells = { QString(), QString(),
        QStringLiteral("Differenz zu Kz %1 (ganze Euro der Bemessungsgrundlagen)").arg(result.form->resultKz),
        QString(), euros(result.differenceCents()) };
    difference.note = true;
    difference.toolTip = QString::fromUtf8(tax::UstvaText::differenceExplanation());
    rows << booked << difference;
    model.setTable({ { QStringLiteral("Zeile"), kRight }, { QStringLiteral("Kz"), kLeft },
                       { QStringLiteral("Bezeichnung"), kLeft }, { QStringLiteral("Bemessungsgrundlage (€)"), kRight },
                       { QStringLiteral("Steuer (€)"), kRight } },
        std::move(rows));
}

QStringList UstvaTables::formNotes(const tax::UstvaResult& result)
{
    using tax::UstvaBox;
    QStringList notes;
    notes << QStringLiteral("Bemessungsgrundlagen in ganzen Euro (die Cent gekuerzt), Steuer in Euro und Cent; ein "
                            "negativer Betrag in Kz %1 ist ein Ueberschuss (Erstattung).")
                 .arg(result.form->resultKz);
    notes << QString::fromUtf8(tax::UstvaText::bookedTaxExplanation()) + QLatin1Char(' ')
            + QString::fromUtf8(tax::UstvaText::differenceExplanation());
    bool reverseCharge = false;
    for (UstvaBox box : { UstvaBox::IgErwerb19, UstvaBox::IgErwerb7, UstvaBox::IgErwerbAndereBasis,
             UstvaBox::Leistung13bEuBasis, UstvaBox::Leistung13bAndereBasis })
        reverseCharge = reverseCharge || result.sum(box) != 0;
    if (reverseCharge)
        notes << QString::fromUtf8(tax::UstvaText::reverseChargeExplanation());
    if (result.ohneVorsteuer > 0)
        notes << QStringLiteral("%1 Ausgaben zu 0 % haben keine Vorsteuer und stehen in keiner Kennzahl.")
                     .arg(result.ohneVorsteuer);
    return notes;
}

void UstvaTables::showKleinunternehmer(FormTableModel& model, const tax::KleinunternehmerResult& result)
{
    const auto row = [](const QString& year, std::int64_t cents, std::int64_t limit) {
        FormTableModel::Row shown;
        shown.cells = { year, euros(cents), euros(limit),
            cents > limit ? QStringLiteral("ueberschritten") : QStringLiteral("nicht ueberschritten") };
        shown.bold = cents > limit;
        return shown;
    };
    model.setTable({ { QStringLiteral("Jahr"), kLeft }, { QStringLiteral("Einnahmen brutto (€)"), kRight },
                       { QStringLiteral("Grenze (€)"), kRight }, { QStringLiteral("Ergebnis"), kLeft } },
        { row(QStringLiteral("%1 (Vorjahr)").arg(result.year - 1), result.previousYearCents,
              result.previousYearLimitCents),
            row(QString::number(result.year), result.currentYearCents, result.currentYearLimitCents) });
}

QStringList UstvaTables::kleinunternehmerNotes(const tax::KleinunternehmerResult& result)
{
    QStringList notes;
    notes << QStringLiteral("Kleinunternehmer (§ 19 UStG) ist in den Einstellungen eingeschaltet: es gibt keine "
                            "Umsatzsteuer-Voranmeldung. Gezaehlt sind die Einnahmen brutto, ohne Geldkonten, "
                            "Privateinlagen und Erstattungen des Finanzamts.");
    if (result.crossing) {
        notes << QStringLiteral("Die Einnahmen von %1 gingen am %2 erstmals ueber %3 € (Eintrag %4: „%5“); von "
                                "diesem Umsatz an gilt die Regelbesteuerung.")
                     .arg(result.year)
                     .arg(text(result.crossing->dayText()), euros(result.currentYearLimitCents),
                         text(result.crossing->row), text(result.crossing->name));
    } else {
        notes << QStringLiteral("Die Einnahmen von %1 haben %2 € bisher nicht ueberschritten.")
                     .arg(result.year)
                     .arg(euros(result.currentYearLimitCents));
    }
    if (result.previousYearOver())
        notes << QStringLiteral("Die Einnahmen des Vorjahres liegen ueber %1 €: %2 ist kein Jahr als "
                                "Kleinunternehmer.")
                     .arg(euros(result.previousYearLimitCents))
                     .arg(result.year);
    return notes;
}

} // namespace saldo::gui
