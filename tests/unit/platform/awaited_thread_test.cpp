#include "platform/awaited_thread.h"

#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <QThread>

#include <memory>
#include <semaphore>
#include <string>

#include <pthread.h>

using namespace sorvanta;

namespace {

TEST(AwaitedThread, runsTheWorkElsewhereUnderItsName)
{
    struct Shared {
        std::string name;
        QThread *thread = nullptr;
        std::binary_semaphore done{0};
    };
    const auto shared = std::make_shared<Shared>();
    runOnAwaitedThread(u"sv.download"_qs, [shared] {
        char text[64] = {};
        pthread_getname_np(pthread_self(), text, sizeof text);
        shared->name = text;
        shared->thread = QThread::currentThread();
        shared->done.release();
    });
    shared->done.acquire();
    EXPECT_EQ(shared->name, "sv.download");
    EXPECT_NE(shared->thread, QThread::currentThread());
}

TEST(AwaitedThread, letsGoOfWhatTheWorkHeld)
{
    auto held = std::make_shared<int>(1);
    const std::weak_ptr<int> watched = held;
    runOnAwaitedThread(QString(), [held = std::move(held)] { EXPECT_TRUE(held); });
    QElapsedTimer timer;
    timer.start();
    while (!watched.expired() && timer.elapsed() < 5'000)
        QThread::msleep(1);
    EXPECT_TRUE(watched.expired());
}

} // namespace
