#include "core/transcription_run.h"

#include "core/transcript_text.h"
#include "support/fake_engine_bundle.h"
#include "support/printing.h"
#include "support/waiting.h"

#include <gtest/gtest.h>

#include <QSignalSpy>
#include <QTest>
#include <QThreadPool>

using namespace sorvanta;

namespace {

const QByteArray timedOutput = "print main%3A processing 'a.wav' (480000 samples, 30.0 sec), 4 threads%0A\n"
                               "print [00%3A00%3A00.000 --> 00%3A00%3A15.000]   - One%0A\n";

class TranscriptionRunTest : public testing::Test {
protected:
    void start(const QByteArray &script, const QString &language = QStringLiteral("auto"))
    {
        run.start(QStringLiteral("/a.wav"), bundle.script(script), language);
    }
    void waitForEnd()
    {
        ASSERT_TRUE(waitUntil([this] { return !run.isTranscribing(); }));
    }
    template<typename Condition>
    void waitFor(Condition condition)
    {
        ASSERT_TRUE(waitUntil(condition));
    }

    FakeEngineBundle bundle;
    QStringList events;
    TranscriptionRun run{{bundle.resourceFolder(), false},
                         {.removeTemporaries = [this] { events << QStringLiteral("remove"); },
                          .saveToHistory = [this] { events << QStringLiteral("save"); }}};
};

TEST_F(TranscriptionRunTest, isIdleAtFirst)
{
    EXPECT_FALSE(run.isTranscribing());
    EXPECT_FALSE(run.isStopping());
    EXPECT_FALSE(run.hasActiveProcess());
    EXPECT_EQ(run.transcript(), QString());
    EXPECT_EQ(run.rawOutput(), QString());
    EXPECT_EQ(run.status(), QString());
    EXPECT_FALSE(run.error());
    EXPECT_FALSE(run.progress());
    EXPECT_EQ(run.etaText(), QString());
    EXPECT_EQ(run.remainingText(), u"Estimating…"_qs);
    EXPECT_FALSE(run.totalDuration());
    EXPECT_FALSE(run.transcriptionStart());
    EXPECT_FALSE(run.hasShownText());
    EXPECT_FALSE(run.hasSegments());
    EXPECT_FALSE(run.isStatusShown());
}

TEST_F(TranscriptionRunTest, tellsOnceThatThereAreSegmentsAndForgetsThemWithTheNextRun)
{
    QSignalSpy changed(&run, &TranscriptionRun::hasSegmentsChanged);
    start("print words%0A\n" + timedOutput + "print [00%3A00%3A15.000 --> 00%3A00%3A30.000]   Two%0A\n");
    waitForEnd();
    EXPECT_TRUE(run.hasSegments());
    EXPECT_EQ(changed.count(), 1);
    run.setStripDashes(true);
    EXPECT_TRUE(run.hasSegments());
    run.beginRun();
    EXPECT_FALSE(run.hasSegments());
    EXPECT_EQ(changed.count(), 2);
}

TEST_F(TranscriptionRunTest, beginResetsEveryField)
{
    start(timedOutput);
    waitForEnd();
    run.setError(u"old"_qs);
    const auto before = TranscriptionProgress::Clock::now();
    run.beginRun();
    ASSERT_TRUE(run.transcriptionStart());
    EXPECT_GE(*run.transcriptionStart(), before);
    EXPECT_LE(*run.transcriptionStart(), TranscriptionProgress::Clock::now());
    EXPECT_TRUE(run.isTranscribing());
    EXPECT_EQ(run.transcript(), QString());
    EXPECT_EQ(run.rawOutput(), QString());
    EXPECT_FALSE(run.error());
    EXPECT_EQ(run.status(), u"Preparing…"_qs);
    EXPECT_FALSE(run.progress());
    EXPECT_EQ(run.etaText(), u"Estimating…"_qs);
    EXPECT_FALSE(run.totalDuration());
    EXPECT_FALSE(run.isStopping());
    EXPECT_FALSE(run.hasActiveProcess());
    EXPECT_EQ(run.lines()->count(), 0);
    EXPECT_FALSE(run.hasShownText());
}

TEST_F(TranscriptionRunTest, beginTakesTheWishToStopBackAndForgetsTheProcess)
{
    start("sleep 60000\n");
    waitFor([this] { return run.hasActiveProcess(); });
    run.stopRun();
    ASSERT_TRUE(run.isStopping());
    run.beginRun();
    EXPECT_FALSE(run.isStopping());
    EXPECT_FALSE(run.hasActiveProcess());
    run.startBegun(QStringLiteral("/a.wav"), bundle.script("print [x] text%0A\n"), QStringLiteral("auto"));
    waitForEnd();
    EXPECT_EQ(run.status(), u"Done"_qs) << "the new run knows nothing of the earlier wish";
    EXPECT_EQ(run.transcript(), u"text"_qs);
}

TEST_F(TranscriptionRunTest, aStopThatComesWhenTheToolHasBeenReadToItsEndChangesNothing)
{
    start("print [x] text%0A\n");
    ASSERT_TRUE(QThreadPool::globalInstance()->waitForDone(patience));
    run.stopRun();
    EXPECT_EQ(run.status(), u"Stopping…"_qs);
    waitForEnd();
    EXPECT_EQ(run.status(), u"Done"_qs);
    EXPECT_FALSE(run.isStopping());
    EXPECT_EQ(events, (QStringList{u"remove"_qs, u"save"_qs}));
}

TEST_F(TranscriptionRunTest, aStoppedToolIsCancelledThoughTheWishToStopIsForgottenMeanwhile)
{
    start("print x%0A\nsleep 60000\n");
    waitFor([this] { return run.hasActiveProcess() && !run.rawOutput().isEmpty(); });
    run.stopRun();
    ASSERT_TRUE(QThreadPool::globalInstance()->waitForDone(patience));
    run.clearOutput();
    EXPECT_FALSE(run.isStopping());
    waitForEnd();
    EXPECT_EQ(run.status(), u"Cancelled"_qs);
    EXPECT_FALSE(run.error());
}

TEST_F(TranscriptionRunTest, followsTheOutputAndEndsDone)
{
    start(timedOutput + bundle.awaitGate() + "print [00%3A00%3A15.000 --> 00%3A00%3A30.000]   Two%0A\n");
    EXPECT_TRUE(run.isTranscribing());
    waitFor([this] { return run.hasProgress() && run.progressOrZero() > 0; });
    EXPECT_EQ(run.progress(), 0.5);
    EXPECT_EQ(run.progressText(), u"Progress: 50%"_qs);
    EXPECT_TRUE(run.etaText().startsWith(u"ETA: "_qs));
    EXPECT_EQ(run.totalDuration(), 30.0);
    EXPECT_EQ(run.transcript(), u"- One"_qs);
    EXPECT_TRUE(run.hasActiveProcess());
    EXPECT_FALSE(run.isStatusShown()) << "the progress row speaks for it";
    EXPECT_TRUE(events.isEmpty());

    bundle.openGate();
    waitForEnd();
    EXPECT_EQ(run.status(), u"Done"_qs);
    EXPECT_TRUE(run.isStatusShown());
    EXPECT_EQ(run.progress(), 1.0);
    EXPECT_EQ(run.etaText(), u"Done"_qs);
    EXPECT_EQ(run.transcript(), u"- One\nTwo"_qs);
    EXPECT_EQ(run.transcript(), cleanWhisperOutput(run.rawOutput()));
    EXPECT_FALSE(run.error());
    EXPECT_FALSE(run.hasActiveProcess());
    EXPECT_EQ(events, (QStringList{u"remove"_qs, u"save"_qs}));
}

TEST_F(TranscriptionRunTest, showsTheStatusUntilProgressIsKnown)
{
    start("sleep 300\n");
    EXPECT_TRUE(run.isStatusShown());
    EXPECT_EQ(run.status(), u"Preparing…"_qs);
    waitForEnd();
    EXPECT_EQ(run.status(), u"Done"_qs);
    EXPECT_EQ(run.transcript(), QString()) << "an engine that said nothing";
}

TEST_F(TranscriptionRunTest, showsAFailureAndSavesNothing)
{
    start(timedOutput + "exit 3\n");
    waitForEnd();
    EXPECT_EQ(run.status(), QString());
    ASSERT_TRUE(run.error());
    EXPECT_TRUE(run.error()->startsWith(u"Whisper failed: main: processing"_qs));
    EXPECT_EQ(run.progress(), 0.5) << "progress stays as it was";
    EXPECT_TRUE(run.etaText().startsWith(u"ETA: "_qs));
    EXPECT_EQ(run.transcript(), u"- One"_qs);
    EXPECT_EQ(events, QStringList{u"remove"_qs});
}

TEST_F(TranscriptionRunTest, aStopEndsAsCancelledAndKeepsThePartialText)
{
    start(timedOutput + "sleep 60000\n");
    waitFor([this] { return !run.transcript().isEmpty(); });
    run.stopRun();
    EXPECT_TRUE(run.isStopping());
    EXPECT_EQ(run.status(), u"Stopping…"_qs);
    EXPECT_TRUE(run.isTranscribing());
    waitForEnd();
    EXPECT_EQ(run.status(), u"Cancelled"_qs);
    EXPECT_FALSE(run.isStopping());
    EXPECT_FALSE(run.error());
    EXPECT_EQ(run.transcript(), u"- One"_qs);
    EXPECT_EQ(run.progress(), 0.5);
    EXPECT_EQ(events, QStringList{u"remove"_qs});
}

TEST_F(TranscriptionRunTest, aStopLeavesAnErrorThatStandsAsItIs)
{
    start("print x%0A\nsleep 60000\n");
    waitFor([this] { return !run.rawOutput().isEmpty(); });
    run.setError(u"said meanwhile"_qs);
    run.stopRun();
    waitForEnd();
    EXPECT_EQ(run.status(), u"Cancelled"_qs);
    EXPECT_EQ(run.error(), u"said meanwhile"_qs);
}

TEST_F(TranscriptionRunTest, aStopPressedTwiceHasNoSecondEffect)
{
    start("ignore-stop\nprint x%0A\n" + bundle.awaitGate());
    waitFor([this] { return !run.rawOutput().isEmpty(); });
    run.stopRun();
    run.setStatus(u"marked"_qs);
    QSignalSpy statusSpy(&run, &TranscriptionRun::statusChanged);
    run.stopRun();
    EXPECT_EQ(statusSpy.count(), 0);
    EXPECT_EQ(run.status(), u"marked"_qs);
    bundle.openGate();
    waitForEnd();
    EXPECT_EQ(run.status(), u"Cancelled"_qs);
}

TEST_F(TranscriptionRunTest, aStopWithoutARunDoesNothing)
{
    run.stopRun();
    EXPECT_FALSE(run.isStopping());
    EXPECT_EQ(run.status(), QString());
}

TEST_F(TranscriptionRunTest, aStopBeforeTheProcessWasStoredSendsNothingButStillCancels)
{
    start("sleep 300\nprint [x] text%0A\n");
    ASSERT_FALSE(run.hasActiveProcess()) << "the post has not run yet";
    run.stopRun();
    EXPECT_TRUE(run.isStopping());
    waitForEnd();
    EXPECT_EQ(run.status(), u"Cancelled"_qs);
    EXPECT_EQ(run.transcript(), u"text"_qs) << "the engine ran to its end";
    EXPECT_EQ(events, QStringList{u"remove"_qs});
}

TEST_F(TranscriptionRunTest, aMissingEngineIsTold)
{
    QFile::remove(bundle.enginePath());
    start("");
    waitForEnd();
    EXPECT_EQ(run.errorText(), u"whisper-cli not found in bundle at sorvanta_extra_data/whisper.cpp/build/bin"_qs);
}

TEST_F(TranscriptionRunTest, anErrorIsShownWithoutTheLineEndsBehindIt)
{
    start("complain one%0Atwo%0D%0A%0A\nexit 1\n");
    waitForEnd();
    EXPECT_EQ(run.error(), u"Whisper failed: one\ntwo\r\n\n"_qs);
    EXPECT_EQ(run.errorText(), u"Whisper failed: one\ntwo"_qs);
    run.setError(std::nullopt);
    EXPECT_EQ(run.errorText(), QString());
}

TEST_F(TranscriptionRunTest, aTranscriptClearedInMidRunComesBackAtItsEnd)
{
    start(timedOutput + bundle.awaitGate());
    waitFor([this] { return run.transcript() == u"- One"_qs; });
    QSignalSpy changed(&run, &TranscriptionRun::transcriptChanged);
    run.clearTranscript();
    EXPECT_EQ(run.transcript(), QString());
    EXPECT_EQ(changed.count(), 1);
    bundle.openGate();
    waitForEnd();
    EXPECT_EQ(run.transcript(), u"- One"_qs);
    EXPECT_EQ(changed.count(), 2);
}

TEST_F(TranscriptionRunTest, handsOnTheLanguageTrimmedAndLowerCased)
{
    start("arguments\n", u"  EN "_qs);
    waitForEnd();
    EXPECT_TRUE(run.rawOutput().endsWith(u"-l\nen\n"_qs));
    EXPECT_EQ(run.runLanguage(), u"en"_qs);
}

TEST_F(TranscriptionRunTest, repairsOutputThatIsNoUtf8AtTheEnd)
{
    start("print [x] a%0A\nawait-reader\nprint [x] %FF%0A\n");
    waitForEnd();
    EXPECT_EQ(run.transcript(), u"a\n\uFFFD"_qs);
    EXPECT_EQ(run.rawOutput(), u"[x] a\n[x] \uFFFD\n"_qs);
}

TEST_F(TranscriptionRunTest, stripsDashesFromWhatIsShownOnly)
{
    start(timedOutput);
    waitForEnd();
    run.setStripDashes(true);
    EXPECT_EQ(run.displayedTranscript(), u"One"_qs);
    EXPECT_EQ(run.lines()->index(0).data(TranscriptLinesModel::TextRole).toString(), u"One"_qs);
    EXPECT_EQ(run.transcript(), u"- One"_qs);
}

TEST_F(TranscriptionRunTest, aStopTurnsAFailureIntoACancellation)
{
    QFile::remove(bundle.enginePath());
    start("");
    run.stopRun();
    waitForEnd();
    EXPECT_EQ(run.status(), u"Cancelled"_qs);
    EXPECT_FALSE(run.error());
}

TEST_F(TranscriptionRunTest, tellsItsEndWhenAllOfItIsDone)
{
    QObject::connect(&run, &TranscriptionRun::isTranscribingChanged, &run, [this] {
        if (!run.isTranscribing() && events.size() == 2)
            start("print [x] second%0A\n");
    });
    start(timedOutput);
    waitFor([this] { return events.size() == 4; });
    EXPECT_EQ(events, (QStringList{u"remove"_qs, u"save"_qs, u"remove"_qs, u"save"_qs}));
    EXPECT_EQ(run.transcript(), u"second"_qs);
}

TEST_F(TranscriptionRunTest, keepsWhatWasNoTextYetOutOfAStoppedRun)
{
    start("print [x] a%0A\nawait-reader\nprint %FF\nsleep 60000\n");
    waitFor([this] { return !run.rawOutput().isEmpty(); });
    QTest::qWait(400);
    run.stopRun();
    waitForEnd();
    EXPECT_EQ(run.rawOutput(), u"[x] a\n"_qs);
}

TEST_F(TranscriptionRunTest, aClearedTranscriptLeavesTheOutputOnShow)
{
    start(timedOutput);
    waitForEnd();
    run.clearTranscript();
    EXPECT_EQ(run.transcript(), QString());
    EXPECT_EQ(run.displayedTranscript(), u"- One"_qs);
}

const TranscriptionRun::Hooks noHooks{.removeTemporaries = [] {}, .saveToHistory = [] {}};

TEST(TranscriptionRun, destroyedInMidRunEndsItsEngine)
{
    FakeEngineBundle bundle;
    {
        TranscriptionRun run({bundle.resourceFolder(), false}, noHooks);
        run.start(QStringLiteral("/a.wav"), bundle.script("print x%0A\nsleep 60000\n"), QString());
        ASSERT_TRUE(waitUntil([&run] { return !run.rawOutput().isEmpty(); }));
        ASSERT_TRUE(bundle.isAtWork());
    }
    EXPECT_TRUE(waitUntil([&bundle] { return !bundle.isAtWork(); }));
}

TEST(TranscriptionRun, destroyedBeforeTheMainLoopRanEndsItsEngine)
{
    FakeEngineBundle bundle;
    {
        TranscriptionRun run({bundle.resourceFolder(), false}, noHooks);
        run.start(QStringLiteral("/a.wav"), bundle.script("sleep 60000\n"), QString());
    }
    const auto isWorkerFree = [] { return QThreadPool::globalInstance()->activeThreadCount() == 0; };
    EXPECT_TRUE(waitUntil(isWorkerFree));
    EXPECT_FALSE(bundle.isAtWork());
}

TEST(TranscriptionRun, destroyedKillsEnginesThatIgnoreTheStopAlsoEarlierOnes)
{
    FakeEngineBundle bundle;
    {
        TranscriptionRun run({bundle.resourceFolder(), false}, noHooks);
        const QString script = bundle.script("ignore-stop\nprint x%0A\nsleep 60000\n");
        for (const QString &audio : {QStringLiteral("/a.wav"), QStringLiteral("/b.wav")}) {
            run.start(audio, script, QString());
            ASSERT_TRUE(waitUntil([&run] { return !run.rawOutput().isEmpty(); }));
        }
        ASSERT_TRUE(bundle.isAtWork("/a.wav") && bundle.isAtWork("/b.wav"));
    }
    EXPECT_TRUE(waitUntil([&bundle] { return !bundle.isAtWork(); }));
}

TEST(TranscriptionRun, twoAtOnceDoNotKnowOfEachOther)
{
    FakeEngineBundle bundle;
    TranscriptionRun first({bundle.resourceFolder(), false}, noHooks);
    TranscriptionRun second({bundle.resourceFolder(), false}, noHooks);
    first.start(QStringLiteral("/a"), bundle.script("print [x] a%0A\nsleep 60000\n", u"a"_qs), QString());
    second.start(QStringLiteral("/b"), bundle.script("print [x] b%0A\n", u"b"_qs), QString());
    ASSERT_TRUE(waitUntil([&] { return !first.transcript().isEmpty() && !second.isTranscribing(); }));
    EXPECT_EQ(second.status(), u"Done"_qs);
    EXPECT_TRUE(first.isTranscribing());
    EXPECT_EQ(first.transcript(), u"a"_qs);
    first.stopRun();
    ASSERT_TRUE(waitUntil([&] { return !first.isTranscribing(); }));
    EXPECT_EQ(first.status(), u"Cancelled"_qs);
}

} // namespace
