#include "platform/DeleteConfirmation.h"

#include <QMessageBox>
#include <QPushButton>

namespace saldo::gui {

DeleteConfirmation::Box DeleteConfirmation::create(QWidget* parent, const QString& text)
{
    Box result;
    result.box = std::make_unique<QMessageBox>(QMessageBox::Critical, QString(), text, QMessageBox::NoButton, parent);
    result.ok = result.box->addButton(QStringLiteral("OK"), QMessageBox::AcceptRole);
    result.box->addButton(QStringLiteral("Abbrechen"), QMessageBox::RejectRole);
    result.box->setDefaultButton(result.ok);
    return result;
}

}  // namespace saldo::gui
