#pragma once

#include <QString>

#include <memory>

class QMessageBox;
class QPushButton;
class QWidget;

namespace saldo::gui {

// The alert that asks before entries are deleted: critical style, the message
// "Moechten Sie n Eintraege loeschen?" and no informative text, the buttons
// "OK" (first, the default) and "Abbrechen".
class DeleteConfirmation {
public:
    struct Box {
        std::unique_ptr<QMessageBox> box;
        QPushButton* ok = nullptr;
    };
    static Box create(QWidget* parent, const QString& text);
};

}  // namespace saldo::gui
