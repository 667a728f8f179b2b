#include "unit/audio/scripted_playback.h"

#include "support/printing.h"

#include <gtest/gtest.h>

using namespace sorvanta;

namespace {

class MicrophonePlayback : public PlaybackTest {
protected:
    MicrophonePlayback()
        : PlaybackTest(microphonePlayback())
    {
    }
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

} // namespace
