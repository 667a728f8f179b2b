#include "platform/error.h"
#include "platform/main_queue.h"
#include "platform/worker.h"

#include "support/printing.h"
#include "support/waiting.h"

#include <gtest/gtest.h>

#include <QProcess>
#include <QTest>
#include <QThread>
#include <QTimer>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <future>
#include <thread>
#include <vector>

using namespace sorvanta;

namespace {

TEST(PostToMain, runsWorkOnTheMainThreadInTheOrderOfThePosts)
{
    std::vector<int> order;
    bool wasElsewhere = false;
    runOnWorker([&] {
        for (int i = 0; i < 100; ++i) {
            postToMain([&order, &wasElsewhere, i] {
                order.push_back(i);
                wasElsewhere = wasElsewhere || QThread::currentThread() != qApp->thread();
            });
        }
    }).wait();
    EXPECT_TRUE(order.empty()) << "nothing runs before the main loop does";
    ASSERT_TRUE(waitUntil([&order] { return order.size() == 100; }));
    EXPECT_TRUE(std::is_sorted(order.begin(), order.end()));
    EXPECT_FALSE(wasElsewhere);
}

TEST(PostToMain, leavesTimersTheirTurnsHoweverMuchIsPosted)
{
    constexpr int count = 300;
    std::vector<int> order;
    QTimer timer;
    int turns = 0;
    QObject::connect(&timer, &QTimer::timeout,
                     [&turns, &order] { turns += order.empty() || order.back() == count - 1 ? 0 : 1; });
    timer.start(1);
    runOnWorker([&order] {
        for (int i = 0; i < count; ++i)
            postToMain([&order, i] {
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
                order.push_back(i);
            });
    }).wait();
    ASSERT_TRUE(waitUntil([&order] { return order.size() == count; }));
    EXPECT_TRUE(std::is_sorted(order.begin(), order.end()));
    EXPECT_GT(turns, 10);
}

TEST(PostToMain, goesOnInAnEventLoopOfTheWork)
{
    std::vector<int> order;
    postToMain([&order] {
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        order.push_back(1);
        EXPECT_TRUE(waitUntil([&order] { return order.size() == 3; }));
    });
    postToMain([&order] {
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        order.push_back(2);
    });
    postToMain([&order] { order.push_back(3); });
    ASSERT_TRUE(waitUntil([&order] { return order.size() == 3; }));
    EXPECT_TRUE(std::is_sorted(order.begin(), order.end()));
}

TEST(PostToMain, dropsWhatComesWhenTheApplicationIsGoing)
{
    QProcess process;
    process.start(POST_TO_MAIN_RUN, QStringList());
    ASSERT_TRUE(process.waitForFinished(patience));
    EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(process.readAllStandardOutput(), "All went well.\n");
}

TEST(RunOnWorker, hasRoomForMoreWorkThanThereAreCores)
{
    constexpr int count = 12;
    std::atomic<int> waiting = 0;
    std::promise<void> gate;
    const std::shared_future<void> opened = gate.get_future().share();
    std::vector<std::future<void>> works;
    for (int i = 0; i < count; ++i)
        works.push_back(runOnWorker([&waiting, opened] {
            ++waiting;
            opened.wait();
        }));
    EXPECT_TRUE(waitUntil([&waiting] { return waiting == count; }));
    gate.set_value();
    for (auto &work : works)
        work.wait();
}

TEST(RunOnWorker, letsGoOfWhatTheWorkHeldBeforeItIsDone)
{
    auto held = std::make_shared<int>(1);
    const std::weak_ptr<int> watched = held;
    runOnWorker([held = std::move(held)] { EXPECT_TRUE(held); }).wait();
    EXPECT_TRUE(watched.expired());
}

TEST(CancellationError, saysThatTheOperationWasNotCompleted)
{
    const CancellationError error;
    EXPECT_EQ(error.domain(), u"Swift.CancellationError"_qs);
    EXPECT_EQ(error.code(), 1);
    EXPECT_EQ(error.localizedDescription(),
              u"The operation couldn’t be completed. (Swift.CancellationError error 1.)"_qs);
}

} // namespace
