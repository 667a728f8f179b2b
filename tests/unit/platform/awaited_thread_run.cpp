#include "platform/awaited_thread.h"

#include <QCoreApplication>
#include <QThread>
#include <QTimer>

#include <cstdio>

/// Quits while a thread is still at work, which says so at its end.
int main(int argumentCount, char **arguments)
{
    QCoreApplication application(argumentCount, arguments);
    sorvanta::runOnAwaitedThread(u"work"_qs, [] {
        QThread::msleep(300);
        std::puts("The work is done.");
        std::fflush(stdout);
    });
    QTimer::singleShot(0, &application, &QCoreApplication::quit);
    return QCoreApplication::exec();
}
