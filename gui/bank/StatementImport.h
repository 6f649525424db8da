#pragma once

#include <QObject>
#include <QPointer>
#include <QString>

class QWidget;

namespace saldo::gui {

class Document;
class StatementWindow;

// "Kontoauszug laden…" of a document window: asks for a statement file,
// reads it (asking for the bank's format only when none or several fit),
// makes the proposals with the person's rules against the document's
// entries, and shows them in a StatementWindow. A file that cannot be read
// changes nothing and is reported with one German reason. Damaged stored
// rules are not used; the window says so.
class StatementImport : public QObject {
    Q_OBJECT
public:
    StatementImport(Document& document, QWidget& window);

    // The open proposals window, or nullptr.
    StatementWindow* statementWindow() const;

public slots:
    void kontoauszugLaden();
    // Reads the file and shows its proposals; false when it was refused or
    // the person stopped at the question of the format.
    bool loadFile(const QString& path);

private:
    Document& document_;
    QWidget& window_;
    QPointer<StatementWindow> shown_;
};

} // namespace saldo::gui
