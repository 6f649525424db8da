// One QApplication for every GUI test, on the offscreen platform, then all
// GoogleTest cases. No test may block on a modal dialog: tests answer dialogs
// through support/ScriptedDialogs.h.
#include <QApplication>
#include <QStandardPaths>
#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>

int main(int argc, char** argv)
{
    if (!std::getenv("QT_QPA_PLATFORM"))
        setenv("QT_QPA_PLATFORM", "offscreen", 1);
    // Local days and months in the tests are Berlin's, also when run by hand.
    setenv("TZ", "Europe/Berlin", 0);
    tzset();
    // Keep QSettings and friends away from the user's real configuration.
    QStandardPaths::setTestModeEnabled(true);
    // The images live in the static GUI library; pull them in explicitly.
    Q_INIT_RESOURCE(saldo);
    QApplication app(argc, argv);
    QApplication::setOrganizationName(QStringLiteral("SaldoTests"));
    QApplication::setApplicationName(QStringLiteral("SaldoTests"));
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
