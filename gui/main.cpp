// The desktop program: sets up the platform services and hands over to the
// document controller, which opens the files named on the command line, or a
// new document when none is named.
//   saldo [FILE...]
//   saldo --screenshot PNG [FILE]   render the first window offscreen and exit
//   saldo --timing [FILE...]        print the time until the first window is painted
//   saldo --preferences [FILE...]   open the preferences window (and the files named)
//   saldo --print-pdf LEDGER OUT    write the printout as a PDF and exit, with no display needed
//   saldo --help | --version        print the text and exit, with no display needed
#include "app/Document.h"
#include "app/DocumentController.h"
#include "app/DocumentWindow.h"
#include "model/LedgerFile.h"
#include "platform/CanberraSoundPlayer.h"
#include "platform/GermanTranslations.h"
#include "platform/SettingsUserDefaults.h"
#include "printing/PdfPrintout.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QElapsedTimer>
#include <QFile>
#include <QIcon>
#include <QWindow>

#include <cstring>
#include <iostream>
#include <memory>

namespace {

// The name of the installed desktop entry, icon, MIME package and metainfo.
const char* const kDesktopId = "de.saldo.Saldo";

// True when the command line asks only for the help or version text: then no
// window system is needed, and the program answers in a terminal without a display.
bool asksForTextOnly(int argc, char** argv)
{
    for (int i = 1; i < argc; ++i) {
        const char* arg = argv[i];
        if (std::strcmp(arg, "--") == 0)
            return false;
        for (const char* text : { "-h", "--help", "--help-all", "-v", "--version" })
            if (std::strcmp(arg, text) == 0)
                return true;
    }
    return false;
}

// True when the command line asks for the printout as a PDF: then nothing is
// shown, and the program draws offscreen without a display.
bool asksForPdf(int argc, char** argv)
{
    for (int i = 1; i < argc && std::strcmp(argv[i], "--") != 0; ++i)
        if (std::strcmp(argv[i], "--print-pdf") == 0)
            return true;
    return false;
}

// Writes the printout of the ledger at arguments[0] as a PDF to arguments[1];
// answers the exit status, with one line on standard error for a failure.
int printPdf(const QStringList& arguments)
{
    if (arguments.size() != 2) {
        std::cerr << "saldo: --print-pdf needs a ledger file and a PDF file name (see saldo --help)\n";
        return 1;
    }
    try {
        const saldo::EinnahmeList entries = saldo::LedgerFile::read(QFile::encodeName(arguments[0]).toStdString());
        saldo::gui::PdfPrintout::write(arguments[1], entries);
        return 0;
    } catch (const std::exception& error) {
        std::cerr << "saldo: " << error.what() << '\n';
        return 1;
    }
}

// Shows the window and paints it completely; answers false when it never
// became visible.
bool paintNow(QWidget& window)
{
    window.show();
    QElapsedTimer waited;
    waited.start();
    while (!(window.windowHandle() && window.windowHandle()->isExposed()) && waited.elapsed() < 5000)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
    window.repaint();
    return window.windowHandle() && window.windowHandle()->isExposed();
}

} // namespace

int main(int argc, char** argv)
{
    QElapsedTimer sinceStart;
    sinceStart.start();

    // The images live in the static GUI library; pull them in explicitly.
    Q_INIT_RESOURCE(saldo);
    QCoreApplication::setOrganizationName(QStringLiteral("Saldo"));
    QCoreApplication::setApplicationName(QStringLiteral("Saldo"));
    QCoreApplication::setApplicationVersion(QStringLiteral(SALDO_VERSION));
    if (asksForPdf(argc, argv)) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        // A script reads one line on standard error for a failure: Qt's notes
        // on the environment (a missing runtime folder) are not passed on.
        qInstallMessageHandler([](QtMsgType type, const QMessageLogContext&, const QString& message) {
            if (type == QtCriticalMsg || type == QtFatalMsg)
                std::cerr << "saldo: " << message.toStdString() << '\n';
        });
    }
    const std::unique_ptr<QCoreApplication> application = asksForTextOnly(argc, argv)
        ? std::make_unique<QCoreApplication>(argc, argv)
        : std::make_unique<QApplication>(argc, argv);
    saldo::gui::GermanTranslations::install(*application);

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Saldo: Einnahmen-Ueberschuss-Rechnung"));
    parser.addHelpOption();
    parser.addVersionOption();
    const QCommandLineOption screenshot(QStringLiteral("screenshot"),
        QStringLiteral("Zeichnet das erste Fenster in die PNG-Datei und endet."), QStringLiteral("png"));
    const QCommandLineOption timing(
        QStringLiteral("timing"), QStringLiteral("Meldet die Zeit bis zum ersten gezeichneten Fenster."));
    // The way to the preferences when no ledger is open (the desktop entry's
    // action "Einstellungen"): a window's menu bar is the only menu there is.
    const QCommandLineOption preferences(QStringLiteral("preferences"),
        QStringLiteral("Oeffnet die Einstellungen und nur die genannten Dateien, kein neues Dokument."));
    const QCommandLineOption pdf(QStringLiteral("print-pdf"),
        QStringLiteral("Schreibt den Ausdruck der ersten Datei als PDF (A4) in die zweite und endet; "
                       "braucht keinen Bildschirm."));
    parser.addOption(screenshot);
    parser.addOption(timing);
    parser.addOption(preferences);
    parser.addOption(pdf);
    parser.addPositionalArgument(
        QStringLiteral("datei"), QStringLiteral("Zu oeffnende Saldo-Dokumente."), QStringLiteral("[datei...]"));
    parser.process(*application);
    if (!qobject_cast<QApplication*>(application.get()))
        return 0; // not reached: the parser has printed its text and ended the program

    if (parser.isSet(pdf))
        return printPdf(parser.positionalArguments());

    QGuiApplication::setDesktopFileName(QString::fromLatin1(kDesktopId));
    // The installed icon; a build run from its folder keeps the window system's default.
    QApplication::setWindowIcon(QIcon::fromTheme(QString::fromLatin1(kDesktopId)));

    saldo::gui::SettingsUserDefaults defaults;
    saldo::gui::CanberraSoundPlayer sound;
    sound.install();

    saldo::gui::DocumentController controller(defaults);
    controller.startUp(
        parser.positionalArguments(), !parser.isSet(timing) && !parser.isSet(screenshot), !parser.isSet(preferences));
    if (parser.isSet(preferences)) {
        // The program then lives while any of its windows is open, the
        // preferences alone included, and ends with the last one.
        controller.showPreferences();
        return QApplication::exec();
    }
    if (controller.documents().empty())
        return 1;

    saldo::gui::DocumentWindow* first = controller.documents().front()->windowController();
    if (parser.isSet(timing) || parser.isSet(screenshot)) {
        const bool painted = paintNow(*first);
        if (parser.isSet(timing))
            std::cerr << "saldo: first window painted after " << sinceStart.elapsed() << " ms\n";
        if (parser.isSet(screenshot)) {
            // Let the detail panel's fade-in finish before the picture is taken.
            QElapsedTimer settling;
            settling.start();
            while (settling.elapsed() < 400)
                QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
            if (!painted || !first->grab().save(parser.value(screenshot))) {
                std::cerr << "saldo: could not write " << parser.value(screenshot).toStdString() << '\n';
                return 1;
            }
            return 0;
        }
    }
    return QApplication::exec();
}
