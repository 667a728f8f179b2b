#include "core/audio_copy.h"
#include "core/audio_preparer.h"
#include "platform/main_queue.h"
#include "platform/worker.h"

#include "support/media_files.h"
#include "support/printing.h"

#include <QCoreApplication>
#include <QFile>
#include <QTimer>

#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

using namespace sorvanta;
using namespace std::chrono_literals;

namespace {

/// Only one application object can be quit in a process, so a child does it. @return whether `isAsWanted` gave true
template<typename Question>
bool inAChild(Question isAsWanted)
{
    const pid_t child = fork();
    if (child == 0)
        _exit(isAsWanted() ? 0 : 1);
    int status = 0;
    return waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

void endTheApplication()
{
    QCoreApplication::instance()->~QCoreApplication();
}

/// A WAV file in which far more silence stands than can be converted in the time of a test.
QString makeEndlessWav(const MediaFolder &folder)
{
    QFile file(folder.make(u"long.mp4"_qs, u"-f lavfi -i anullsrc=r=8000 -t 0.1 -c:a pcm_u8 -f wav"_qs));
    EXPECT_TRUE(file.open(QIODevice::ReadWrite));
    const qsizetype data = file.read(100).indexOf("data");
    EXPECT_TRUE(file.seek(data + 4) && file.write(QByteArray(4, '\xff')) == 4);
    EXPECT_TRUE(file.resize(Q_INT64_C(1) << 40));
    return file.fileName();
}

bool isInterruptedByQuitting(const std::function<void()> &convert)
{
    std::future<void> done = runOnWorker(convert);
    QTimer::singleShot(300ms, QCoreApplication::instance(), &QCoreApplication::quit);
    if (done.wait_for(0s) == std::future_status::ready)
        return false;
    QCoreApplication::exec();
    return done.wait_for(5s) == std::future_status::ready;
}

TEST(Quitting, interruptsAConversionAndLeavesNothingOfIt)
{
    MediaFolder folder;
    const QString source = makeEndlessWav(folder);
    const AudioPreparer preparer{TemporaryFiles()};
    EXPECT_TRUE(inAChild([&] { return isInterruptedByQuitting([&] { preparer.convertToWav(source, u"test"_qs); }); }));
    EXPECT_EQ(folder.names(), QStringList{u"long.mp4"_qs});
    EXPECT_TRUE(inAChild([&] { return isInterruptedByQuitting([&] { preparer.exportToM4A(source); }); }));
    EXPECT_EQ(folder.names(), QStringList{u"long.mp4"_qs});
    EXPECT_TRUE(inAChild([&] {
        return isInterruptedByQuitting([&] { EXPECT_THROW(preparer.convertForMeeting(source), std::exception); });
    }));
    EXPECT_EQ(folder.names(), QStringList{u"long.mp4"_qs});
}

TEST(Quitting, removesAFileThatNobodyRecordsAnyMore)
{
    MediaFolder folder;
    const QString source = folder.make(u"movie.mp4"_qs, u"-f lavfi -i sine=duration=1 -c:a aac"_qs);
    const AudioPreparer preparer{TemporaryFiles()};
    EXPECT_TRUE(inAChild([&] {
        const bool isMade = preparer.convertToWav(source, u"test"_qs) && folder.names().size() == 2;
        endTheApplication();
        return isMade;
    }));
    EXPECT_EQ(folder.names(), QStringList{u"movie.mp4"_qs}) << "the post went with the application";
    EXPECT_TRUE(inAChild([&] {
        endTheApplication();
        preparer.removeTemporaries();
        return !isMainThread() && preparer.convertToWav(source, u"test"_qs).has_value();
    }));
    EXPECT_EQ(folder.names(), QStringList{u"movie.mp4"_qs}) << "there was nobody to post to";
}

TEST(MainThread, isTheOneOfTheApplication)
{
    EXPECT_TRUE(isMainThread());
    EXPECT_FALSE(std::async(std::launch::async, isMainThread).get());
    EXPECT_FALSE(isQuitting());
}

} // namespace
