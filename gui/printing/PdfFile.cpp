#include "printing/PdfFile.h"

#include "model/LedgerFile.h"
#include "platform/Dialogs.h"
#include "platform/FileWriteError.h"
#include "platform/FileWriteErrorText.h"

#include <QBuffer>
#include <QFile>
#include <QFileInfo>
#include <QPageLayout>
#include <QPdfWriter>

#include <iostream>

namespace saldo::gui {

QByteArray PdfFile::render(const std::function<void(QPdfWriter&)>& paint)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    {
        QPdfWriter writer(&buffer);
        writer.setCreator(QStringLiteral("Saldo"));
        writer.setPageLayout(
            QPageLayout(QPageSize(QPageSize::A4), QPageLayout::Portrait, QMarginsF(), QPageLayout::Point));
        paint(writer);
    }
    return bytes;
}

void PdfFile::write(const QString& path, const QByteArray& bytes)
{
    LedgerFile::writeBesideLedgers(QFile::encodeName(path).toStdString(),
        std::string_view(bytes.constData(), static_cast<std::size_t>(bytes.size())));
}

bool PdfFile::saveWithDialog(QWidget* parent, const QString& suggestedPath, const std::function<QByteArray()>& render)
{
    QString path = Dialogs::instance().getSaveFileName(
        parent, QStringLiteral("Als PDF sichern"), suggestedPath, QStringLiteral("PDF-Dateien (*.pdf)"));
    if (path.isEmpty())
        return false;
    if (!path.endsWith(QStringLiteral(".pdf"), Qt::CaseInsensitive))
        path += QStringLiteral(".pdf");
    try {
        write(path, render());
        return true;
    } catch (const FileWriteError& error) {
        std::cerr << "saldo: " << error.what() << '\n';
        Dialogs::instance().showError(parent,
            QStringLiteral("Das PDF „%1“ konnte nicht gesichert werden.").arg(QFileInfo(path).fileName()),
            FileWriteErrorText::reason(error));
        return false;
    }
}

} // namespace saldo::gui
