#include "unit/audio/scripted_playback.h"

#include "support/printing.h"

#include <gtest/gtest.h>

using namespace sorvanta;

namespace {

class MeetingPlayback : public PlaybackTest {
protected:
    MeetingPlayback()
        : PlaybackTest(meetingPlayback())
    {
    }
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

} // namespace
