#include "batch_screen_test.h"

#include "support/held_file.h"

#include <QDeadlineTimer>
#include <QThreadPool>

#include <chrono>
#include <thread>

using namespace sorvanta;
using testing::ElementsAre;

namespace {

class BatchStop : public BatchScreenTest {
protected:
    /// Starts files of which the engine speaks two lines and then does not end.
    void startTalking(const QStringList &paths)
    {
        start(paths, twoLines + "only b.wav\nsleep 60000\n");
        waitFor([this] { return status(1) == FileStatus::running && result(1).hasTranscript; });
    }
    /// Calls `action` on the main thread as soon as the status says this.
    template<typename Action>
    void when(const QString &words, Action action)
    {
        QObject::connect(&run(), &RunState::statusChanged, &run(), [this, words, action] {
            if (run().status() == words)
                action();
        });
    }
};

TEST_F(BatchStop, duringARunLeavesTheFilesBehindItPending)
{
    const QString clip = movie(u"a.mp4"_qs);
    startTalking({clip, u"/music/b.wav"_qs, u"/music/c.wav"_qs});
    run().stopRun();
    EXPECT_EQ(run().status(), u"Stopping…"_qs);
    EXPECT_TRUE(run().isStopping());
    EXPECT_FALSE(screen->canStop());
    EXPECT_TRUE(run().isTranscribing()) << "until the engine has ended";
    waitForEnd();
    EXPECT_EQ(run().status(), u"Cancelled"_qs);
    EXPECT_FALSE(run().error());
    EXPECT_FALSE(run().isStopping());
    EXPECT_FALSE(run().hasActiveProcess());
    EXPECT_FALSE(run().progress());
    EXPECT_EQ(run().etaText(), QString());
    EXPECT_EQ(status(0), FileStatus::done);
    EXPECT_EQ(status(1), FileStatus::cancelled);
    ASSERT_TRUE(result(1).error);
    EXPECT_EQ(*result(1).error, CancellationError().localizedDescription());
    EXPECT_EQ(result(1).transcript(), u"- One\nTwo"_qs) << "the partial text stays";
    EXPECT_EQ(status(2), FileStatus::pending);
    EXPECT_FALSE(result(2).error);
    EXPECT_THAT(bench.temporaryFiles(), ElementsAre());
    EXPECT_EQ(bench.history.entries().size(), 1) << "of the file before";
}

TEST_F(BatchStop, leavesAnEarlierErrorAsItIs)
{
    startTalking({u"/music/a.wav"_qs, u"/music/b.wav"_qs});
    run().setError(u"Could not save TXT: no."_qs);
    run().stopRun();
    waitForEnd();
    EXPECT_EQ(run().status(), u"Cancelled"_qs);
    EXPECT_EQ(run().error(), u"Could not save TXT: no."_qs);
}

TEST_F(BatchStop, pressedTwiceHasNoSecondEffect)
{
    startTalking({u"/music/a.wav"_qs, u"/music/b.wav"_qs});
    run().stopRun();
    run().setStatus(u"other"_qs);
    run().stopRun();
    EXPECT_EQ(run().status(), u"other"_qs);
    waitForEnd();
}

TEST_F(BatchStop, withoutABatchDoesNothing)
{
    run().stopRun();
    EXPECT_FALSE(run().isStopping());
    EXPECT_EQ(run().status(), QString());
}

TEST_F(BatchStop, whileAFileIsConvertedCancelsAllThatIsNotDone)
{
    const QString clip = movie(u"b.mp4"_qs);
    HeldFile held(clip);
    useModel(twoLines);
    choose({u"/music/a.wav"_qs, clip, u"/music/c.wav"_qs});
    when(u"Converting b.mp4 to wav audio…"_qs, [this, &held] {
        run().stopRun();
        held.letGo();
    });
    screen->start();
    waitForEnd();
    EXPECT_TRUE(statuses.contains(u"Stopping…"_qs));
    EXPECT_EQ(run().status(), u"Cancelled"_qs);
    EXPECT_FALSE(run().error());
    EXPECT_EQ(run().progress(), 1.0) << "set although the batch was stopped";
    EXPECT_EQ(run().etaText(), u"Done"_qs);
    EXPECT_FALSE(run().isStopping());
    EXPECT_FALSE(run().hasActiveProcess());
    EXPECT_EQ(status(0), FileStatus::done);
    EXPECT_EQ(status(1), FileStatus::cancelled);
    EXPECT_EQ(status(2), FileStatus::cancelled);
    EXPECT_FALSE(result(1).error);
    EXPECT_FALSE(result(2).error);
    EXPECT_EQ(result(1).rawOutput(), QString()) << "no engine was started for it";
    EXPECT_THAT(bench.temporaryFiles(), ElementsAre());
    EXPECT_EQ(bench.history.entries().size(), 1);
}

TEST_F(BatchStop, atTheEndOfARunCancelsThatFileAndItIsNotKept)
{
    useModel(twoLines + "only b.wav\n" + bench.engine.awaitGate());
    choose(threeFiles);
    when(u"Transcribing a.wav (1/3)"_qs, [this] {
        // The first run ends and the second begins, while the main thread is at something else.
        const QDeadlineTimer deadline(patience);
        while (!bench.engine.isAtWork("/music/b.wav") && !deadline.hasExpired())
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        ASSERT_TRUE(bench.engine.isAtWork("/music/b.wav"));
        run().stopRun();
        bench.engine.openGate();
    });
    screen->start();
    waitForEnd();
    EXPECT_EQ(run().status(), u"Cancelled"_qs);
    EXPECT_EQ(status(0), FileStatus::cancelled);
    EXPECT_EQ(result(0).transcript(), u"- One\nTwo"_qs);
    EXPECT_FALSE(result(0).error);
    EXPECT_EQ(status(1), FileStatus::cancelled);
    EXPECT_TRUE(result(1).error);
    EXPECT_EQ(status(2), FileStatus::pending);
    EXPECT_TRUE(bench.history.entries().isEmpty());
}

TEST_F(BatchStop, whenTheLastRunHasEndedCancelsAllThatTheMainThreadHasNotHeardOfYet)
{
    useModel(twoLines);
    choose({u"/music/a.wav"_qs, u"/music/b.wav"_qs});
    when(u"Transcribing a.wav (1/2)"_qs, [this] {
        ASSERT_TRUE(QThreadPool::globalInstance()->waitForDone(patience));
        run().stopRun();
    });
    screen->start();
    waitForEnd();
    EXPECT_EQ(run().status(), u"Cancelled"_qs);
    EXPECT_FALSE(run().error());
    EXPECT_EQ(run().progress(), 1.0) << "set although the batch was stopped";
    EXPECT_EQ(run().etaText(), u"Done"_qs);
    for (qsizetype row = 0; row < 2; ++row) {
        EXPECT_EQ(status(row), FileStatus::cancelled);
        EXPECT_FALSE(result(row).error);
        EXPECT_EQ(result(row).transcript(), u"- One\nTwo"_qs);
    }
    EXPECT_TRUE(bench.history.entries().isEmpty());
}

TEST_F(BatchStop, ofAConversionThatFailsIsToldAsThatFailure)
{
    const QString silent = bench.file(u"silent.mp4"_qs);
    writeSilentMovie(silent);
    useModel(twoLines);
    choose({silent});
    when(u"Converting silent.mp4 to wav audio…"_qs, [this] { run().stopRun(); });
    screen->start();
    waitForEnd();
    EXPECT_EQ(run().error(), u"Could not convert silent.mp4 for transcription."_qs);
    EXPECT_FALSE(run().isStopping());
    EXPECT_EQ(status(0), FileStatus::pending);
}

TEST_F(BatchStop, isForgottenByTheNextBatch)
{
    startTalking({u"/music/a.wav"_qs, u"/music/b.wav"_qs});
    run().stopRun();
    waitForEnd();
    useModel(twoLines);
    screen->start();
    EXPECT_FALSE(run().isStopping());
    waitForEnd();
    EXPECT_EQ(run().status(), u"Done"_qs);
    EXPECT_EQ(status(1), FileStatus::done);
}

} // namespace
