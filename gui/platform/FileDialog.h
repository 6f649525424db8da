#pragma once

#include <QFileDialog>

#include <memory>

namespace saldo::gui {

// The open and save panels: Qt's file dialog (or the desktop's own, where the
// platform offers one) starting in a given folder or at a proposed file, its
// main button named as the program's menus name the command ("Oeffnen",
// "Sichern") rather than by the toolkit's translation.
class FileDialog {
public:
    static std::unique_ptr<QFileDialog> create(QWidget* parent, const QString& caption, const QString& start,
        const QString& filter, QFileDialog::AcceptMode mode);
    // Runs the dialog; the chosen file, or an empty string when cancelled.
    static QString run(QFileDialog& dialog);
};

} // namespace saldo::gui
