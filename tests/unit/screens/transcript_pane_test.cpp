#include "file_screen_test.h"
#include "support/posted_work.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QSignalSpy>
#include <QThreadPool>

using namespace sorvanta;

namespace {

const QByteArray firstLine = "print main%3A processing 'a.wav' (480000 samples, 30.0 sec), 4 threads%0A\n"
                             "print [00%3A00%3A00.000 --> 00%3A00%3A15.000]   - One%0A\n";
const QByteArray secondLine = "print [00%3A00%3A15.000 --> 00%3A00%3A30.000]   Two one%0A\n";

class TranscriptPaneTest : public FileScreenTest {
protected:
    TranscriptPane &pane() { return *screen->pane(); }

    /// Starts an engine that, once it has said its first line, goes on and then ends when the test says so.
    void startSlowRun()
    {
        startSlowRun(firstLine + bench.engine.awaitGate(u"second"_qs) + secondLine + bench.engine.awaitGate(u"end"_qs));
    }
    void waitForSecondLine()
    {
        bench.engine.openGate(u"second"_qs);
        waitFor([this] { return run().lines()->count() == 2; });
    }
    void letEngineEnd() { bench.engine.openGate(u"end"_qs); }
    void startSlowRun(const QByteArray &commands)
    {
        useModel(commands);
        choose(u"/music/talk.wav"_qs);
        screen->start();
        waitFor([this] { return run().hasShownText(); });
    }
    static QString pasteboard() { return QGuiApplication::clipboard()->text(); }
};

TEST_F(TranscriptPaneTest, isThereOnlyWhileThereIsText)
{
    EXPECT_FALSE(pane().isShown());
    EXPECT_FALSE(pane().hasText());
    EXPECT_FALSE(pane().isShowLogsOffered());
    transcribe(u"/music/a.wav"_qs, twoLines);
    EXPECT_TRUE(pane().isShown());
    EXPECT_TRUE(pane().hasText());
    EXPECT_TRUE(pane().isShowLogsOffered());
}

TEST_F(TranscriptPaneTest, isNotThereForALogWithoutText)
{
    transcribe(u"/music/a.wav"_qs, "print main%3A processing%0A\n");
    EXPECT_FALSE(pane().isShown());
    EXPECT_TRUE(pane().isShowLogsOffered()) << "as long as the output holds anything";
}

TEST_F(TranscriptPaneTest, offersTheLogAlsoForATextOfOneLine)
{
    transcribe(u"/music/a.wav"_qs, "print Hello%0A\n");
    EXPECT_EQ(run().displayedTranscript(), u"Hello"_qs);
    EXPECT_TRUE(pane().isShowLogsOffered());
}

TEST_F(TranscriptPaneTest, countsTheShownText)
{
    EXPECT_EQ(pane().counts(), u"0 words · 0 chars"_qs);
    startSlowRun();
    EXPECT_EQ(pane().counts(), u"2 words · 5 chars"_qs);
    bench.engine.openGate(u"second"_qs);
    letEngineEnd();
    waitForStatus(u"Done"_qs);
    EXPECT_EQ(pane().counts(), TranscriptCounts(run().displayedTranscript()));
    EXPECT_EQ(pane().counts(), u"4 words · 13 chars"_qs);
    pane().setStripDashes(true);
    EXPECT_EQ(pane().counts(), u"3 words · 11 chars"_qs);
    screen->pane()->clearOutput();
    EXPECT_EQ(pane().counts(), u"0 words · 0 chars"_qs);
}

TEST_F(TranscriptPaneTest, searchesAnewWithEachChunkAndGoesBackToTheFirstHit)
{
    startSlowRun();
    pane().search()->setSearchText(u"one"_qs);
    EXPECT_EQ(pane().search()->matchCounter(), u"1 / 1"_qs);
    waitForSecondLine();
    EXPECT_EQ(pane().search()->matchCounter(), u"1 / 2"_qs);
    pane().search()->nextMatch();
    EXPECT_EQ(pane().search()->matchCounter(), u"2 / 2"_qs);
    letEngineEnd();
    waitForStatus(u"Done"_qs);
    useModel(bench.engine.awaitGate(u"first"_qs) + firstLine + "sleep 60000\n");
    screen->start();
    waitFor([this] { return run().isTranscribing(); });
    EXPECT_EQ(pane().search()->matchCounter(), u"0 / 0"_qs) << "a run begins without text";
    bench.engine.openGate(u"first"_qs);
    waitFor([this] { return run().lines()->count() == 1; });
    EXPECT_EQ(pane().search()->matchCounter(), u"1 / 1"_qs);
}

TEST_F(TranscriptPaneTest, searchesAnewWhenDashesAreStripped)
{
    transcribe(u"/music/a.wav"_qs, twoLines);
    pane().search()->setSearchText(u"one"_qs);
    EXPECT_EQ(pane().search()->match(0), (Match{0, 2, 3}));
    pane().setStripDashes(true);
    EXPECT_EQ(pane().search()->match(0), (Match{0, 0, 3}));
    EXPECT_EQ(pane().hitsInRow(0), QList<int>({0, 3, 1}));
    EXPECT_EQ(TranscriptPane::stripDashesHint(), u"Remove leading dash markers from lines."_qs);
}

TEST_F(TranscriptPaneTest, choosingAFileGoesBackToTheFirstHit)
{
    transcribe(u"/music/a.wav"_qs, firstLine + secondLine);
    pane().search()->setSearchText(u"one"_qs);
    pane().search()->nextMatch();
    choose(u"/music/b.wav"_qs);
    EXPECT_EQ(pane().search()->matchCounter(), u"1 / 2"_qs) << "the transcript was emptied";
}

TEST_F(TranscriptPaneTest, tellsWhatIsPaintedInARow)
{
    transcribe(u"/music/a.wav"_qs, "print [x] caf%C3%A9 cafe%0A\nprint [x] Cafe%0A\n");
    QSignalSpy repainted(&pane(), &TranscriptPane::paintRevisionChanged);
    EXPECT_EQ(pane().hitsInRow(0), QList<int>());
    pane().search()->setSearchText(u"cafe"_qs);
    EXPECT_EQ(repainted.count(), 1);
    EXPECT_EQ(pane().hitsInRow(0), QList<int>({0, 4, 0, 5, 4, 1})) << "marks are painted over but not counted";
    EXPECT_EQ(pane().hitsInRow(1), QList<int>({0, 4, 0}));
    EXPECT_EQ(pane().search()->matchCounter(), u"1 / 2"_qs);
    pane().search()->nextMatch();
    EXPECT_EQ(repainted.count(), 2);
    EXPECT_EQ(pane().hitsInRow(1), QList<int>({0, 4, 1}));
    EXPECT_EQ(pane().hitsInRow(-1), QList<int>());
    EXPECT_EQ(pane().hitsInRow(2), QList<int>());
}

TEST_F(TranscriptPaneTest, copiesTheShownText)
{
    transcribe(u"/music/a.wav"_qs, twoLines);
    pane().copyOutput();
    EXPECT_EQ(pasteboard(), u"- One\nTwo"_qs);
    pane().setStripDashes(true);
    pane().copyOutput();
    EXPECT_EQ(pasteboard(), u"One\nTwo"_qs);
    pane().copyLog();
    EXPECT_EQ(pasteboard(), run().rawOutput());
}

TEST_F(TranscriptPaneTest, theSheetHasTheLogOrSaysThatThereIsNone)
{
    EXPECT_EQ(pane().showLogsLabel(), u"Show Logs"_qs);
    EXPECT_EQ(pane().logsTitle(), u"Logs"_qs);
    EXPECT_FALSE(pane().showLogsSheet());
    EXPECT_EQ(pane().emptyLogText(), u"No logs available."_qs);
    startSlowRun();
    EXPECT_EQ(pane().log()->count(), 0) << "not before it is shown";
    pane().setShowLogsSheet(true);
    EXPECT_EQ(pane().emptyLogText(), QString());
    EXPECT_EQ(pane().log()->count(), 2);
    waitForSecondLine();
    EXPECT_EQ(pane().log()->count(), 3) << "it goes on while it is shown";
    pane().setShowLogsSheet(false);
    EXPECT_EQ(pane().log()->count(), 0);
}

TEST_F(TranscriptPaneTest, clearOutputEmptiesAllThatIsShown)
{
    useModel("print main%3A processing 'a.wav' (480000 samples, 30.0 sec), 4 threads%0A\n"
             "print [00%3A00%3A00.000 --> 00%3A00%3A15.000]   One one%0A\nexit 3\n");
    choose(u"/music/a.wav"_qs);
    screen->start();
    waitFor([this] { return run().hasError(); });
    run().setStatus(u"Saved TXT to a.txt"_qs);
    pane().search()->setSearchText(u"one"_qs);
    pane().search()->nextMatch();
    pane().setShowLogsSheet(true);
    ASSERT_EQ(run().progress(), 0.5);
    pane().clearOutput();
    EXPECT_EQ(run().transcript(), QString());
    EXPECT_EQ(run().rawOutput(), QString());
    EXPECT_EQ(run().displayedTranscript(), QString());
    EXPECT_EQ(pane().search()->searchText(), QString());
    EXPECT_EQ(run().etaText(), QString());
    EXPECT_EQ(run().status(), QString());
    EXPECT_FALSE(pane().showLogsSheet());
    EXPECT_FALSE(run().isStopping());
    EXPECT_EQ(pane().search()->matchCount(), 0);
    EXPECT_EQ(pane().search()->currentMatchIndex(), 0);
    EXPECT_EQ(run().progress(), std::nullopt);
    EXPECT_EQ(run().totalDuration(), std::nullopt);
    EXPECT_FALSE(run().hasActiveProcess());
    EXPECT_EQ(run().error(), std::nullopt);
    EXPECT_FALSE(run().hasSegments());
    EXPECT_FALSE(pane().isShown());
    EXPECT_FALSE(pane().isShowLogsOffered());
    EXPECT_TRUE(screen->canStart());
}

TEST_F(TranscriptPaneTest, clearOutputRemovesTheTemporaryFiles)
{
    const QString movie = bench.file(u"talk.mp4"_qs);
    writeWav(movie, 1.0);
    useModel("print [x] One%0A\nsleep 60000\n");
    choose(movie);
    screen->start();
    waitFor([this] { return run().hasShownText(); });
    ASSERT_EQ(bench.temporaryFiles().size(), 1);
    pane().clearOutput();
    EXPECT_EQ(bench.temporaryFiles().size(), 0);
}

TEST_F(TranscriptPaneTest, clearedInMidRunTheNextOutputBringsAllBack)
{
    startSlowRun();
    ASSERT_EQ(run().progress(), 0.5);
    pane().clearOutput();
    EXPECT_FALSE(pane().isShown());
    EXPECT_TRUE(run().isTranscribing());
    EXPECT_EQ(run().rawOutput(), QString());
    waitForSecondLine();
    EXPECT_TRUE(pane().isShown());
    EXPECT_EQ(run().displayedTranscript(), u"- One\nTwo one"_qs) << "also what came before";
    EXPECT_EQ(run().progress(), 1.0);
    EXPECT_EQ(run().etaText(), u"Estimating…"_qs) << "nobody knows any more when the run began";
    EXPECT_EQ(run().totalDuration(), 30.0);
    EXPECT_EQ(pane().counts(), u"4 words · 13 chars"_qs);
    EXPECT_TRUE(run().hasSegments());
    letEngineEnd();
    waitForStatus(u"Done"_qs);
    ASSERT_EQ(bench.history.entries().size(), 1);
    EXPECT_EQ(run().rawOutput().count(u'\n'), 3);
}

TEST_F(TranscriptPaneTest, clearedTwiceInMidRunTheEndBringsAllBack)
{
    startSlowRun("print [x] One%0A\n" + bench.engine.awaitGate());
    pane().clearOutput();
    pane().clearOutput();
    EXPECT_FALSE(pane().isShown());
    bench.engine.openGate();
    waitForStatus(u"Done"_qs);
    EXPECT_TRUE(pane().isShown());
    EXPECT_EQ(run().rawOutput(), u"[x] One\n"_qs);
    EXPECT_EQ(bench.history.entries().size(), 1);
}

TEST_F(TranscriptPaneTest, clearedInMidRunTheRunIsOutOfReachOfStop)
{
    startSlowRun();
    pane().clearOutput();
    EXPECT_FALSE(run().hasActiveProcess());
    run().stopRun();
    EXPECT_EQ(run().status(), u"Stopping…"_qs);
    waitForSecondLine();
    EXPECT_TRUE(run().isTranscribing()) << "the engine goes on";
    letEngineEnd();
    waitForStatus(u"Cancelled"_qs);
    EXPECT_EQ(run().displayedTranscript(), u"- One\nTwo one"_qs) << "it ran to its end";
    EXPECT_TRUE(bench.history.entries().isEmpty());
}

TEST_F(TranscriptPaneTest, aStopIsForgottenByAClear)
{
    startSlowRun("print [x] One%0A\nsleep 60000\n");
    run().stopRun();
    ASSERT_TRUE(run().isStopping());
    pane().clearOutput();
    EXPECT_FALSE(run().isStopping());
    EXPECT_EQ(run().status(), QString());
    EXPECT_TRUE(run().isTranscribing()) << "the end of the engine is still awaited";
}

TEST_F(TranscriptPaneTest, aFailureAfterAClearLeavesTheOutputEmpty)
{
    startSlowRun("print [x] One%0A\n" + bench.engine.awaitGate() + "exit 3\n");
    pane().clearOutput();
    bench.engine.openGate();
    waitFor([this] { return !run().isTranscribing(); });
    EXPECT_EQ(run().error(), u"Whisper failed: [x] One\n"_qs);
    EXPECT_FALSE(pane().isShown());
    EXPECT_EQ(run().rawOutput(), QString());
}

TEST_F(TranscriptPaneTest, aRunAfterAClearedOneHasNothingOfIt)
{
    startSlowRun("print [x] One%0A\nsleep 60000\n");
    pane().clearOutput();
    useModel("print [x] Two%0A\n");
    run().start(u"/music/b.wav"_qs, *screen->model()->modelPath(), u"auto"_qs);
    waitForStatus(u"Done"_qs);
    EXPECT_EQ(run().rawOutput(), u"[x] Two\n"_qs);
}

TEST_F(TranscriptPaneTest, whereTheSettingsSayTheErrorStays)
{
    run().setError(u"The microphone has gone."_qs);
    TranscriptPane meeting(run(), {.clearsError = false}, {});
    meeting.clearOutput();
    EXPECT_EQ(run().error(), u"The microphone has gone."_qs);
    TranscriptPane other(run(), {}, {});
    other.clearOutput();
    EXPECT_EQ(run().error(), std::nullopt);
}

TEST_F(TranscriptPaneTest, settingsNameTheLogAndKeepTheBlock)
{
    const TranscriptPane batch(run(),
                               {.offersClear = false,
                                .staysWithoutText = true,
                                .showLogsLabel = u"Show Full Logs"_qs,
                                .logsTitle = u"Full Logs"_qs},
                               {});
    EXPECT_TRUE(batch.isShown());
    EXPECT_FALSE(batch.hasText());
    for (const char *field : {"canOpenFullView", "canCopyOutput"})
        EXPECT_FALSE(batch.property(field).toBool()) << field;
    EXPECT_FALSE(batch.isClearOutputOffered());
    EXPECT_EQ(batch.showLogsLabel(), u"Show Full Logs"_qs);
    EXPECT_EQ(batch.logsTitle(), u"Full Logs"_qs);
    EXPECT_TRUE(pane().isClearOutputOffered());
}

TEST_F(TranscriptPaneTest, theViewerHasWhatIsShown)
{
    transcribe(u"/music/a.wav"_qs, twoLines);
    pane().openFullView();
    const TranscriptWindowModel &model = pane().viewer()->model();
    EXPECT_EQ(model.transcript(), u"- One\nTwo"_qs);
    EXPECT_EQ(model.counts(), u"3 words · 9 chars"_qs);
    ASSERT_EQ(model.segments().size(), 2);
    EXPECT_EQ(model.segments()[0].text, u"- One"_qs);
    EXPECT_EQ(model.segments()[1].startSeconds, 15.0);
    EXPECT_TRUE(model.isPlaybackAvailable());

    pane().viewer()->transcriptWindow()->setStripDashes(true);
    EXPECT_TRUE(pane().stripDashes()) << "the option is the screen's own";
    EXPECT_EQ(model.transcript(), u"One\nTwo"_qs);
    EXPECT_EQ(model.segments()[0].text, u"One"_qs);
    EXPECT_EQ(model.counts(), u"2 words · 7 chars"_qs);

    pane().clearOutput();
    EXPECT_EQ(model.transcript(), QString());
    EXPECT_TRUE(model.segments().isEmpty());
}

TEST_F(TranscriptPaneTest, anOpenViewerFollowsARun)
{
    startSlowRun();
    pane().openFullView();
    EXPECT_EQ(pane().viewer()->model().segments().size(), 1);
    waitForSecondLine();
    EXPECT_EQ(pane().viewer()->model().transcript(), run().displayedTranscript());
    EXPECT_EQ(pane().viewer()->model().segments().size(), 2);
}

TEST_F(TranscriptPaneTest, theViewerIsFedWhenTheScreenComesOnShow)
{
    transcribe(u"/music/a.wav"_qs, twoLines);
    screen->appear();
    EXPECT_EQ(pane().viewer()->model().transcript(), u"- One\nTwo"_qs);
}

TEST_F(TranscriptPaneTest, withoutAFileThereIsNothingToPlay)
{
    screen->appear();
    EXPECT_FALSE(pane().viewer()->model().isPlaybackAvailable());
    pane().openFullView();
    screen->playback().togglePlayback();
    EXPECT_EQ(run().error(), u"No audio/video file to play."_qs);
    choose(u"/music/a.wav"_qs);
    EXPECT_TRUE(pane().viewer()->model().isPlaybackAvailable());
}

TEST_F(TranscriptPaneTest, theViewerPlaysAndSeeksTheChosenFile)
{
    transcribe(u"/music/a.wav"_qs, twoLines);
    pane().openFullView();
    players.duration = 30;
    TranscriptWindowView *window = pane().viewer()->transcriptWindow();
    window->togglePlay();
    EXPECT_EQ(players.takeCalls(), QStringList({u"open /music/a.wav"_qs, u"play"_qs}));
    const TranscriptWindowModel &model = pane().viewer()->model();
    EXPECT_TRUE(model.isPlaying());
    EXPECT_EQ(model.playbackDuration(), 30.0);
    window->slideTo(20);
    EXPECT_EQ(players.takeCalls(), QStringList{u"seek 20"_qs});
    players.seekCompleted();
    EXPECT_EQ(model.currentTime(), 20.0);
    EXPECT_EQ(model.activeSegmentIndex(), 1) << "what is heard is marked";
    players.position = 3;
    waitFor([&model] { return model.currentTime() == 3.0; });
    EXPECT_EQ(model.activeSegmentIndex(), 0) << "on each tick";
    window->togglePlay();
    EXPECT_FALSE(model.isPlaying());
    EXPECT_EQ(players.takeCalls(), QStringList{u"pause"_qs});
    window->togglePlay();
    players.reachEnd();
    EXPECT_EQ(model.currentTime(), 0.0);
    EXPECT_EQ(model.activeSegmentIndex(), std::nullopt);
    EXPECT_FALSE(model.isPlaying());
}

TEST_F(TranscriptPaneTest, theViewerIsToldOfPlaybackAsSoonAsItChangesWhicheverScreenItIs)
{
    for (const auto settings : {filePlayback, microphonePlayback, meetingPlayback, historyPlayback}) {
        const QString path = bench.file(u"talk.wav"_qs);
        writeWav(path, 1.0);
        FakePlayers own;
        own.duration = 30;
        PlaybackController playback(settings(), {.file = [path] { return path; }}, own.opener());
        TranscriptPane shown(run(), {}, {.controller = &playback, .isAvailable = [] { return true; }});
        const TranscriptWindowModel &model = shown.viewer()->model();
        playback.togglePlayback();
        EXPECT_TRUE(model.isPlaying());
        EXPECT_EQ(model.playbackDuration(), 30.0);
        own.position = 4;
        waitFor([&model] { return model.currentTime() == 4.0; });
        shown.openFullView();
        shown.viewer()->transcriptWindow()->togglePlay();
        EXPECT_FALSE(model.isPlaying()) << "a paused player does not run";
        shown.syncTranscriptWindow();
        EXPECT_FALSE(model.isPlaying());
        EXPECT_EQ(model.currentTime(), 4.0);
        EXPECT_EQ(model.playbackDuration(), 30.0);
        EXPECT_TRUE(model.isPlaybackAvailable());
        shown.viewer()->transcriptWindow()->slideTo(9);
        EXPECT_EQ(model.currentTime(), 9.0);
        EXPECT_EQ(own.position, 9.0);
    }
}

TEST_F(TranscriptPaneTest, anotherFileReleasesThePlayer)
{
    choose(u"/music/a.wav"_qs);
    screen->playback().togglePlayback();
    choose(u"/music/a.wav"_qs);
    EXPECT_TRUE(screen->playback().isPlaying()) << "it is the same file";
    choose(u"/music/b.wav"_qs);
    EXPECT_FALSE(screen->playback().isPlaying());
    players.takeCalls();
    screen->playback().togglePlayback();
    EXPECT_EQ(players.takeCalls(), QStringList({u"open /music/b.wav"_qs, u"play"_qs}));
}

/// With sound, and with what has to be converted first.
class PlaybackAfterPreparation : public TranscriptPaneTest, public testing::WithParamInterface<QString> { };

TEST_P(PlaybackAfterPreparation, knowsTheDurationOfAFileThatWasNotThereWhenItWasChosen)
{
    const QString other = bench.file(u"other.wav"_qs);
    const QString path = bench.file(GetParam());
    writeWav(other, 3.0);
    useModel(twoLines);
    choose(other);
    waitFor([this] { return screen->playback().playbackDuration() > 2; });
    choose(path);
    ASSERT_TRUE(QThreadPool::globalInstance()->waitForDone(patience)) << "nothing was found there";
    runPosted();
    ASSERT_EQ(screen->playback().playbackDuration(), 0);
    writeWav(path, 2.0);
    screen->start();
    waitForStatus(u"Done"_qs);
    waitFor([this] { return screen->playback().playbackDuration() > 0; });
    EXPECT_NEAR(screen->playback().playbackDuration(), 2.0, 0.05);
    EXPECT_NEAR(pane().viewer()->model().playbackDuration(), 2.0, 0.05);
}

INSTANTIATE_TEST_SUITE_P(, PlaybackAfterPreparation, testing::Values(u"tone.wav"_qs, u"tone.mp4"_qs));

} // namespace
