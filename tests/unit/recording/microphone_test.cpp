#include "platform/media/microphone.h"
#include "support/printing.h"
#include "support/waiting.h"

#include <gtest/gtest.h>

#include <QTest>

#include <optional>

#include <pthread.h>
#include <sys/resource.h>

using namespace sorvanta;

namespace {

constexpr AudioFormat voice = {16000, 1, AudioFormat::SampleType::Int16};

/// As long as it lives the system has no thread to give: what each one needs is more than there is.
class NoThreads {
public:
    NoThreads()
    {
        pthread_getattr_default_np(&m_before);
        pthread_attr_t huge = {};
        pthread_attr_init(&huge);
        pthread_attr_setstacksize(&huge, std::size_t(1) << 47);
        EXPECT_EQ(pthread_setattr_default_np(&huge), 0);
        pthread_attr_destroy(&huge);
    }
    ~NoThreads()
    {
        pthread_setattr_default_np(&m_before);
        pthread_attr_destroy(&m_before);
    }
    NoThreads(const NoThreads &) = delete;
    NoThreads &operator=(const NoThreads &) = delete;

private:
    pthread_attr_t m_before = {};
};

/// As long as it lives no file can be opened.
class NoFiles {
public:
    NoFiles()
    {
        EXPECT_EQ(getrlimit(RLIMIT_NOFILE, &m_before), 0);
        const rlimit none = {0, m_before.rlim_max};
        EXPECT_EQ(setrlimit(RLIMIT_NOFILE, &none), 0);
    }
    ~NoFiles() { setrlimit(RLIMIT_NOFILE, &m_before); }
    NoFiles(const NoFiles &) = delete;
    NoFiles &operator=(const NoFiles &) = delete;

private:
    rlimit m_before = {};
};

/// What is told who asks while the system has nothing to ask with.
template<typename Shortage>
QString failureFor()
{
    Microphone microphone(voice, QString(), {});
    std::optional<QString> failure;
    {
        const Shortage shortage;
        microphone.requestAccess([&microphone, &failure](bool isGranted) {
            EXPECT_TRUE(isGranted) << "nobody has refused";
            try {
                microphone.makeRecorder(u"/nowhere/at/all.wav"_qs, {});
            } catch (const Error &error) {
                failure = error.localizedDescription();
            }
        });
    }
    EXPECT_FALSE(failure) << "not from within the call";
    EXPECT_TRUE(waitUntil([&failure] { return failure.has_value(); }));
    return failure.value_or(QString());
}

TEST(Microphone, saysThatThereIsNoThread)
{
    EXPECT_EQ(failureFor<NoThreads>(), u"The system could not start a thread."_qs);
}

TEST(Microphone, saysThatTooManyFilesAreOpen)
{
    EXPECT_EQ(failureFor<NoFiles>(), u"Too many files are open."_qs);
}

TEST(Microphone, answersNoRequestButTheLastOne)
{
    Microphone microphone(voice, QString(), {});
    int earlier = 0;
    int last = 0;
    {
        const NoThreads shortage;
        microphone.requestAccess([&earlier](bool) { ++earlier; });
        microphone.requestAccess([&last](bool) { ++last; });
    }
    EXPECT_TRUE(waitUntil([&last] { return last > 0; }));
    QTest::qWait(50);
    EXPECT_EQ(earlier, 0);
    EXPECT_EQ(last, 1);
}

TEST(Microphone, answersNobodyOnceItIsGone)
{
    bool isAnswered = false;
    {
        const NoThreads shortage;
        Microphone(voice, QString(), {}).requestAccess([&isAnswered](bool) { isAnswered = true; });
    }
    QTest::qWait(50);
    EXPECT_FALSE(isAnswered);
}

} // namespace
