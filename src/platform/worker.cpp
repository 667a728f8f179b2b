#include "platform/worker.h"

#include <QThreadPool>

#include <memory>
#include <utility>

namespace sorvanta {

std::future<void> runOnWorker(std::function<void()> work)
{
    constexpr int mostThreads = 64;
    QThreadPool *pool = QThreadPool::globalInstance();
    if (pool->maxThreadCount() < mostThreads)
        pool->setMaxThreadCount(mostThreads);

    auto done = std::make_shared<std::promise<void>>();
    std::future<void> future = done->get_future();
    pool->start([work = std::move(work), done = std::move(done)]() mutable {
        work();
        work = nullptr; // what it holds is let go before anybody learns that it is done
        done->set_value();
    });
    return future;
}

} // namespace sorvanta
