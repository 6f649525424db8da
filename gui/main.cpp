// The desktop program: sets up the platform services and hands over to the
// document controller, which opens the files named on the command line, or a
// new document when none is named.
//   saldo [FILE...]
//   saldo --screenshot PNG [FILE]   render the first window offscreen and exit
//   saldo --timing [FILE...]        print the time until the first window is painted
#include "app/Document.h"
#include "app/DocumentController.h"
#include "app/DocumentWindow.h"
#include "platform/CanberraSoundPlayer.h"
#include "platform/SettingsUserDefaults.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QElapsedTimer>
#include <QWindow>

#include <iostream>

namespace {

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
    QApplication app(argc, argv);
    QApplication::setOrganizationName(QStringLiteral("Saldo"));
    QApplication::setApplicationName(QStringLiteral("Saldo"));

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Saldo: Einnahmen-Überschuss-Rechnung"));
    parser.addHelpOption();
    const QCommandLineOption screenshot(QStringLiteral("screenshot"),
        QStringLiteral("Zeichnet das erste Fenster in die PNG-Datei und endet."), QStringLiteral("png"));
    const QCommandLineOption timing(
        QStringLiteral("timing"), QStringLiteral("Meldet die Zeit bis zum ersten gezeichneten Fenster."));
    parser.addOption(screenshot);
    parser.addOption(timing);
    parser.addPositionalArgument(
        QStringLiteral("datei"), QStringLiteral("Zu oeffnende Saldo-Dokumente."), QStringLiteral("[datei...]"));
    parser.process(app);

    saldo::gui::SettingsUserDefaults defaults;
    saldo::gui::CanberraSoundPlayer sound;
    sound.install();

    saldo::gui::DocumentController controller(defaults);
    controller.startUp(parser.positionalArguments(), !parser.isSet(timing) && !parser.isSet(screenshot));
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
    return app.exec();
}
