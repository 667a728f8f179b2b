#include "platform/named_thread.h"

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

std::thread namedThread(const QString &name, std::function<void()> work)
{
    try {
        return std::thread(
            [name = name.toUtf8().first(qMin(name.toUtf8().size(), longestName)), work = std::move(work)] {
                if (!name.isEmpty())
                    pthread_setname_np(pthread_self(), name.constData());
                work();
            });
    } catch (const std::system_error &failure) {
        throw threadError(failure);
    }
}

void runOnNamedThread(const QString &name, std::function<void()> work)
{
    namedThread(name, std::move(work)).detach();
}

} // namespace sorvanta
