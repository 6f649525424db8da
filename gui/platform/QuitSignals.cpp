#include "platform/QuitSignals.h"

#include <QSocketNotifier>

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace saldo::gui {

namespace {

constexpr int kSignals[] = { SIGTERM, SIGINT, SIGHUP };
int g_pipe[2] = { -1, -1 };
volatile sig_atomic_t g_received = 0;

// Async-signal-safe: a flag, a write into a pipe, or the default action.
void onSignal(int signal)
{
    if (g_received) {
        ::signal(signal, SIG_DFL);
        ::raise(signal);
        return;
    }
    g_received = 1;
    const int saved = errno;
    const unsigned char number = static_cast<unsigned char>(signal);
    [[maybe_unused]] const ssize_t written = ::write(g_pipe[1], &number, 1);
    errno = saved;
}

} // namespace

QuitSignals::QuitSignals(QObject* parent)
    : QObject(parent)
{
    if (::pipe2(g_pipe, O_CLOEXEC | O_NONBLOCK) != 0)
        return;
    g_received = 0;
    notifier_ = new QSocketNotifier(g_pipe[0], QSocketNotifier::Read, this);
    connect(notifier_, &QSocketNotifier::activated, this, [this] {
        unsigned char number = 0;
        while (::read(g_pipe[0], &number, 1) == 1)
            emit received(number);
    });
    struct sigaction action { };
    action.sa_handler = onSignal;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    for (const int signal : kSignals)
        ::sigaction(signal, &action, nullptr);
}

QuitSignals::~QuitSignals()
{
    for (const int signal : kSignals)
        ::signal(signal, SIG_DFL);
    delete notifier_;
    for (int& fd : g_pipe) {
        if (fd >= 0)
            ::close(fd);
        fd = -1;
    }
}

} // namespace saldo::gui
