#include "microphone_screen_test.h"

#include "app/viewer/transcript_window_model.h"

#include <QRegularExpression>
#include <QTimer>

using namespace sorvanta;
using testing::ElementsAre;

namespace {

class MicrophoneScreenTake : public MicrophoneScreenTest { };

TEST_F(MicrophoneScreenTake, beginsWithNothing)
{
    EXPECT_FALSE(screen->isRecording());
    EXPECT_FALSE(screen->isPaused());
    EXPECT_EQ(screen->selectedFile(), std::nullopt);
    EXPECT_EQ(screen->inputLevel(), 0);
    EXPECT_EQ(screen->recordingDuration(), 0);
    EXPECT_EQ(run().status(), QString());
    EXPECT_EQ(error(), u"none"_qs);
    EXPECT_EQ(screen->recordLabel(), u"Record"_qs);
    EXPECT_EQ(screen->recordSymbol(), u"record.circle.fill"_qs);
    EXPECT_TRUE(screen->canRecord());
    EXPECT_EQ(screen->heading(), u"No recording yet"_qs);
    EXPECT_EQ(screen->recordingStatusText(), u"Press Record to capture microphone audio."_qs);
    EXPECT_EQ(screen->levelText(), u"Not recording"_qs);
    EXPECT_FALSE(screen->isLevelActive());
    EXPECT_FALSE(screen->canUseTake());
    EXPECT_EQ(screen->playLabel(), u"Play Recording"_qs);
    EXPECT_EQ(screen->playSymbol(), u"play.fill"_qs);
    EXPECT_FALSE(screen->canStart());
    EXPECT_EQ(screen->startLabel(), u"Transcribe"_qs);
    EXPECT_EQ(screen->language()->language(), u"auto"_qs);
}

TEST_F(MicrophoneScreenTake, asksForTheMicrophoneFirst)
{
    run().setError(u"old"_qs);
    run().setStatus(u"old"_qs);
    screen->toggleRecording();
    EXPECT_EQ(error(), u"none"_qs);
    EXPECT_EQ(run().status(), QString());
    EXPECT_EQ(microphone.takeCalls(), QStringList{u"ask"_qs});
    EXPECT_FALSE(screen->isRecording());
}

TEST_F(MicrophoneScreenTake, saysThatAccessWasRefusedAndChangesNothingElse)
{
    const QString take = recordTake();
    microphone.calls.clear();
    screen->toggleRecording();
    microphone.answer(false);
    EXPECT_EQ(error(), u"Microphone access is required to record."_qs);
    EXPECT_EQ(run().status(), QString());
    EXPECT_EQ(microphone.takeCalls(), QStringList{u"ask"_qs});
    EXPECT_FALSE(screen->isRecording());
    EXPECT_EQ(screen->selectedFile(), take);
    EXPECT_TRUE(QFileInfo::exists(take));
}

TEST_F(MicrophoneScreenTake, opensATakeInTheTemporaryFolder)
{
    begin();
    EXPECT_EQ(microphone.takeCalls(), (QStringList{u"ask"_qs, u"open"_qs, u"record"_qs}));
    EXPECT_TRUE(screen->isRecording());
    EXPECT_FALSE(screen->isPaused());
    EXPECT_EQ(screen->selectedFile(), microphone.path);
    EXPECT_EQ(QFileInfo(microphone.path).path(), bench.temporaryFolder());
    EXPECT_TRUE(QRegularExpression(u"^microphone_\\d{4}-\\d\\d-\\d\\d_\\d\\d-\\d\\d_[0-9a-f]{6}\\.wav$"_qs)
                    .match(QFileInfo(microphone.path).fileName())
                    .hasMatch())
        << microphone.path.toStdString();
    EXPECT_EQ(run().status(), u"Recording…"_qs);
    EXPECT_TRUE(screen->isTicking());
    EXPECT_EQ(screen->recordLabel(), u"Stop Recording"_qs);
    EXPECT_EQ(screen->recordSymbol(), u"stop.circle.fill"_qs);
    EXPECT_EQ(screen->pauseLabel(), u"Pause"_qs);
    EXPECT_EQ(screen->pauseSymbol(), u"pause.circle"_qs);
    EXPECT_EQ(screen->heading(), u"Recording…"_qs);
    EXPECT_EQ(screen->recordingStatusText(), u"Recording time: 0:00"_qs);
    EXPECT_TRUE(screen->isLevelActive());
    EXPECT_FALSE(screen->canUseTake());
    EXPECT_TRUE(bench.history.entries().isEmpty()) << "an open take is not in the history";
}

TEST_F(MicrophoneScreenTake, hearsNoVoiceInSilenceFromTheFirstTickOn)
{
    begin();
    EXPECT_EQ(screen->levelText(), u"No voice detected from your microphone"_qs);
    awaitTick(0.15);
    EXPECT_EQ(screen->levelText(), u"No voice detected from your microphone"_qs);
    EXPECT_LT(screen->inputLevel(), 1e-7F);
}

struct Power {
    const char *testName;
    float power;
    float level;
    const char *words;
};

class MicrophoneScreenLevel : public MicrophoneScreenTest, public testing::WithParamInterface<Power> { };

INSTANTIATE_TEST_SUITE_P(
    Powers, MicrophoneScreenLevel,
    testing::Values(Power{"fullScale", 0, 1, "Listening…"}, Power{"aboveFullScale", 3, 1, "Listening…"},
                    Power{"aTenth", -20, 0.1F, "Listening…"}, Power{"half", -6.0206F, 0.5F, "Listening…"},
                    Power{"justVoice", -33.97F, 0.0200217F, "Listening…"},
                    Power{"justNone", -33.99F, 0.0199756F, "No voice detected from your microphone"}),
    [](const auto &power) { return std::string(power.param.testName); });

TEST_P(MicrophoneScreenLevel, isThePlainAmplitudeOfTheAveragePower)
{
    microphone.power = GetParam().power;
    begin();
    awaitTick(1);
    EXPECT_NEAR(screen->inputLevel(), GetParam().level, 1e-5);
    EXPECT_EQ(screen->levelText(), QString::fromUtf8(GetParam().words));
}

TEST_F(MicrophoneScreenTake, showsTheTimeWhileItRecords)
{
    begin();
    awaitTick(83.6);
    EXPECT_EQ(screen->recordingStatusText(), u"Recording time: 1:24"_qs);
}

TEST_F(MicrophoneScreenTake, ticksEvery150Milliseconds)
{
    begin();
    const auto *const timer = screen->findChild<QTimer *>(QString(), Qt::FindDirectChildrenOnly);
    ASSERT_NE(timer, nullptr);
    EXPECT_EQ(timer->interval(), 150);
    EXPECT_TRUE(timer->isActive());
    EXPECT_FALSE(timer->isSingleShot());
}

TEST_F(MicrophoneScreenTake, pausesAndGoesOnInTheSameFile)
{
    microphone.power = -20;
    begin();
    awaitTick(10);
    const QString path = microphone.path;
    microphone.calls.clear();
    seconds = 10.25;
    screen->togglePause();
    EXPECT_EQ(microphone.takeCalls(), QStringList{u"pause"_qs});
    EXPECT_TRUE(screen->isRecording());
    EXPECT_TRUE(screen->isPaused());
    EXPECT_EQ(screen->recordingDuration(), 10.25);
    EXPECT_FALSE(screen->isTicking());
    EXPECT_EQ(screen->inputLevel(), 0);
    EXPECT_EQ(run().status(), u"Recording paused."_qs);
    EXPECT_EQ(screen->heading(), u"Recording…"_qs);
    EXPECT_EQ(screen->recordingStatusText(), u"Paused at 0:10"_qs);
    EXPECT_EQ(screen->levelText(), u"No voice detected from your microphone"_qs);
    EXPECT_FALSE(screen->isLevelActive());
    EXPECT_EQ(screen->pauseLabel(), u"Resume"_qs);
    EXPECT_EQ(screen->pauseSymbol(), u"play.circle"_qs);
    EXPECT_EQ(screen->recordLabel(), u"Stop Recording"_qs);

    seconds = 100;
    screen->togglePause();
    EXPECT_EQ(microphone.takeCalls(), QStringList{u"record"_qs});
    EXPECT_FALSE(screen->isPaused());
    EXPECT_EQ(run().status(), u"Recording…"_qs);
    EXPECT_TRUE(screen->isTicking());
    seconds = 102;
    screen->toggleRecording();
    EXPECT_EQ(microphone.takeCalls(), (QStringList{u"stop"_qs, u"release"_qs}));
    EXPECT_EQ(screen->recordingDuration(), 12.25);
    EXPECT_EQ(screen->selectedFile(), path);
}

TEST_F(MicrophoneScreenTake, saysEachStep)
{
    QStringList statuses;
    const QObject listener;
    QObject::connect(&run(), &TranscriptionRun::statusChanged, &listener, [&] { statuses << run().status(); });
    begin();
    screen->togglePause();
    screen->togglePause();
    screen->toggleRecording();
    begin();
    EXPECT_THAT(statuses,
                ElementsAre(u"Recording…"_qs, u"Recording paused."_qs, u"Recording…"_qs,
                            u"Recording ready. Transcribe when you're ready."_qs, QString(), u"Recording…"_qs));
}

TEST_F(MicrophoneScreenTake, addsUpItsStretches)
{
    begin();
    awaitTick(2);
    for (const double start : {10.0, 20.0, 30.0}) {
        screen->togglePause();
        seconds = start;
        screen->togglePause();
        EXPECT_EQ(microphone.path, *screen->selectedFile());
        seconds += 1.5;
    }
    screen->toggleRecording();
    EXPECT_EQ(screen->recordingDuration(), 6.5);
    EXPECT_EQ(microphone.calls.count(u"open"_qs), 1) << "all of them are in one file";
    recordTake(1);
    EXPECT_EQ(screen->recordingDuration(), 1) << "nothing of an earlier take is in a new one";
}

TEST_F(MicrophoneScreenTake, isNotPausedUnlessItRecords)
{
    screen->togglePause();
    EXPECT_EQ(microphone.calls, QStringList());
    EXPECT_FALSE(screen->isPaused());
    EXPECT_EQ(run().status(), QString());
}

TEST_F(MicrophoneScreenTake, isReadyWhenItWasStopped)
{
    const QString take = recordTake(64.5);
    EXPECT_FALSE(screen->isRecording());
    EXPECT_FALSE(screen->isTicking());
    EXPECT_EQ(screen->inputLevel(), 0);
    EXPECT_EQ(run().status(), u"Recording ready. Transcribe when you're ready."_qs);
    EXPECT_EQ(screen->heading(), u"Latest recording ready"_qs);
    EXPECT_EQ(screen->recordingStatusText(), u"Ready to transcribe ("_qs + QFileInfo(take).fileName() + u", 1:05)"_qs);
    EXPECT_EQ(screen->levelText(), u"Not recording"_qs);
    EXPECT_TRUE(screen->canUseTake());
    EXPECT_EQ(screen->recordLabel(), u"Record"_qs);
}

TEST_F(MicrophoneScreenTake, stopsAlsoWhilePaused)
{
    begin();
    seconds = 3;
    screen->togglePause();
    microphone.calls.clear();
    seconds = 50;
    screen->toggleRecording();
    EXPECT_EQ(microphone.takeCalls(), (QStringList{u"stop"_qs, u"release"_qs}));
    EXPECT_EQ(screen->recordingDuration(), 3);
    EXPECT_FALSE(screen->isPaused());
    EXPECT_EQ(screen->pauseLabel(), u"Pause"_qs);
}

TEST_F(MicrophoneScreenTake, countsATakeOfLessThanATick)
{
    recordTake(0.01);
    EXPECT_EQ(screen->recordingDuration(), 0.01);
    EXPECT_TRUE(screen->recordingStatusText().endsWith(u", 0:00)"_qs));
}

TEST_F(MicrophoneScreenTake, saysReadyInPlaceOfATimeOfZero)
{
    const QString take = recordTake(0);
    EXPECT_EQ(screen->recordingStatusText(), u"Ready to transcribe ("_qs + QFileInfo(take).fileName() + u", ready)"_qs);
}

TEST_F(MicrophoneScreenTake, replacesTheOneBefore)
{
    useModel("print [00%3A00%3A00.000 --> 00%3A00%3A15.000]   One%0A\n");
    const QString first = recordTake();
    screen->transcribe();
    waitForStatus(u"Done"_qs);
    screen->pane()->search()->setSearchText(u"One"_qs);
    begin();
    EXPECT_FALSE(QFileInfo::exists(first));
    EXPECT_NE(screen->selectedFile(), first);
    EXPECT_EQ(run().rawOutput(), QString());
    EXPECT_EQ(run().transcript(), QString());
    EXPECT_EQ(run().progress(), std::nullopt);
    EXPECT_EQ(run().etaText(), QString());
    EXPECT_EQ(run().totalDuration(), std::nullopt);
    EXPECT_EQ(screen->pane()->search()->searchText(), QString());
    EXPECT_FALSE(screen->pane()->isShown());
    EXPECT_EQ(screen->recordingDuration(), 0);
    ASSERT_EQ(bench.history.entries().size(), 1);
    EXPECT_TRUE(QFileInfo::exists(bench.history.entries().first().recordingPath.value_or(QString())))
        << "the copy in the history stays";
}

TEST_F(MicrophoneScreenTake, isClearedAwayAlsoIfTheNextOneFailsToStart)
{
    useModel("print [00%3A00%3A00.000 --> 00%3A00%3A15.000]   One%0A\n");
    const QString first = recordTake();
    screen->transcribe();
    waitForStatus(u"Done"_qs);
    microphone.refusal = Error(u"SoundCapture"_qs, 1, u"There is no sound server."_qs);
    begin();
    EXPECT_EQ(error(), u"Could not start recording: There is no sound server."_qs);
    EXPECT_FALSE(screen->isRecording());
    EXPECT_FALSE(screen->isTicking());
    EXPECT_EQ(screen->selectedFile(), std::nullopt);
    EXPECT_EQ(run().status(), QString());
    EXPECT_EQ(run().transcript(), QString());
    EXPECT_FALSE(QFileInfo::exists(first));
    EXPECT_EQ(screen->heading(), u"No recording yet"_qs);
}

TEST_F(MicrophoneScreenTake, saysWhileNoSoundComes)
{
    begin();
    microphone.events.interrupted(Error(u"SoundCapture"_qs, 5, u"The sound server or the device went away."_qs));
    EXPECT_EQ(error(), u"The sound server or the device went away."_qs);
    EXPECT_TRUE(screen->isRecording());
    microphone.events.resumed();
    EXPECT_EQ(error(), u"none"_qs);
}

TEST_F(MicrophoneScreenTake, stillSaysThatSoundIsMissingWhenItWasStopped)
{
    begin();
    microphone.events.interrupted(Error(u"SoundCapture"_qs, 5, u"Gone."_qs));
    screen->toggleRecording();
    EXPECT_EQ(error(), u"Gone."_qs);
    EXPECT_TRUE(screen->canUseTake());
}

TEST_F(MicrophoneScreenTake, leavesAnotherErrorWhenSoundComesBack)
{
    begin();
    microphone.events.interrupted(Error(u"SoundCapture"_qs, 5, u"Gone."_qs));
    run().setError(u"another"_qs);
    microphone.events.resumed();
    EXPECT_EQ(error(), u"another"_qs);
}

TEST_F(MicrophoneScreenTake, endsWithWhatItHasWhenTheDiskIsFull)
{
    begin();
    seconds = 4;
    microphone.recorderEvents.failed(Error(u"NSCocoaErrorDomain"_qs, 640, u"There is no room."_qs));
    EXPECT_EQ(error(), u"There is no room."_qs);
    EXPECT_FALSE(screen->isRecording());
    EXPECT_TRUE(screen->canUseTake());
    EXPECT_EQ(bench.history.entries().size(), 1);
}

TEST_F(MicrophoneScreenTake, doesNotBeginTwiceIfRecordIsPressedTwice)
{
    screen->toggleRecording();
    const auto first = microphone.answer;
    screen->toggleRecording();
    first(true);
    EXPECT_TRUE(screen->isRecording());
    microphone.answer(true);
    EXPECT_EQ(microphone.calls.count(u"open"_qs), 1);
}

TEST_F(MicrophoneScreenTake, isSilentWhenItEnds)
{
    begin();
    screen->playback().togglePlayback(); // as the viewer does, whose button is on during a take
    players.position = 3;
    screen->playback().seekPlayback(3);
    screen->toggleRecording();
    EXPECT_FALSE(screen->playback().hasPlayer());
    EXPECT_FALSE(screen->playback().isPlaying());
    EXPECT_EQ(screen->playback().playbackTime(), 0);
}

TEST_F(MicrophoneScreenTake, silencesTheOneBeforeWhenItBegins)
{
    recordTake();
    screen->toggleRecording();
    screen->togglePlayback(); // while the question for the microphone is open
    ASSERT_TRUE(screen->playback().isPlaying());
    microphone.answer(true);
    EXPECT_FALSE(screen->playback().hasPlayer());
    EXPECT_EQ(screen->playLabel(), u"Play Recording"_qs);
}

TEST_F(MicrophoneScreenTake, tellsItsLengthToTheViewer)
{
    const TranscriptWindowModel &viewer = screen->pane()->viewer()->model();
    microphone.length = 2;
    recordTake();
    waitFor([&] { return viewer.playbackDuration() == 2; });
    EXPECT_EQ(screen->playback().playbackDuration(), 2);
    microphone.refusal = Error(u"SoundCapture"_qs, 1, u"There is no sound server."_qs);
    begin();
    EXPECT_EQ(viewer.playbackDuration(), 0);
    EXPECT_EQ(screen->playback().playbackDuration(), 0);
}

TEST_F(MicrophoneScreenTake, withoutALengthCountsAsNone)
{
    players.duration = 5;
    recordTake();
    screen->togglePlayback();
    EXPECT_EQ(screen->playback().playbackDuration(), 5);
    begin();
    waitFor([this] { return screen->playback().playbackDuration() == 0; });
}

TEST_F(MicrophoneScreenTake, isKeptWhenTheScreenGoes)
{
    begin();
    const QString take = microphone.path;
    microphone.calls.clear();
    seconds = 2;
    screen.reset();
    EXPECT_EQ(microphone.takeCalls(), (QStringList{u"stop"_qs, u"release"_qs}));
    ASSERT_EQ(bench.history.entries().size(), 1);
    EXPECT_EQ(bench.history.entries().first().sourceLabel, take);
}

TEST_F(MicrophoneScreenTake, fallsSilentWhenTheScreenGoes)
{
    recordTake();
    screen->togglePlayback();
    players.calls.clear();
    screen.reset();
    EXPECT_EQ(players.calls, QStringList{u"release"_qs});
    EXPECT_EQ(bench.history.entries().size(), 1) << "a closed take is not entered again";
}

TEST_F(MicrophoneScreenTake, isNotBegunByAnAnswerThatComesTooLate)
{
    screen->toggleRecording();
    screen.reset();
    microphone.answer(true);
    EXPECT_EQ(microphone.calls, QStringList{u"ask"_qs});
}

} // namespace
