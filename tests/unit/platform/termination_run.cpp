#include "platform/termination.h"

#include <QCoreApplication>
#include <QThread>
#include <QTimer>

#include <cstdio>

namespace {

void say(const char *words)
{
    std::puts(words);
    std::fflush(stdout);
}

} // namespace

/// Runs until it is told to end. Its argument is "idle", or "busy": then its main loop comes to nothing.
int main(int argumentCount, char **arguments)
{
    QCoreApplication application(argumentCount, arguments);
    sorvanta::quitOnTermination();
    QTimer::singleShot(0, &application, [] {
        say("running");
        if (QCoreApplication::arguments().value(1) == u"busy"_qs)
            QThread::sleep(60);
    });
    const int code = QCoreApplication::exec();
    say("tidied up");
    return code;
}
