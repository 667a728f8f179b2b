#include "platform/main_queue.h"

#include <QCoreApplication>
#include <QMetaObject>
#include <QThread>

#include <atomic>
#include <utility>

namespace sorvanta {

namespace {

std::atomic<bool> hasBegunToQuit = false;

void watchQuitting()
{
    QObject::connect(QCoreApplication::instance(), &QCoreApplication::aboutToQuit, [] { hasBegunToQuit = true; });
}
Q_COREAPP_STARTUP_FUNCTION(watchQuitting)

} // namespace

void postToMain(std::function<void()> work)
{
    if (QCoreApplication *application = QCoreApplication::instance())
        QMetaObject::invokeMethod(application, std::move(work), Qt::QueuedConnection);
}

bool isMainThread()
{
    const QCoreApplication *application = QCoreApplication::instance();
    return application && QThread::currentThread() == application->thread();
}

bool isQuitting()
{
    return hasBegunToQuit;
}

} // namespace sorvanta
