#pragma once

#include "evaluation/FormTableModel.h"
#include "tax/KleinunternehmerCheck.h"
#include "tax/UstvaCalculation.h"

#include <QStringList>

namespace saldo::gui {

// What the VAT return's window shows of the core's figures: the form's
// filled lines with Kz 83 in bold, then the VAT as booked and the difference;
// or, for a Kleinunternehmer, the two years' income against their limits;
// and the sentences below either table.
class UstvaTables {
public:
    static void showForm(FormTableModel& model, const tax::UstvaResult& result);
    static QStringList formNotes(const tax::UstvaResult& result);

    static void showKleinunternehmer(FormTableModel& model, const tax::KleinunternehmerResult& result);
    static QStringList kleinunternehmerNotes(const tax::KleinunternehmerResult& result);
};

} // namespace saldo::gui
