#include "meeting_screen_test.h"

#include <QSignalSpy>

using namespace sorvanta;
using testing::ElementsAre;

namespace {

using MeetingScreen = MeetingScreenTest;

TEST_F(MeetingScreen, offersToRecordAtFirst)
{
    EXPECT_TRUE(screen->includeMic());
    EXPECT_EQ(screen->recordLabel(), u"Record System Audio + Microphone"_qs);
    EXPECT_EQ(screen->recordSymbol(), u"record.circle.fill"_qs);
    EXPECT_TRUE(screen->canRecord());
    EXPECT_FALSE(screen->isPauseShown());
    EXPECT_EQ(screen->playLabel(), u"Play Latest"_qs);
    EXPECT_EQ(screen->playSymbol(), u"play.fill"_qs);
    EXPECT_FALSE(screen->hasOutput());
    EXPECT_EQ(screen->headline(), u"Press Record to capture system output audio."_qs);
    EXPECT_EQ(screen->recordStatus(), QString());
    EXPECT_FALSE(screen->isPlaybackShown());
    EXPECT_FALSE(run().hasError());
    EXPECT_EQ(run().status(), QString());
    EXPECT_EQ(screen->language()->language(), u"auto"_qs);
    EXPECT_EQ(screen->elapsed(), 0);
    EXPECT_FALSE(screen->isSeeking());
}

TEST_F(MeetingScreen, withoutTheMicrophoneTheButtonSaysSo)
{
    screen->setIncludeMic(false);
    EXPECT_EQ(screen->recordLabel(), u"Record System Audio"_qs);
}

TEST_F(MeetingScreen, saysThatItStarts)
{
    screen->toggleRecording();
    EXPECT_EQ(screen->recordStatus(), u"Starting…"_qs);
    EXPECT_FALSE(screen->canRecord());
    EXPECT_FALSE(screen->isPauseShown());
    EXPECT_FALSE(screen->isRecording());
    EXPECT_EQ(screen->headline(), u"Press Record to capture system output audio."_qs);
}

TEST_F(MeetingScreen, showsARecordingThatIsOn)
{
    QStringList said;
    const QObject listener;
    QObject::connect(screen.get(), &MeetingRecorderView::recordingChanged, &listener, [&] {
        if (!screen->recordStatus().isEmpty() && (said.isEmpty() || said.last() != screen->recordStatus()))
            said << screen->recordStatus();
    });
    record();
    EXPECT_THAT(said, ElementsAre(u"Starting…"_qs, u"Recording system audio. Keep this app open."_qs,
                                  u"Recording system audio."_qs));
    EXPECT_EQ(screen->recordLabel(), u"Stop Recording"_qs);
    EXPECT_EQ(screen->recordSymbol(), u"stop.circle.fill"_qs);
    EXPECT_TRUE(screen->canRecord());
    EXPECT_TRUE(screen->isPauseShown());
    EXPECT_TRUE(screen->canPause());
    EXPECT_EQ(screen->pauseLabel(), u"Pause"_qs);
    EXPECT_EQ(screen->pauseSymbol(), u"pause.circle"_qs);
    EXPECT_TRUE(screen->hasOutput()) << "the file is there from the start";
    EXPECT_EQ(screen->headline(), u"Recording system audio… 0:00"_qs);
    EXPECT_TRUE(screen->isTiming());
    screen->setIncludeMic(true);
    EXPECT_EQ(screen->recordLabel(), u"Stop Recording"_qs) << "a change of the switch is for the next recording";
    EXPECT_FALSE(recorder().micURL());
}

TEST_F(MeetingScreen, theTimeIsACountOfSeconds)
{
    makeScreen(std::chrono::milliseconds(4));
    record();
    waitFor([this] { return screen->elapsed() >= 61; });
    EXPECT_EQ(screen->headline(), QStringLiteral("Recording system audio… %1:%2")
                                      .arg(static_cast<int>(screen->elapsed()) / 60)
                                      .arg(static_cast<int>(screen->elapsed()) % 60, 2, 10, QLatin1Char('0')));
    EXPECT_EQ(screen->headline().left(26), u"Recording system audio… 1:"_qs);
}

TEST_F(MeetingScreen, aSecondIsASecond)
{
    const MeetingRecorderView::Surroundings surroundings{.shared = bench.surroundings()};
    EXPECT_EQ(surroundings.second, std::chrono::seconds(1));
}

TEST_F(MeetingScreen, whilePausedTheTimeStandsStillAndTheHeadlineStays)
{
    makeScreen(std::chrono::milliseconds(5));
    record();
    waitFor([this] { return screen->elapsed() >= 3; });
    screen->togglePause();
    const double elapsed = screen->elapsed();
    EXPECT_TRUE(recorder().isPaused());
    EXPECT_FALSE(screen->isTiming());
    EXPECT_EQ(screen->recordStatus(), u"Recording paused."_qs);
    EXPECT_EQ(screen->pauseLabel(), u"Resume"_qs);
    EXPECT_EQ(screen->pauseSymbol(), u"play.circle"_qs);
    QTest::qWait(30);
    EXPECT_EQ(screen->elapsed(), elapsed);
    EXPECT_TRUE(screen->headline().startsWith(u"Recording system audio… 0:"_qs));
    EXPECT_EQ(screen->recordLabel(), u"Stop Recording"_qs);
    screen->togglePause();
    EXPECT_FALSE(recorder().isPaused());
    EXPECT_EQ(screen->recordStatus(), u"Recording system audio."_qs);
    waitFor([&] { return screen->elapsed() > elapsed; });
}

TEST_F(MeetingScreen, saysEachStep)
{
    QStringList said{QString()};
    const QObject listener;
    QObject::connect(screen.get(), &MeetingRecorderView::recordingChanged, &listener, [&] {
        if (said.last() != screen->recordStatus())
            said << screen->recordStatus();
    });
    record();
    screen->togglePause();
    screen->togglePause();
    screen->togglePause();
    screen->toggleRecording();
    waitForFinal();
    EXPECT_THAT(said, ElementsAre(QString(), u"Starting…"_qs, u"Recording system audio. Keep this app open."_qs,
                                  u"Recording system audio."_qs, u"Recording paused."_qs, u"Recording system audio."_qs,
                                  u"Recording paused."_qs, u"Captured audio. Use Transcribe below."_qs));
}

TEST_F(MeetingScreen, aPauseOfNothingDoesNothing)
{
    screen->togglePause();
    EXPECT_FALSE(recorder().isPaused());
    EXPECT_EQ(screen->recordStatus(), QString());
    EXPECT_FALSE(screen->isTiming());
}

TEST_F(MeetingScreen, aStopClearsTheTimeAtOnce)
{
    makeScreen(std::chrono::milliseconds(5));
    record();
    waitFor([this] { return screen->elapsed() >= 2; });
    const QString raw = *recorder().outputURL();
    screen->toggleRecording();
    EXPECT_EQ(screen->elapsed(), 0);
    EXPECT_FALSE(screen->isTiming());
    EXPECT_EQ(screen->headline(), u"Latest recording ready: "_qs + raw.section(u'/', -1));
    EXPECT_EQ(screen->recordStatus(), u"Captured audio. Use Transcribe below."_qs);
    EXPECT_FALSE(screen->isPauseShown());
    waitForFinal();
    EXPECT_TRUE(screen->headline().startsWith(u"Latest recording ready: meeting_"_qs));
}

TEST_F(MeetingScreen, aStartThatFailsSaysWhy)
{
    screen->toggleRecording();
    sound.answerOpening({});
    EXPECT_EQ(screen->recordStatus(), QString());
    EXPECT_EQ(error(), u"No display found to capture audio from."_qs);
    EXPECT_FALSE(screen->isRecording());
    EXPECT_TRUE(screen->canRecord());
    EXPECT_FALSE(screen->isTiming());
}

TEST_F(MeetingScreen, aStartThatSucceedsTakesTheErrorBack)
{
    screen->toggleRecording();
    sound.answerOpening({});
    screen->toggleRecording();
    EXPECT_EQ(error(), u"No display found to capture audio from."_qs) << "not before it has succeeded";
    sound.answerOpening({.hasDisplay = true});
    sound.answerMic(true);
    EXPECT_FALSE(run().hasError());
}

TEST_F(MeetingScreen, aRefusedMicrophoneIsToldAndTheRecordingGoesOn)
{
    screen->toggleRecording();
    sound.answerOpening({.hasDisplay = true});
    sound.answerMic(false);
    EXPECT_TRUE(screen->isRecording());
    EXPECT_EQ(error(), u"Microphone capture unavailable. Recording system audio only. Microphone permission is "
                       u"required to include your voice."_qs);
    EXPECT_EQ(screen->recordStatus(), u"Recording system audio."_qs);
}

// The recording in the history.

TEST_F(MeetingScreen, aStoppedRecordingIsEnteredRawAndAgainWhenItIsFinal)
{
    useModel();
    screen->language()->setLanguage(u" DE "_qs);
    record();
    sound.play(500, 0.3);
    const QString raw = *recorder().outputURL();
    EXPECT_EQ(historySources(), QStringList());
    screen->toggleRecording();
    EXPECT_EQ(historySources(), QStringList{raw}) << "at once, while the file is being finished";
    waitForFinal();
    const QString final = *recorder().outputURL();
    EXPECT_EQ(historySources(), (QStringList{final, raw}));
    for (const auto &entry : bench.history.entries()) {
        EXPECT_EQ(entry.text, QString());
        EXPECT_EQ(entry.model, u"Base"_qs);
        EXPECT_EQ(entry.language, u"de"_qs);
        EXPECT_FALSE(entry.diarization);
        EXPECT_FALSE(entry.srtPath);
        ASSERT_TRUE(entry.recordingPath);
        EXPECT_TRUE(entry.recordingPath->startsWith(bench.history.recordingsDirectory()));
        EXPECT_TRUE(entry.recordingPath->endsWith(u".m4a"_qs));
    }
    EXPECT_NE(bench.history.entries()[0].recordingPath, bench.history.entries()[1].recordingPath);
}

TEST_F(MeetingScreen, withoutAModelTheEntrySaysSo)
{
    recordAndStop();
    EXPECT_EQ(bench.history.entries().first().model, u"Unknown model"_qs);
    EXPECT_EQ(bench.history.entries().first().language, u"auto"_qs);
}

TEST_F(MeetingScreen, eachRecordingIsEntered)
{
    const QString first = recordAndStop();
    const QString second = recordAndStop();
    EXPECT_EQ(historySources().size(), 4);
    EXPECT_EQ(historySources()[0], second);
    EXPECT_EQ(historySources()[2], first);
}

TEST_F(MeetingScreen, aRecordingWhoseFileHasGoneIsNotEntered)
{
    record();
    QFile::remove(*recorder().outputURL());
    screen->toggleRecording();
    waitForFinal();
    EXPECT_EQ(historySources(), QStringList());
}

TEST_F(MeetingScreen, aRecordingIsEnteredOnlyOnce)
{
    sound.micSeconds = -1;
    record(true);
    sound.play(500, 0.2);
    screen->toggleRecording();
    const QString raw = *recorder().outputURL();
    waitFor([this] { return run().hasError(); });
    EXPECT_EQ(recorder().outputURL(), raw);
    EXPECT_EQ(historySources(), QStringList{raw});
    EXPECT_EQ(error(), u"Could not mix microphone audio. System audio only was captured."_qs);
}

TEST_F(MeetingScreen, aHistoryThatCannotBeWrittenSaysSo)
{
    record();
    sound.play(500, 0.2);
    QDir(bench.history.transcriptsDirectory()).removeRecursively();
    QFile blocked(bench.history.transcriptsDirectory());
    ASSERT_TRUE(blocked.open(QIODevice::WriteOnly));
    screen->toggleRecording();
    ASSERT_TRUE(bench.history.errorMessage());
    EXPECT_TRUE(bench.history.errorMessage()->startsWith(u"Unable to save history: "_qs));
}

TEST_F(MeetingScreen, aNewScreenRemembersNoRecording)
{
    recordAndStop();
    makeScreen();
    EXPECT_FALSE(screen->hasOutput());
    EXPECT_EQ(screen->headline(), u"Press Record to capture system output audio."_qs);
}

TEST_F(MeetingScreen, aScreenThatGoesStopsItsRecordingAndKeepsIt)
{
    record();
    sound.play(500, 0.3);
    const QString raw = *recorder().outputURL();
    screen.reset();
    EXPECT_FALSE(sound.isOpen);
    EXPECT_EQ(historySources(), QStringList{raw});
}

TEST_F(MeetingScreen, aScreenThatGoesFallsSilent)
{
    recordAndStop();
    screen->playLatest();
    players.takeCalls();
    screen->disappear();
    EXPECT_FALSE(players.isPlaying);
    EXPECT_THAT(players.takeCalls(), ElementsAre(u"pause"_qs));
}

TEST_F(MeetingScreen, aScreenThatGoesInAStartLeavesNothingOn)
{
    screen->toggleRecording();
    const auto answer = sound.answerOpening;
    screen.reset();
    EXPECT_FALSE(sound.isOpen);
    EXPECT_THAT(sound.calls, ElementsAre(u"open"_qs, u"release"_qs));
}

} // namespace
