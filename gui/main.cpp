// The desktop program: sets up the platform services and hands over to the
// document controller, which opens the files named on the command line.
#include <QApplication>

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    QApplication::setOrganizationName(QStringLiteral("Saldo"));
    QApplication::setApplicationName(QStringLiteral("Saldo"));
    return 0;
}
