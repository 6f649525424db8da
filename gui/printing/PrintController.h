#pragma once

#include <QObject>

class QPrinter;
class QWidget;

namespace saldo::gui {

class Document;

// Printing in one document window: "Drucken…" asks for the print settings
// and prints the document's complete list (every entry in stored order,
// whatever search or sort the table shows) with its split bookings and the
// evaluation; "Druckvorschau…" shows those pages first; "Als PDF sichern…"
// writes them to a PDF file the user names. The printer and its settings
// are the program's one shared printer: what was chosen for one print is
// offered again for the next, in every window.
class PrintController : public QObject {
    Q_OBJECT
public:
    PrintController(Document& document, QWidget* window, QObject* parent = nullptr);

    // The program's printer, made on first use and kept until the program
    // ends. It prints in full-page mode (the printout keeps no margins of its
    // own) on the printer's paper; without a printer of the system it prints
    // on the paper of the user's locale.
    static QPrinter& sharedPrinter();

public slots:
    void drucken();
    void druckvorschau();
    // Answers whether the PDF was written.
    bool alsPdfSichern();

private:
    // Prints the pages the printer's settings ask for; says so when it cannot.
    void printOn(QPrinter& printer) const;

    Document& document_;
    QWidget* window_;
};

} // namespace saldo::gui
