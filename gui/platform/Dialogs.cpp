#include "platform/Dialogs.h"

#include "platform/DeleteConfirmation.h"
#include "platform/FileDialog.h"

#include <QInputDialog>
#include <QMessageBox>
#include <QPrintDialog>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QPushButton>

#include <algorithm>

namespace saldo::gui {

namespace {
Dialogs* g_replacement = nullptr;
}

bool Dialogs::confirmDelete(QWidget* parent, const QString& text)
{
    DeleteConfirmation::Box alert = DeleteConfirmation::create(parent, text);
    alert.box->exec();
    return alert.box->clickedButton() == alert.ok;
}

bool Dialogs::confirm(QWidget* parent, const QString& text, const QString& informativeText, const QString& acceptTitle,
    const QString& rejectTitle)
{
    QMessageBox box(QMessageBox::Question, QString(), text, QMessageBox::NoButton, parent);
    box.setInformativeText(informativeText);
    QPushButton* accept = box.addButton(acceptTitle, QMessageBox::AcceptRole);
    box.addButton(rejectTitle, QMessageBox::RejectRole);
    box.setDefaultButton(accept);
    box.exec();
    return box.clickedButton() == accept;
}

Dialogs::SaveChoice Dialogs::askSaveChanges(QWidget* parent, const QString& documentName)
{
    QMessageBox box(QMessageBox::Warning, QString(),
        QStringLiteral("Sollen die Aenderungen am Dokument „%1“ gesichert werden?").arg(documentName),
        QMessageBox::NoButton, parent);
    box.setInformativeText(QStringLiteral("Ohne Sichern gehen die Aenderungen verloren."));
    QPushButton* save = box.addButton(QStringLiteral("Sichern…"), QMessageBox::AcceptRole);
    QPushButton* discard = box.addButton(QStringLiteral("Nicht sichern"), QMessageBox::DestructiveRole);
    QPushButton* cancel = box.addButton(QStringLiteral("Abbrechen"), QMessageBox::RejectRole);
    box.setDefaultButton(save);
    box.setEscapeButton(cancel);
    box.exec();
    if (box.clickedButton() == save)
        return SaveChoice::Save;
    if (box.clickedButton() == discard)
        return SaveChoice::DontSave;
    return SaveChoice::Cancel;
}

Dialogs::FileChangedChoice Dialogs::askFileChanged(QWidget* parent, const QString& documentName)
{
    QMessageBox box(QMessageBox::Warning, QString(),
        QStringLiteral("Die Datei des Dokuments „%1“ wurde von einem anderen Programm geaendert.").arg(documentName),
        QMessageBox::NoButton, parent);
    box.setInformativeText(QStringLiteral("Ueberschreiben sichert die Eintraege aus diesem Fenster ueber die "
                                          "geaenderte Datei. Neu laden zeigt die Datei, wie sie jetzt ist, und "
                                          "verwirft die Aenderungen in diesem Fenster. Abbrechen sichert nichts."));
    QPushButton* overwrite = box.addButton(QStringLiteral("Ueberschreiben"), QMessageBox::AcceptRole);
    QPushButton* reload = box.addButton(QStringLiteral("Neu laden"), QMessageBox::DestructiveRole);
    QPushButton* cancel = box.addButton(QStringLiteral("Abbrechen"), QMessageBox::RejectRole);
    box.setDefaultButton(cancel);
    box.setEscapeButton(cancel);
    box.exec();
    if (box.clickedButton() == overwrite)
        return FileChangedChoice::Overwrite;
    if (box.clickedButton() == reload)
        return FileChangedChoice::Reload;
    return FileChangedChoice::Cancel;
}

bool Dialogs::askRestoreDocument(QWidget* parent, const QString& text, const QString& informativeText)
{
    QMessageBox box(QMessageBox::Question, QString(), text, QMessageBox::NoButton, parent);
    box.setInformativeText(informativeText);
    QPushButton* restore = box.addButton(QStringLiteral("Wiederherstellen"), QMessageBox::AcceptRole);
    // No reject button: Escape or closing the box must not delete the copy.
    box.addButton(QStringLiteral("Verwerfen"), QMessageBox::DestructiveRole);
    box.setDefaultButton(restore);
    box.exec();
    return box.clickedButton() == restore;
}

QString Dialogs::getOpenFileName(
    QWidget* parent, const QString& caption, const QString& filter, const QString& directory)
{
    const auto dialog = FileDialog::create(parent, caption, directory, filter, QFileDialog::AcceptOpen);
    return FileDialog::run(*dialog);
}

QString Dialogs::getSaveFileName(
    QWidget* parent, const QString& caption, const QString& suggestedPath, const QString& filter)
{
    const auto dialog = FileDialog::create(parent, caption, suggestedPath, filter, QFileDialog::AcceptSave);
    return FileDialog::run(*dialog);
}

void Dialogs::beginSaveFileName(
    QWidget* parent, const QString& caption, const QString& directory, const QString& filter, SaveCompletion completion)
{
    QFileDialog* panel = FileDialog::create(parent, caption, directory, filter, QFileDialog::AcceptSave).release();
    panel->setAttribute(Qt::WA_DeleteOnClose);
    QObject::connect(panel, &QFileDialog::finished, panel, [panel, completion = std::move(completion)](int result) {
        const QStringList chosen = panel->selectedFiles();
        completion(result == QDialog::Accepted && !chosen.isEmpty() ? chosen.front() : QString());
    });
    panel->show();
}

void Dialogs::showError(QWidget* parent, const QString& text, const QString& informativeText)
{
    QMessageBox box(QMessageBox::Warning, QString(), text, QMessageBox::Ok, parent);
    box.setInformativeText(informativeText);
    box.exec();
}

bool Dialogs::askPrintSettings(QWidget* parent, QPrinter& printer, int pageCount)
{
    QPrintDialog dialog(&printer, parent);
    dialog.setMinMax(1, std::max(pageCount, 1));
    return dialog.exec() == QDialog::Accepted;
}

void Dialogs::showPrintPreview(QWidget* parent, QPrinter& printer, const std::function<void(QPrinter&)>& paint)
{
    QPrintPreviewDialog dialog(&printer, parent);
    QObject::connect(&dialog, &QPrintPreviewDialog::paintRequested, &dialog, [&paint](QPrinter* p) { paint(*p); });
    dialog.exec();
}

void Dialogs::showInformation(QWidget* parent, const QString& text, const QString& informativeText)
{
    QMessageBox box(QMessageBox::Information, QString(), text, QMessageBox::Ok, parent);
    box.setInformativeText(informativeText);
    box.exec();
}

int Dialogs::chooseItem(QWidget* parent, const QString& text, const QString& informativeText, const QStringList& items)
{
    bool ok = false;
    const QString chosen = QInputDialog::getItem(
        parent, QString(), text + QStringLiteral("\n\n") + informativeText, items, 0, false, &ok);
    return ok ? static_cast<int>(items.indexOf(chosen)) : -1;
}

Dialogs& Dialogs::instance()
{
    static Dialogs standard;
    return g_replacement ? *g_replacement : standard;
}

Dialogs* Dialogs::setInstance(Dialogs* dialogs)
{
    Dialogs* previous = g_replacement;
    g_replacement = dialogs;
    return previous;
}

} // namespace saldo::gui
