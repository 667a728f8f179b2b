#include "unit/audio/scripted_playback.h"

#include "support/printing.h"
#include "support/waiting.h"

#include <gtest/gtest.h>

#include <QTest>

using namespace sorvanta;

namespace {

class FileScreenPlayback : public PlaybackTest {
protected:
    FileScreenPlayback()
        : PlaybackTest(filePlayback())
    {
    }
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

// Reading the duration without a player.

TEST_F(FileScreenPlayback, readsTheDurationOfItsFileWhenItIsToldTo)
{
    playback.file = playback.folder.make(u"three.wav"_qs, u"-f lavfi -i anullsrc=d=3"_qs);
    controller.refreshPlaybackState();
    EXPECT_TRUE(waitUntil([this] { return controller.playbackDuration() == 3; }));
    EXPECT_FALSE(controller.hasPlayer());
}

TEST_F(FileScreenPlayback, countsADurationThatIsNotKnownAsZero)
{
    playback.file = playback.folder.make(u"three.wav"_qs, u"-f lavfi -i anullsrc=d=3"_qs);
    controller.refreshPlaybackState();
    ASSERT_TRUE(waitUntil([this] { return controller.playbackDuration() == 3; }));
    playback.file = playback.folder.write(u"noise.mp3"_qs, "nothing that could be played");
    controller.refreshPlaybackState();
    EXPECT_TRUE(waitUntil([this] { return controller.playbackDuration() == 0; }));
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
    ASSERT_TRUE(waitUntil([this] { return controller.playbackDuration() == 2; }));
    QTest::qWait(300);
    EXPECT_EQ(shown, QList<double>{2});
}

} // namespace
