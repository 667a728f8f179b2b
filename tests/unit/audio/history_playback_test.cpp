#include "unit/audio/scripted_playback.h"

#include "support/printing.h"

#include <gtest/gtest.h>

#include <QFile>

using namespace sorvanta;

namespace {

class HistoryPlayback : public PlaybackTest {
protected:
    HistoryPlayback()
        : PlaybackTest(historyPlayback())
    {
    }
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

} // namespace
