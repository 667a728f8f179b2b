#include "platform/named_thread.h"

#include "platform/error.h"

#include <system_error>
#include <thread>
#include <utility>

#include <pthread.h>

namespace sorvanta {

namespace {

constexpr int longestName = 15;

} // namespace

void runOnNamedThread(const QString &name, std::function<void()> work)
{
    try {
        std::thread([name = name.toUtf8().first(qMin(name.toUtf8().size(), longestName)), work = std::move(work)] {
            if (!name.isEmpty())
                pthread_setname_np(pthread_self(), name.constData());
            work();
        }).detach();
    } catch (const std::system_error &failure) {
        throw Error(u"NSPOSIXErrorDomain"_qs, failure.code().value(), u"The system could not start a thread."_qs);
    }
}

} // namespace sorvanta
