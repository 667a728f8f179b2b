#include "platform/termination.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <array>
#include <cerrno>
#include <csignal>

#include <fcntl.h>
#include <unistd.h>

namespace sorvanta {

namespace {

int alarmEnd = -1; // of a pipe whose other end the main loop watches

/// Does no more than a handler of signals may.
void raiseAlarm(int /*signal*/)
{
    const int error = errno;
    [[maybe_unused]] const ssize_t count = ::write(alarmEnd, "", 1);
    errno = error;
}

void handle(int signal)
{
    struct sigaction action = {};
    if (::sigaction(signal, nullptr, &action) != 0 || action.sa_handler == SIG_IGN)
        return;
    action = {};
    action.sa_handler = raiseAlarm;
    action.sa_flags = SA_RESTART | static_cast<int>(SA_RESETHAND);
    ::sigaction(signal, &action, nullptr);
}

} // namespace

void quitOnTermination()
{
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) != 0)
        return;
    alarmEnd = ends[1];
    auto *const watch = new QSocketNotifier(ends[0], QSocketNotifier::Read, QCoreApplication::instance());
    QObject::connect(watch, &QSocketNotifier::activated, watch, [watch] {
        watch->setEnabled(false);
        QCoreApplication::quit();
    });
    for (const int signal : {SIGTERM, SIGINT, SIGHUP})
        handle(signal);
}

} // namespace sorvanta
