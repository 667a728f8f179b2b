#include "platform/main_queue.h"

#include <QCoreApplication>
#include <QMetaObject>

#include <utility>

namespace sorvanta {

void postToMain(std::function<void()> work)
{
    if (QCoreApplication *application = QCoreApplication::instance())
        QMetaObject::invokeMethod(application, std::move(work), Qt::QueuedConnection);
}

} // namespace sorvanta
