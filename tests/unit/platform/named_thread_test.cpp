#include "platform/named_thread.h"

#include <gtest/gtest.h>

#include <memory>
#include <semaphore>
#include <string>

#include <pthread.h>

using namespace sorvanta;

namespace {

std::string nameOfThread(const QString &name)
{
    struct Shared {
        std::string name;
        std::binary_semaphore done{0};
    };
    const auto shared = std::make_shared<Shared>();
    runOnNamedThread(name, [shared] {
        char text[64] = {};
        pthread_getname_np(pthread_self(), text, sizeof text);
        shared->name = text;
        shared->done.release();
    });
    shared->done.acquire();
    return shared->name;
}

TEST(NamedThread, bearsItsNameAsFarAsTheSystemTakesIt)
{
    EXPECT_EQ(nameOfThread(u"sv.wav.convert"_qs), "sv.wav.convert");
    EXPECT_EQ(nameOfThread(u"sv.batch.wav.convert"_qs), "sv.batch.wav.co");
}

TEST(NamedThread, anEmptyNameLeavesTheOneOfTheProcess)
{
    EXPECT_FALSE(nameOfThread(QString()).empty());
}

} // namespace
