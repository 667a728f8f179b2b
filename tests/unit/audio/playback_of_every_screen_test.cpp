#include "unit/audio/scripted_playback.h"

#include "support/printing.h"

#include <gtest/gtest.h>

#include <QSignalSpy>

using namespace sorvanta;

namespace {

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
    ScriptedPlayback playback{GetParam().settings()};
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

} // namespace
