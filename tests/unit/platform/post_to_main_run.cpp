#include "platform/main_queue.h"

#include <QCoreApplication>

#include <atomic>
#include <cstdio>
#include <thread>

/// Posts from two threads, without a pause, while many applications come and go.
int main(int argumentCount, char **arguments)
{
    std::atomic<bool> isOver = false;
    const auto post = [&isOver] {
        while (!isOver)
            sorvanta::postToMain([] {});
    };
    std::thread first(post);
    std::thread second(post);
    for (int i = 0; i < 300; ++i) {
        QCoreApplication application(argumentCount, arguments);
        std::this_thread::yield();
    }
    isOver = true;
    first.join();
    second.join();
    std::puts("All went well.");
    return 0;
}
