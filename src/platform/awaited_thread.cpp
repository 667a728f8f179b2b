#include "platform/awaited_thread.h"

#include "platform/named_thread.h"

#include <QCoreApplication>

#include <chrono>
#include <future>
#include <memory>
#include <thread>
#include <utility>
#include <vector>

namespace sorvanta {

namespace {

struct AwaitedThread {
    std::thread thread;
    std::future<void> end;
};

std::vector<AwaitedThread> &awaitedThreads()
{
    static std::vector<AwaitedThread> threads;
    return threads;
}

void awaitAll()
{
    for (AwaitedThread &awaited : awaitedThreads())
        awaited.thread.join();
    awaitedThreads().clear();
}

void awaitAllAtTheEnd()
{
    qAddPostRoutine(awaitAll);
}
Q_COREAPP_STARTUP_FUNCTION(awaitAllAtTheEnd)

void forgetThoseThatHaveEnded()
{
    std::erase_if(awaitedThreads(), [](AwaitedThread &awaited) {
        const bool hasEnded = awaited.end.wait_for(std::chrono::seconds(0)) == std::future_status::ready;
        if (hasEnded)
            awaited.thread.join();
        return hasEnded;
    });
}

} // namespace

void runOnAwaitedThread(const QString &name, std::function<void()> work)
{
    forgetThoseThatHaveEnded();
    auto done = std::make_shared<std::promise<void>>();
    std::future<void> end = done->get_future();
    std::thread thread = namedThread(name, [work = std::move(work), done]() mutable {
        work();
        work = nullptr; // what it holds is let go before the end is known
        done->set_value();
    });
    awaitedThreads().push_back({std::move(thread), std::move(end)});
}

} // namespace sorvanta
