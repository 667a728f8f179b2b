#include "models/models_settings_view_model.h"
#include "platform/https_transfer.h"

#include "support/printing.h"
#include "support/waiting.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>
#include <QTest>
#include <QThread>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <future>

#include <dlfcn.h>
#include <ifaddrs.h>
#include <net/if.h>
#include <netdb.h>
#include <netinet/in.h>
#include <pthread.h>

using namespace sorvanta;

namespace {

std::atomic<bool> hasWayOut = true;
std::atomic<bool> hasThreads = true;
std::atomic<bool> isNameServiceSilent = false;
std::atomic<bool> isNameServiceAsked = false;

sockaddr_in anyAddress = {};
char loopbackName[] = "lo";
char cardName[] = "card";
ifaddrs card = {};
ifaddrs loopback = {};

} // namespace

// The system's answers, in the place of its own functions: a name service that knows nobody, a machine with or without
// a network card, and no more threads.

extern "C" int getaddrinfo(const char *, const char *, const addrinfo *, addrinfo **)
{
    isNameServiceAsked = true;
    isNameServiceAsked.notify_all();
    isNameServiceSilent.wait(true);
    return EAI_NONAME;
}

extern "C" int getifaddrs(ifaddrs **interfaces) noexcept
{
    anyAddress.sin_family = AF_INET;
    loopback = {};
    loopback.ifa_name = loopbackName;
    loopback.ifa_flags = IFF_UP | IFF_LOOPBACK;
    loopback.ifa_addr = reinterpret_cast<sockaddr *>(&anyAddress);
    card = loopback;
    card.ifa_name = cardName;
    card.ifa_flags = IFF_UP;
    loopback.ifa_next = hasWayOut ? &card : nullptr;
    *interfaces = &loopback;
    return 0;
}

extern "C" int pthread_create(pthread_t *thread, const pthread_attr_t *attributes, void *(*work)(void *),
                              void *argument) noexcept
{
    static const auto create = reinterpret_cast<decltype(&pthread_create)>(dlsym(RTLD_NEXT, "pthread_create"));
    return hasThreads ? create(thread, attributes, work, argument) : EAGAIN;
}

extern "C" void freeifaddrs(ifaddrs *) noexcept { }

namespace {

class Recorder : public HttpsTransferDelegate {
public:
    void didReceiveResponse(const HttpsResponse &, const Answer &answer) override { answer(Disposition::Allow); }
    void didReceiveData(QByteArrayView) override { }
    void didComplete(const std::optional<Error> &error) override { end.set_value(error); }

    std::promise<std::optional<Error>> end;
};

class FailingNetwork : public testing::Test {
protected:
    void SetUp() override
    {
        qputenv("no_proxy", "*");
        hasWayOut = true;
        hasThreads = true;
        isNameServiceSilent = false;
        isNameServiceAsked = false;
    }

    static QString outcome(const QString &address)
    {
        const auto recorder = std::make_shared<Recorder>();
        HttpsTransfer(QUrl(address)).resume(recorder);
        const auto error = recorder->end.get_future().get();
        return error ? QString::number(error->code()) + u' ' + error->localizedDescription() : QString();
    }
};

TEST_F(FailingNetwork, tellsAServerThatIsNotKnownFromAMachineThatIsOffline)
{
    EXPECT_EQ(outcome(u"https://models.example.org/file"_qs),
              u"-1003 A server with the specified hostname could not be found."_qs);
    hasWayOut = false;
    EXPECT_EQ(outcome(u"https://models.example.org/file"_qs),
              u"-1009 The Internet connection appears to be offline."_qs);
}

TEST_F(FailingNetwork, tellsAServerThatDoesNotAnswerFromAMachineThatIsOffline)
{
    EXPECT_EQ(outcome(u"https://127.0.0.1:1/file"_qs), u"-1004 Could not connect to the server."_qs);
    hasWayOut = false;
    EXPECT_EQ(outcome(u"https://127.0.0.1:1/file"_qs), u"-1009 The Internet connection appears to be offline."_qs);
}

TEST_F(FailingNetwork, aCancelDoesNotWaitForTheNameService)
{
    isNameServiceSilent = true;
    const auto recorder = std::make_shared<Recorder>();
    HttpsTransfer transfer(QUrl(u"https://models.example.org/file"_qs));
    transfer.resume(recorder);
    isNameServiceAsked.wait(false);
    transfer.cancel();
    auto end = recorder->end.get_future();
    EXPECT_EQ(end.wait_for(std::chrono::seconds(30)), std::future_status::ready);
    isNameServiceSilent = false;
    isNameServiceSilent.notify_all();
    EXPECT_EQ(end.get()->code(), -999);
}

TEST_F(FailingNetwork, aDownloadThatGetsNoThreadFails)
{
    QTemporaryDir folder;
    ModelsSettingsViewModel models(folder.path());
    const ModelInfo &model = models.availableModels().last();
    hasThreads = false;
    models.startDownload(model);
    ASSERT_TRUE(waitUntil([&models] { return models.activeDownloads().isEmpty(); }));
    EXPECT_EQ(models.status(model), Status(ModelStatus::Failed{u"The system could not start a thread."_qs}));
}

} // namespace
