#include "audio/playback_controller.h"

#include "support/media_files.h"
#include "support/printing.h"
#include "unit/audio/fake_audio_player.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QSignalSpy>
#include <QTest>

#include <cmath>

using namespace sorvanta;

namespace {

constexpr double unknown = std::numeric_limits<double>::quiet_NaN();

/// One screen's playback of a file that is there, by a player that does what the test says.
class Playback {
public:
    explicit Playback(const PlaybackSettings &settings)
        : file(folder.write(u"a.wav"_qs, "RIFF"))
        , m_settings(settings)
    {
    }

    /// Waits for the next tick.
    void tick()
    {
        QSignalSpy ticks(&ticker(), &QTimer::timeout);
        ASSERT_TRUE(ticks.wait(20000));
    }
    QTimer &ticker() { return *controller.findChild<QTimer *>(); }

    MediaFolder folder;
    std::optional<QString> file;
    FakePlayers players;
    QString error;
    QString status;
    QStringList marks; ///< "mark 1.5", "clear"

private:
    PlaybackSettings m_settings;

public:
    PlaybackController controller{
        m_settings,
        {
            .file = [this] { return file; },
            .setError = [this](const QString &text) { error = text; },
            .setStatus = [this](const QString &text) { status = text; },
            .updateActiveSegment = [this](double time) { marks << QStringLiteral("mark %1").arg(time); },
            .clearActiveSegment = [this] { marks << QStringLiteral("clear"); },
        },
        players.opener()};
};

const Error unreadable(u"libmpv"_qs, -17, u"unrecognized file format"_qs);
const Error soundless(u"libmpv"_qs, -14, u"audio output initialization failed"_qs);

// The table of differences.

struct Screen {
    const char *name;
    PlaybackSettings (*settings)();
    int tick;
    bool keepsPlayerAtEnd;
    double durationAtEnd;
    bool seekOpensPlayer;
    bool seekIsImmediate;
    bool marksOnTick;
    const char16_t *noFileError;
    const char16_t *openingError;
    const char16_t *playStatus;
    bool readsDurationOnTick;
    bool isPlayingWhilePaused;
    bool resumesAfterStop;
};

const Screen screens[] = {
    {"file", filePlayback, 200, false, 10, true, false, true, u"No audio/video file to play.", u"", u"", false, false,
     true},
    {"microphone", microphonePlayback, 200, true, 10, true, true, false, u"",
     u"Unable to play audio: unrecognized file format", u"Playing recording…", false, false, false},
    {"meeting", meetingPlayback, 200, false, 0, false, true, false, u"",
     u"Unable to play audio: unrecognized file format", u"", true, true, false},
    {"history", historyPlayback, 150, false, 0, false, true, false, u"",
     u"Unable to play audio: unrecognized file format", u"", true, false, false},
};

class EveryScreen : public testing::TestWithParam<Screen> {
protected:
    Playback playback{GetParam().settings()};
    PlaybackController &controller = playback.controller;
    FakePlayers &players = playback.players;
};

INSTANTIATE_TEST_SUITE_P(Screens, EveryScreen, testing::ValuesIn(screens),
                         [](const auto &screen) { return std::string(screen.param.name); });

TEST_P(EveryScreen, hasNoPlayerAtFirst)
{
    EXPECT_FALSE(controller.hasPlayer());
    EXPECT_FALSE(controller.isPlaying());
    EXPECT_FALSE(controller.isPlaybackPaused());
    EXPECT_FALSE(controller.isRunning());
    EXPECT_FALSE(controller.isTicking());
    EXPECT_EQ(controller.playbackTime(), 0);
    EXPECT_EQ(controller.playbackDuration(), 0);
    EXPECT_FALSE(controller.isScrubbingAudio());
    EXPECT_FALSE(controller.resumeAfterScrub());
    EXPECT_EQ(controller.currentAudioPath(), std::nullopt);
}

TEST_P(EveryScreen, opensThePlayerAtTheFirstPressAndPlays)
{
    controller.togglePlayback();
    EXPECT_EQ(players.takeCalls(), (QStringList{u"open "_qs + *playback.file, u"play"_qs}));
    EXPECT_TRUE(controller.isPlaying());
    EXPECT_FALSE(controller.isPlaybackPaused());
    EXPECT_TRUE(controller.isRunning());
    EXPECT_TRUE(controller.isTicking());
    EXPECT_EQ(controller.playbackTime(), 0);
    EXPECT_EQ(controller.playbackDuration(), 10);
    EXPECT_EQ(controller.currentAudioPath(), playback.file);
    EXPECT_EQ(playback.error, QString());
}

TEST_P(EveryScreen, hasItsWordsOnPlay)
{
    controller.togglePlayback();
    EXPECT_EQ(playback.status, GetParam().playStatus);
    controller.togglePlayback();
    playback.status.clear();
    controller.togglePlayback();
    EXPECT_EQ(playback.status, GetParam().playStatus) << "also when it goes on";
}

TEST_P(EveryScreen, hasItsTick)
{
    EXPECT_EQ(GetParam().settings().tick.count(), GetParam().tick);
    EXPECT_EQ(playback.ticker().interval(), GetParam().tick);
    EXPECT_FALSE(playback.ticker().isSingleShot());
}

TEST_P(EveryScreen, readsThePositionAtEachTick)
{
    controller.togglePlayback();
    playback.marks.clear();
    players.position = 1.25;
    playback.tick();
    EXPECT_EQ(controller.playbackTime(), 1.25);
    EXPECT_EQ(playback.marks, GetParam().marksOnTick ? QStringList{u"mark 1.25"_qs} : QStringList());
    players.position = 1.5;
    playback.tick();
    EXPECT_EQ(controller.playbackTime(), 1.5);
}

TEST_P(EveryScreen, readsTheDurationAtEachTickWhereItShouldChange)
{
    controller.togglePlayback();
    players.duration = 12;
    playback.tick();
    EXPECT_EQ(controller.playbackDuration(), GetParam().readsDurationOnTick ? 12 : 10);
}

TEST_P(EveryScreen, keepsThePositionIfThePlayerTellsNone)
{
    controller.togglePlayback();
    players.position = 2;
    playback.tick();
    players.position = unknown;
    playback.tick();
    EXPECT_EQ(controller.playbackTime(), 2);
}

TEST_P(EveryScreen, keepsThePlayerInAPauseAndGoesOnWithIt)
{
    controller.togglePlayback();
    players.position = 2;
    playback.tick();
    players.takeCalls();
    controller.togglePlayback();
    EXPECT_EQ(players.takeCalls(), QStringList{u"pause"_qs});
    EXPECT_TRUE(controller.hasPlayer());
    EXPECT_FALSE(controller.isRunning());
    EXPECT_EQ(controller.isPlaying(), GetParam().isPlayingWhilePaused);
    EXPECT_EQ(controller.isPlaybackPaused(), GetParam().isPlayingWhilePaused);
    EXPECT_FALSE(controller.isTicking());
    EXPECT_EQ(controller.playbackTime(), 2);

    controller.togglePlayback();
    EXPECT_EQ(players.takeCalls(), QStringList{u"play"_qs});
    EXPECT_TRUE(controller.isRunning());
    EXPECT_TRUE(controller.isPlaying());
    EXPECT_FALSE(controller.isPlaybackPaused());
    EXPECT_TRUE(controller.isTicking());
    EXPECT_EQ(players.opened, 1);
}

TEST_P(EveryScreen, isAtTheEndOfTheFileAsItShould)
{
    controller.togglePlayback();
    players.position = 9.9;
    playback.tick();
    playback.marks.clear();
    players.reachEnd();
    EXPECT_FALSE(controller.isPlaying());
    EXPECT_FALSE(controller.isPlaybackPaused());
    EXPECT_FALSE(controller.isRunning());
    EXPECT_FALSE(controller.isTicking());
    EXPECT_EQ(controller.playbackTime(), 0);
    EXPECT_EQ(controller.playbackDuration(), GetParam().durationAtEnd);
    EXPECT_EQ(controller.hasPlayer(), GetParam().keepsPlayerAtEnd);
    EXPECT_EQ(playback.marks, GetParam().marksOnTick ? QStringList{u"clear"_qs} : QStringList());

    players.takeCalls();
    controller.togglePlayback();
    EXPECT_EQ(players.opened, GetParam().keepsPlayerAtEnd ? 1 : 2);
    EXPECT_FALSE(players.calls.join(u' ').contains(u"seek"_qs)) << "it plays from the start";
    EXPECT_TRUE(controller.isRunning());
    EXPECT_EQ(controller.playbackTime(), 0);
}

TEST_P(EveryScreen, seeksWithNothingPlayingAsItShould)
{
    players.duration = 10;
    controller.seekPlayback(4);
    EXPECT_EQ(players.opened, GetParam().seekOpensPlayer ? 1 : 0);
    EXPECT_FALSE(controller.isRunning());
    EXPECT_FALSE(players.calls.contains(u"play"_qs));
    if (!GetParam().seekOpensPlayer)
        return;
    EXPECT_EQ(players.takeCalls(), (QStringList{u"open "_qs + *playback.file, u"seek 4"_qs}));
    if (players.seekCompleted)
        players.seekCompleted();
    EXPECT_EQ(controller.playbackTime(), 4);
    EXPECT_EQ(controller.playbackDuration(), 10);
}

TEST_P(EveryScreen, seeksAndStaysPlaying)
{
    controller.togglePlayback();
    playback.marks.clear();
    controller.seekPlayback(4);
    EXPECT_TRUE(players.calls.contains(u"seek 4"_qs));
    EXPECT_EQ(controller.playbackTime(), GetParam().seekIsImmediate ? 4 : 0);
    EXPECT_EQ(playback.marks, QStringList());
    if (!GetParam().seekIsImmediate) {
        players.seekCompleted();
        EXPECT_EQ(controller.playbackTime(), 4);
        EXPECT_EQ(playback.marks, QStringList{u"mark 4"_qs});
    }
    EXPECT_TRUE(controller.isRunning());
    EXPECT_TRUE(players.isPlaying);
}

TEST_P(EveryScreen, seeksAndStaysPaused)
{
    controller.togglePlayback();
    controller.togglePlayback();
    players.takeCalls();
    controller.seekPlayback(4);
    EXPECT_EQ(players.takeCalls(), QStringList{u"seek 4"_qs});
    EXPECT_FALSE(controller.isRunning());
    EXPECT_FALSE(players.isPlaying);
}

TEST_P(EveryScreen, landsOnTheDurationWithASeekPastTheEnd)
{
    controller.togglePlayback();
    controller.seekPlayback(11);
    if (players.seekCompleted)
        players.seekCompleted();
    EXPECT_EQ(players.position, 10);
    EXPECT_EQ(controller.playbackTime(), 10);
}

TEST_P(EveryScreen, landsOnZeroWithASeekBelowZero)
{
    controller.togglePlayback();
    players.position = 3;
    playback.tick();
    controller.seekPlayback(-2);
    if (players.seekCompleted)
        players.seekCompleted();
    EXPECT_EQ(players.position, 0);
    EXPECT_EQ(controller.playbackTime(), 0);
}

TEST_P(EveryScreen, doesNotSeekToWhatIsNoNumber)
{
    controller.togglePlayback();
    players.takeCalls();
    controller.seekPlayback(unknown);
    EXPECT_EQ(players.takeCalls(), QStringList());
    EXPECT_EQ(controller.playbackTime(), 0);
}

TEST_P(EveryScreen, saysWhatItShouldWithoutAFile)
{
    playback.file.reset();
    controller.togglePlayback();
    EXPECT_EQ(playback.error, GetParam().noFileError);
    EXPECT_EQ(playback.status, QString());
    EXPECT_EQ(players.calls, QStringList());
    EXPECT_FALSE(controller.isPlaying());

    playback.error.clear();
    controller.seekPlayback(0);
    EXPECT_EQ(playback.error, GetParam().noFileError);
    EXPECT_EQ(players.calls, QStringList());
}

TEST_P(EveryScreen, saysWhatItShouldOfAFileThatCannotBeOpened)
{
    players.refusal = unreadable;
    controller.togglePlayback();
    EXPECT_EQ(playback.error, GetParam().openingError);
    EXPECT_EQ(playback.status, QString());
    EXPECT_FALSE(controller.isPlaying());
    EXPECT_FALSE(controller.isRunning());
    EXPECT_FALSE(controller.isTicking());
    EXPECT_FALSE(controller.hasPlayer());

    players.refusal.reset();
    controller.togglePlayback();
    EXPECT_TRUE(controller.isRunning()) << "once it can be opened, it plays";
}

TEST_P(EveryScreen, doesNotMoveInAFileThatCannotBeOpened)
{
    players.refusal = unreadable;
    controller.seekPlayback(0.005);
    EXPECT_EQ(playback.error, GetParam().seekOpensPlayer ? QString::fromUtf16(GetParam().openingError) : QString());
    EXPECT_FALSE(controller.hasPlayer());
    EXPECT_FALSE(players.calls.join(u' ').contains(u"seek"_qs));
    if (GetParam().seekOpensPlayer) {
        EXPECT_EQ(controller.playbackTime(), 0);
    }
}

TEST_P(EveryScreen, isAfterALateFailureToOpenAsAfterAnEarlyOne)
{
    controller.togglePlayback();
    players.events.failedToOpen(unreadable);
    EXPECT_EQ(playback.error, GetParam().openingError);
    EXPECT_FALSE(controller.isPlaying());
    EXPECT_FALSE(controller.isTicking());
    EXPECT_FALSE(controller.hasPlayer());
}

TEST_P(EveryScreen, saysWhyNothingCanBeHeard)
{
    controller.togglePlayback();
    players.events.failed(soundless);
    EXPECT_EQ(playback.error, u"Unable to play audio: audio output initialization failed"_qs);
    EXPECT_FALSE(controller.isPlaying());
    EXPECT_FALSE(controller.isPlaybackPaused());
    EXPECT_FALSE(controller.isTicking());
    EXPECT_FALSE(controller.hasPlayer());
}

TEST_P(EveryScreen, takesADurationThatIsKnownLate)
{
    players.duration = unknown;
    controller.togglePlayback();
    EXPECT_EQ(controller.playbackDuration(), 0);
    players.duration = 8;
    players.events.durationKnown();
    EXPECT_EQ(controller.playbackDuration(), 8);
}

TEST_P(EveryScreen, releasesThePlayerWithAStop)
{
    controller.togglePlayback();
    players.position = 3;
    playback.tick();
    playback.marks.clear();
    players.takeCalls();
    controller.stopPlayback(true);
    EXPECT_EQ(players.takeCalls(), QStringList{u"release"_qs});
    EXPECT_FALSE(controller.hasPlayer());
    EXPECT_FALSE(controller.isPlaying());
    EXPECT_FALSE(controller.isRunning());
    EXPECT_FALSE(controller.isTicking());
    EXPECT_EQ(controller.playbackTime(), 0);
    EXPECT_EQ(controller.playbackDuration(), GetParam().durationAtEnd);
    EXPECT_EQ(controller.currentAudioPath(), std::nullopt);
    EXPECT_EQ(playback.marks, GetParam().marksOnTick ? QStringList{u"clear"_qs} : QStringList());
}

TEST_P(EveryScreen, canBeStoppedWithoutAPlayer)
{
    controller.stopPlayback(true);
    EXPECT_EQ(players.calls, QStringList());
    EXPECT_FALSE(controller.isPlaying());
    EXPECT_EQ(controller.playbackTime(), 0);
}

TEST_P(EveryScreen, fallsSilentWithTheScreen)
{
    FakePlayers others;
    {
        PlaybackController other(GetParam().settings(), {.file = [this] { return playback.file; }}, others.opener());
        other.togglePlayback();
        others.takeCalls();
    }
    EXPECT_EQ(others.takeCalls(), QStringList{u"release"_qs});
}

TEST_P(EveryScreen, needsNoHookButTheFile)
{
    FakePlayers others;
    std::optional<QString> file;
    PlaybackController other(GetParam().settings(), {.file = [&file] { return file; }}, others.opener());
    other.togglePlayback();
    file = playback.file;
    other.togglePlayback();
    other.seekPlayback(1);
    if (others.seekCompleted)
        others.seekCompleted();
    other.togglePlayback();
    EXPECT_FALSE(other.isRunning());
    other.togglePlayback();
    others.events.failed(soundless);
    other.stopPlayback(true);
    EXPECT_FALSE(other.hasPlayer());
}

TEST_P(EveryScreen, tellsEachChangeOfAField)
{
    QSignalSpy playing(&controller, &PlaybackController::isPlayingChanged);
    QSignalSpy running(&controller, &PlaybackController::isRunningChanged);
    QSignalSpy paused(&controller, &PlaybackController::isPlaybackPausedChanged);
    QSignalSpy time(&controller, &PlaybackController::playbackTimeChanged);
    QSignalSpy duration(&controller, &PlaybackController::playbackDurationChanged);
    const bool staysPlaying = GetParam().isPlayingWhilePaused;

    controller.togglePlayback();
    EXPECT_EQ(playing.size(), 1);
    EXPECT_EQ(running.size(), 1);
    EXPECT_EQ(duration.size(), 1);
    players.position = 2;
    playback.tick();
    EXPECT_EQ(time.size(), 1);
    controller.togglePlayback();
    EXPECT_EQ(playing.size(), staysPlaying ? 1 : 2);
    EXPECT_EQ(running.size(), 2);
    EXPECT_EQ(paused.size(), staysPlaying ? 1 : 0);
    controller.stopPlayback(true);
    EXPECT_EQ(playing.size(), 2);
    EXPECT_EQ(running.size(), 2) << "it was paused before";
    EXPECT_EQ(paused.size(), staysPlaying ? 2 : 0);
    EXPECT_EQ(time.size(), 2);
}

// The file screen.

class FileScreenPlayback : public testing::Test {
protected:
    Playback playback{filePlayback()};
    PlaybackController &controller = playback.controller;
    FakePlayers &players = playback.players;
};

TEST_F(FileScreenPlayback, asksForAFileEvenToPause)
{
    controller.togglePlayback();
    playback.file.reset();
    controller.togglePlayback();
    EXPECT_EQ(playback.error, u"No audio/video file to play."_qs);
    EXPECT_TRUE(controller.isPlaying());
}

TEST_F(FileScreenPlayback, readsThePositionAndMarksItsSegmentInAPause)
{
    controller.togglePlayback();
    players.position = 3.5;
    controller.togglePlayback();
    EXPECT_EQ(controller.playbackTime(), 3.5);
    EXPECT_EQ(playback.marks, QStringList{u"mark 3.5"_qs});
}

TEST_F(FileScreenPlayback, marksNothingInAPauseWithoutAPosition)
{
    controller.togglePlayback();
    players.position = unknown;
    controller.togglePlayback();
    EXPECT_EQ(controller.playbackTime(), 0);
    EXPECT_EQ(playback.marks, QStringList());
    EXPECT_FALSE(controller.isPlaying());
}

TEST_F(FileScreenPlayback, resumesWhereAPlayerStoodThatWasReleased)
{
    controller.togglePlayback();
    players.position = 3.5;
    controller.stopPlayback(false);
    EXPECT_EQ(controller.playbackTime(), 3.5);
    EXPECT_FALSE(controller.isPlaying());
    EXPECT_EQ(playback.marks, QStringList()) << "the mark stays, and none is set";

    players.takeCalls();
    controller.togglePlayback();
    EXPECT_EQ(players.takeCalls(), (QStringList{u"open "_qs + *playback.file, u"seek 3.5"_qs, u"play"_qs}));
    EXPECT_EQ(controller.playbackTime(), 3.5);
}

TEST_F(FileScreenPlayback, resumesWhereTheSoundWasLost)
{
    controller.togglePlayback();
    players.position = 6;
    players.events.failed(soundless);
    EXPECT_EQ(controller.playbackTime(), 6);
    players.takeCalls();
    controller.togglePlayback();
    EXPECT_TRUE(players.calls.contains(u"seek 6"_qs));
}

TEST_F(FileScreenPlayback, showsTheNewPositionAfterASeekBeforeAnyPlayback)
{
    controller.seekPlayback(6);
    EXPECT_TRUE(controller.hasPlayer());
    EXPECT_FALSE(controller.isPlaying());
    EXPECT_EQ(controller.playbackTime(), 0) << "the seek has not completed";
    players.seekCompleted();
    EXPECT_EQ(controller.playbackTime(), 6);
    EXPECT_EQ(playback.marks, QStringList{u"mark 6"_qs});
    EXPECT_FALSE(controller.isPlaying());
    controller.togglePlayback();
    EXPECT_EQ(players.opened, 1);
}

TEST_F(FileScreenPlayback, limitsASeekByTheShownDurationAndElseByThePlayers)
{
    players.duration = unknown;
    controller.togglePlayback();
    controller.seekPlayback(70);
    EXPECT_EQ(players.position, 70) << "nothing is known";
    players.duration = 20;
    controller.seekPlayback(70);
    EXPECT_EQ(players.position, 20);
    players.events.durationKnown();
    players.duration = 30;
    controller.seekPlayback(70);
    EXPECT_EQ(players.position, 20) << "the shown one comes first";
}

TEST_F(FileScreenPlayback, keepsTheShownDurationIfThePlayerKnowsNone)
{
    controller.togglePlayback();
    controller.stopPlayback(true);
    players.duration = unknown;
    controller.togglePlayback();
    EXPECT_EQ(controller.playbackDuration(), 10);
}

// The microphone screen.

class MicrophonePlayback : public testing::Test {
protected:
    Playback playback{microphonePlayback()};
    PlaybackController &controller = playback.controller;
    FakePlayers &players = playback.players;
};

TEST_F(MicrophonePlayback, asksForAFileEvenToPause)
{
    controller.togglePlayback();
    playback.file.reset();
    controller.togglePlayback();
    EXPECT_TRUE(controller.isPlaying());
    EXPECT_EQ(playback.error, QString());
}

TEST_F(MicrophonePlayback, readsThePositionInAPause)
{
    controller.togglePlayback();
    players.position = 3.5;
    controller.togglePlayback();
    EXPECT_EQ(controller.playbackTime(), 3.5);
}

TEST_F(MicrophonePlayback, playsFromTheStartWithTheSamePlayerAfterTheEnd)
{
    controller.togglePlayback();
    players.position = 9;
    playback.tick();
    players.reachEnd();
    players.takeCalls();
    controller.togglePlayback();
    EXPECT_EQ(players.takeCalls(), QStringList{u"play"_qs});
    EXPECT_EQ(controller.playbackTime(), 0);
}

TEST_F(MicrophonePlayback, readsTheDurationAgainAtEachUse)
{
    controller.togglePlayback();
    controller.togglePlayback();
    players.duration = 12;
    controller.togglePlayback();
    EXPECT_EQ(controller.playbackDuration(), 12);
    players.duration = 14;
    controller.seekPlayback(13);
    EXPECT_EQ(controller.playbackDuration(), 14);
    EXPECT_EQ(players.position, 13);
}

TEST_F(MicrophonePlayback, tellsThePlayerToPlayAfterASeekIfItPlays)
{
    controller.togglePlayback();
    players.takeCalls();
    controller.seekPlayback(4);
    EXPECT_EQ(players.takeCalls(), (QStringList{u"seek 4"_qs, u"play"_qs}));
}

TEST_F(MicrophonePlayback, keepsThePositionInAStopWithoutReset)
{
    controller.togglePlayback();
    players.position = 3.5;
    controller.stopPlayback(false);
    EXPECT_FALSE(controller.hasPlayer());
    EXPECT_FALSE(controller.isPlaying());
    EXPECT_EQ(controller.playbackTime(), 3.5);
    EXPECT_EQ(controller.playbackDuration(), 10);

    players.takeCalls();
    controller.togglePlayback();
    EXPECT_EQ(players.takeCalls(), (QStringList{u"open "_qs + *playback.file, u"play"_qs}));
    EXPECT_EQ(controller.playbackTime(), 0) << "a new player begins at the start";
}

// The meeting screen.

class MeetingPlayback : public testing::Test {
protected:
    Playback playback{meetingPlayback()};
    PlaybackController &controller = playback.controller;
    FakePlayers &players = playback.players;
};

TEST_F(MeetingPlayback, pausesAndGoesOnWhateverTheFileIsByNow)
{
    controller.togglePlayback();
    playback.file.reset();
    controller.togglePlayback();
    EXPECT_TRUE(controller.isPlaybackPaused());
    controller.togglePlayback();
    EXPECT_TRUE(controller.isRunning());
    playback.file = u"/other.wav"_qs;
    controller.togglePlayback();
    controller.togglePlayback();
    EXPECT_TRUE(controller.isRunning());
    EXPECT_EQ(players.opened, 1);
}

TEST_F(MeetingPlayback, leavesThePositionOfTheLastTickInAPause)
{
    controller.togglePlayback();
    players.position = 3.5;
    controller.togglePlayback();
    EXPECT_EQ(controller.playbackTime(), 0);
}

TEST_F(MeetingPlayback, startsFromZeroWithANewPlayerAfterTheEnd)
{
    controller.togglePlayback();
    players.position = 9;
    playback.tick();
    players.reachEnd();
    EXPECT_FALSE(controller.hasPlayer());
    EXPECT_EQ(controller.playbackDuration(), 0);
    controller.togglePlayback();
    EXPECT_EQ(players.opened, 2);
    EXPECT_EQ(controller.playbackTime(), 0);
    EXPECT_TRUE(controller.isRunning());
}

TEST_F(MeetingPlayback, tellsThePlayerToPlayAfterASeekIfItPlays)
{
    controller.togglePlayback();
    players.takeCalls();
    controller.seekPlayback(4);
    EXPECT_EQ(players.takeCalls(), (QStringList{u"seek 4"_qs, u"play"_qs}));
    EXPECT_EQ(controller.playbackTime(), 4);
}

TEST_F(MeetingPlayback, resetsEverythingInAStopWhateverItIsTold)
{
    controller.togglePlayback();
    players.position = 4;
    playback.tick();
    controller.togglePlayback();
    controller.stopPlayback(false);
    EXPECT_FALSE(controller.isPlaying());
    EXPECT_FALSE(controller.isPlaybackPaused());
    EXPECT_EQ(controller.playbackTime(), 0);
    EXPECT_EQ(controller.playbackDuration(), 0);
}

// The history.

class HistoryPlayback : public testing::Test {
protected:
    Playback playback{historyPlayback()};
    PlaybackController &controller = playback.controller;
    FakePlayers &players = playback.players;
};

TEST_F(HistoryPlayback, doesNothingAtAllForARecordingThatIsNotThere)
{
    playback.file = playback.folder.path(u"gone.wav"_qs);
    controller.togglePlayback();
    playback.file = QString();
    controller.togglePlayback();
    EXPECT_EQ(players.calls, QStringList());
    EXPECT_EQ(playback.error, QString());
}

TEST_F(HistoryPlayback, doesNothingAtAllWhenTheRecordingHasVanishedWhilePlaying)
{
    controller.togglePlayback();
    ASSERT_TRUE(QFile::remove(*playback.file));
    players.takeCalls();
    controller.togglePlayback();
    EXPECT_EQ(players.takeCalls(), QStringList());
    EXPECT_TRUE(controller.isPlaying());
    controller.stopPlayback();
    EXPECT_FALSE(controller.isPlaying());
}

TEST_F(HistoryPlayback, leavesThePositionOfTheLastTickInAPause)
{
    controller.togglePlayback();
    players.position = 3.5;
    controller.togglePlayback();
    EXPECT_EQ(controller.playbackTime(), 0);
}

TEST_F(HistoryPlayback, stopsBeforeItPlaysAnotherRecording)
{
    controller.togglePlayback();
    players.position = 3;
    playback.tick();
    controller.togglePlayback();
    players.takeCalls();
    playback.file = playback.folder.write(u"b.wav"_qs, "RIFF");
    controller.togglePlayback();
    EXPECT_EQ(players.takeCalls(), (QStringList{u"release"_qs, u"open "_qs + *playback.file, u"play"_qs}));
    EXPECT_EQ(controller.currentAudioPath(), playback.file);
    EXPECT_EQ(controller.playbackTime(), 0);
}

TEST_F(HistoryPlayback, isStoppedAfterARecordingThatDoesNotOpen)
{
    controller.togglePlayback();
    players.position = 3;
    playback.tick();
    controller.togglePlayback();
    playback.file = playback.folder.write(u"b.wav"_qs, "RIFF");
    players.refusal = unreadable;
    controller.togglePlayback();
    EXPECT_FALSE(controller.hasPlayer());
    EXPECT_EQ(controller.playbackTime(), 0);
    EXPECT_EQ(controller.playbackDuration(), 0);
    EXPECT_EQ(controller.currentAudioPath(), std::nullopt);
    EXPECT_EQ(playback.error, u"Unable to play audio: unrecognized file format"_qs);
}

TEST_F(HistoryPlayback, hasASliderOfTheDurationButNeverWithoutLength)
{
    EXPECT_EQ(controller.sliderEnd(), 0.01);
    controller.togglePlayback();
    EXPECT_EQ(controller.sliderEnd(), 10);
}

TEST_F(HistoryPlayback, movesThePositionAloneWithoutAPlayer)
{
    controller.seekPlayback(0.005);
    EXPECT_EQ(controller.playbackTime(), 0.005);
    EXPECT_EQ(players.calls, QStringList());
}

TEST_F(HistoryPlayback, pausesThePlayerWhileTheSliderIsHeld)
{
    controller.togglePlayback();
    players.takeCalls();
    controller.beginScrubbing();
    EXPECT_EQ(players.takeCalls(), QStringList{u"pause"_qs});
    EXPECT_TRUE(controller.isScrubbingAudio());
    EXPECT_TRUE(controller.resumeAfterScrub());
    EXPECT_TRUE(controller.isPlaying()) << "the flag stays as it was";

    controller.seekPlayback(5);
    EXPECT_EQ(controller.playbackTime(), 5);
    EXPECT_EQ(players.takeCalls(), QStringList()) << "the player moves when the slider is let go";
    players.position = 1;
    players.duration = 11;
    playback.tick();
    EXPECT_EQ(controller.playbackTime(), 5) << "a tick does not move the slider in the hand";
    EXPECT_EQ(controller.playbackDuration(), 10);

    controller.endScrubbing();
    EXPECT_EQ(players.takeCalls(), (QStringList{u"seek 5"_qs, u"play"_qs}));
    EXPECT_FALSE(controller.isScrubbingAudio());
    EXPECT_FALSE(controller.resumeAfterScrub());
    EXPECT_TRUE(controller.isPlaying());
    EXPECT_TRUE(controller.isTicking());
}

TEST_F(HistoryPlayback, canBeScrubbedWithoutAPlayer)
{
    controller.beginScrubbing();
    EXPECT_TRUE(controller.isScrubbingAudio());
    EXPECT_FALSE(controller.resumeAfterScrub());
    controller.seekPlayback(0.005);
    controller.endScrubbing();
    EXPECT_FALSE(controller.isScrubbingAudio());
    EXPECT_EQ(controller.playbackTime(), 0.005);
    EXPECT_EQ(players.calls, QStringList());
}

TEST_F(HistoryPlayback, playsOnAfterScrubbingThoughItWasPausedMeanwhile)
{
    controller.togglePlayback();
    controller.beginScrubbing();
    controller.togglePlayback();
    EXPECT_FALSE(controller.isPlaying());
    controller.endScrubbing();
    EXPECT_TRUE(controller.isPlaying());
    EXPECT_TRUE(controller.isTicking());
}

TEST_F(HistoryPlayback, pausesWhatPlaysWhicheverRecordingIsSelectedByNow)
{
    controller.togglePlayback();
    const std::optional<QString> first = playback.file;
    playback.file = playback.folder.write(u"b.wav"_qs, "RIFF");
    players.takeCalls();
    controller.togglePlayback();
    EXPECT_EQ(players.takeCalls(), QStringList{u"pause"_qs});
    playback.file = first;
    controller.togglePlayback();
    EXPECT_EQ(players.takeCalls(), QStringList{u"play"_qs}) << "its player is still there";
}

TEST_F(HistoryPlayback, staysPausedAfterScrubbingInAPause)
{
    controller.togglePlayback();
    controller.togglePlayback();
    controller.setScrubbingAudio(true);
    EXPECT_FALSE(controller.resumeAfterScrub());
    controller.seekPlayback(5);
    players.takeCalls();
    controller.setScrubbingAudio(false);
    EXPECT_EQ(players.takeCalls(), QStringList{u"seek 5"_qs});
    EXPECT_FALSE(controller.isPlaying());
    EXPECT_FALSE(controller.isTicking());
}

TEST_F(HistoryPlayback, leavesScrubbingWithAStop)
{
    controller.togglePlayback();
    controller.beginScrubbing();
    controller.stopPlayback();
    EXPECT_FALSE(controller.isScrubbingAudio());
    EXPECT_TRUE(controller.resumeAfterScrub()) << "this flag keeps its value";
    players.takeCalls();
    controller.endScrubbing();
    EXPECT_EQ(players.takeCalls(), QStringList());
    EXPECT_FALSE(controller.isPlaying()) << "there is nothing that could play";
    EXPECT_FALSE(controller.resumeAfterScrub());
}

TEST_F(HistoryPlayback, leavesScrubbingWithAFailure)
{
    controller.togglePlayback();
    controller.beginScrubbing();
    players.events.failed(soundless);
    EXPECT_FALSE(controller.isScrubbingAudio());
    EXPECT_FALSE(controller.isPlaying());
}

// Reading the duration without a player.

TEST_F(FileScreenPlayback, readsTheDurationOfItsFileWhenItIsToldTo)
{
    playback.file = playback.folder.make(u"three.wav"_qs, u"-f lavfi -i anullsrc=d=3"_qs);
    controller.refreshPlaybackState();
    EXPECT_TRUE(QTest::qWaitFor([this] { return controller.playbackDuration() == 3; }, 20000));
    EXPECT_FALSE(controller.hasPlayer());
}

TEST_F(FileScreenPlayback, countsADurationThatIsNotKnownAsZero)
{
    playback.file = playback.folder.make(u"three.wav"_qs, u"-f lavfi -i anullsrc=d=3"_qs);
    controller.refreshPlaybackState();
    ASSERT_TRUE(QTest::qWaitFor([this] { return controller.playbackDuration() == 3; }, 20000));
    playback.file = playback.folder.write(u"noise.mp3"_qs, "nothing that could be played");
    controller.refreshPlaybackState();
    EXPECT_TRUE(QTest::qWaitFor([this] { return controller.playbackDuration() == 0; }, 20000));
}

TEST_F(FileScreenPlayback, hasNoDurationWithoutAFile)
{
    controller.togglePlayback();
    playback.file.reset();
    controller.refreshPlaybackState();
    EXPECT_EQ(controller.playbackDuration(), 0);
}

TEST_F(FileScreenPlayback, showsTheDurationOfTheLatestFileOnly)
{
    const QString second = playback.folder.make(u"two.wav"_qs, u"-f lavfi -i anullsrc=d=2"_qs);
    playback.file = playback.folder.make(u"three.wav"_qs, u"-f lavfi -i anullsrc=d=3"_qs);
    QList<double> shown;
    QObject::connect(&controller, &PlaybackController::playbackDurationChanged,
                     [&] { shown << controller.playbackDuration(); });
    controller.refreshPlaybackState();
    playback.file = second;
    controller.refreshPlaybackState();
    ASSERT_TRUE(QTest::qWaitFor([this] { return controller.playbackDuration() == 2; }, 20000));
    QTest::qWait(300);
    EXPECT_EQ(shown, QList<double>{2});
}

} // namespace
