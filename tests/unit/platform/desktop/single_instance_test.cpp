#include "platform/desktop/single_instance.h"

#include "support/printing.h"
#include "support/private_bus.h"
#include "support/spawned_process.h"

#include <gtest/gtest.h>

#include <csignal>
#include <memory>

#include <sys/wait.h>

namespace sorvanta {

namespace {

using Start = std::unique_ptr<SpawnedProcess>;

Start started(const QString &busAddress)
{
    return std::make_unique<SpawnedProcess>(
        std::vector<std::string>{SORVANTA_SINGLE_INSTANCE_RUN, busAddress.toStdString()});
}

TEST(SingleInstance, aSecondStartAsksForTheWindowOfTheFirst)
{
    const PrivateBus bus;
    const Start first = started(bus.address());
    ASSERT_EQ(first->readLine(), "first");
    for (int times = 0; times < 2; ++times) {
        EXPECT_EQ(started(bus.address())->readLine(), "second");
        EXPECT_EQ(first->readLine(), "wanted");
    }
}

TEST(SingleInstance, isTheFirstAgainOnceTheFirstHasGoneHoweverItWent)
{
    const PrivateBus bus;
    Start first = started(bus.address());
    ASSERT_EQ(first->readLine(), "first");
    first.reset();
    first = started(bus.address());
    EXPECT_EQ(first->readLine(), "first");
    ::kill(first->id(), SIGKILL);
    ::waitpid(first->id(), nullptr, 0);
    EXPECT_EQ(started(bus.address())->readLine(), "first");
}

TEST(SingleInstance, isSecondAlsoToOneThatDoesNotAnswer)
{
    const PrivateBus bus;
    const Start first = started(bus.address());
    ASSERT_EQ(first->readLine(), "first");
    ::kill(first->id(), SIGSTOP);
    EXPECT_EQ(started(bus.address())->readLine(), "second");
    ::kill(first->id(), SIGCONT);
    EXPECT_EQ(first->readLine(), "wanted") << "it hears of it later";
}

TEST(SingleInstance, isTheFirstInItsSession)
{
    const PrivateBus bus;
    const PrivateBus otherBus;
    const Start first = started(bus.address());
    const Start other = started(otherBus.address());
    EXPECT_EQ(first->readLine(), "first");
    EXPECT_EQ(other->readLine(), "first");
}

TEST(SingleInstance, isTheFirstWhereThereIsNoBus)
{
    for (const QString &address : {QString(), u"unix:path=/nonexistent"_qs}) {
        const Start start = started(address);
        const Start another = started(address);
        EXPECT_EQ(start->readLine(), "first") << address.toStdString();
        EXPECT_EQ(another->readLine(), "first") << address.toStdString();
    }
}

} // namespace

} // namespace sorvanta
