#include "platform/FileDialog.h"

namespace saldo::gui {

std::unique_ptr<QFileDialog> FileDialog::create(
    QWidget* parent, const QString& caption, const QString& start, const QString& filter, QFileDialog::AcceptMode mode)
{
    auto dialog = std::make_unique<QFileDialog>(parent, caption, start, filter);
    dialog->setAcceptMode(mode);
    dialog->setFileMode(mode == QFileDialog::AcceptOpen ? QFileDialog::ExistingFile : QFileDialog::AnyFile);
    dialog->setLabelText(
        QFileDialog::Accept, mode == QFileDialog::AcceptOpen ? QStringLiteral("&Oeffnen") : QStringLiteral("&Sichern"));
    return dialog;
}

QString FileDialog::run(QFileDialog& dialog)
{
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return QString();
    return dialog.selectedFiles().constFirst();
}

} // namespace saldo::gui
