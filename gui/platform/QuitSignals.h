#pragma once

#include <QObject>

class QSocketNotifier;

namespace saldo::gui {

// Turns the signals that ask a program to end (SIGTERM from kill or a
// shutdown, SIGINT from the terminal, SIGHUP from a logout) into a Qt signal
// on the main thread, so that the program can keep its changes before it ends.
// The handler only writes the signal's number into a pipe that the main loop
// watches; a second signal of these ends the program at once, as the signal
// would have without a handler. One instance at a time; destroying it gives
// the signals back their default.
class QuitSignals : public QObject {
    Q_OBJECT
public:
    explicit QuitSignals(QObject* parent = nullptr);
    ~QuitSignals() override;

signals:
    void received(int signal);

private:
    QSocketNotifier* notifier_ = nullptr;
};

} // namespace saldo::gui
