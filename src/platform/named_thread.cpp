#include "platform/named_thread.h"

#include <thread>
#include <utility>

#include <pthread.h>

namespace sorvanta {

namespace {

constexpr int longestName = 15;

} // namespace

Error threadError(const std::system_error &failure)
{
    return Error(u"NSPOSIXErrorDomain"_qs, failure.code().value(), u"The system could not start a thread."_qs);
}

void runOnNamedThread(const QString &name, std::function<void()> work)
{
    try {
        std::thread([name = name.toUtf8().first(qMin(name.toUtf8().size(), longestName)), work = std::move(work)] {
            if (!name.isEmpty())
                pthread_setname_np(pthread_self(), name.constData());
            work();
        }).detach();
    } catch (const std::system_error &failure) {
        throw threadError(failure);
    }
}

} // namespace sorvanta
