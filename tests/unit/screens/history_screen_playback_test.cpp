#include "history_screen_test.h"

#include "support/waiting.h"

#include <QSignalSpy>

namespace sorvanta {

namespace {

class HistoryScreenPlayback : public HistoryScreenTest {
protected:
    HistoryScreenPlayback()
    {
        showHistory({recorded(u"a"_qs), recorded(u"b"_qs, {}, 1), entry(u"silent"_qs, {}, 2)});
        players.duration = 138.4;
    }
    PlaybackController &playback() { return *screen.playback(); }
};

TEST_F(HistoryScreenPlayback, playsTheRecordingOfTheSelectedEntry)
{
    EXPECT_EQ(screen.playLabel(), u"Play Audio"_qs);
    EXPECT_EQ(screen.playSymbol(), u"play.circle"_qs);
    screen.togglePlayback();
    EXPECT_EQ(players.takeCalls(), (QStringList{u"open "_qs + *screen.selectedEntry()->recordingPath, u"play"_qs}));
    EXPECT_EQ(screen.playLabel(), u"Pause Audio"_qs);
    EXPECT_EQ(screen.playSymbol(), u"pause.circle"_qs);
    screen.togglePlayback();
    EXPECT_EQ(players.takeCalls(), QStringList(u"pause"_qs));
    EXPECT_EQ(screen.playLabel(), u"Play Audio"_qs);
    screen.togglePlayback();
    EXPECT_EQ(players.takeCalls(), QStringList(u"play"_qs)) << "it goes on";
}

TEST_F(HistoryScreenPlayback, tellsOfItsLabel)
{
    QSignalSpy told(&screen, &HistoryView::isPlayingAudioChanged);
    screen.togglePlayback();
    screen.togglePlayback();
    EXPECT_EQ(told.count(), 2);
}

TEST_F(HistoryScreenPlayback, doesNothingForAnEntryWithoutARecording)
{
    screen.selectRow(2);
    screen.togglePlayback();
    EXPECT_EQ(players.calls, QStringList());
    EXPECT_EQ(screen.exportError(), std::nullopt);
}

TEST_F(HistoryScreenPlayback, isStoppedByAnotherSelection)
{
    screen.togglePlayback();
    players.takeCalls();
    screen.selectRow(1);
    EXPECT_EQ(players.takeCalls(), QStringList(u"release"_qs));
    EXPECT_FALSE(playback().isPlaying());
    EXPECT_EQ(screen.positionText(), u"0:00"_qs);
    EXPECT_EQ(screen.durationText(), u"0:00"_qs);
}

TEST_F(HistoryScreenPlayback, isStoppedByASearchThatMovesTheSelection)
{
    screen.togglePlayback();
    screen.setSearchText(u"silent"_qs);
    EXPECT_EQ(screen.selectedID(), u"silent"_qs);
    EXPECT_FALSE(playback().hasPlayer());
}

TEST_F(HistoryScreenPlayback, goesOnWhileASearchKeepsTheSelection)
{
    screen.togglePlayback();
    screen.setSearchText(u"a.wav"_qs);
    screen.setSearchText(u"a.w"_qs);
    screen.selectRow(0);
    screen.reload();
    EXPECT_TRUE(playback().isPlaying());
    EXPECT_EQ(players.opened, 1);
}

TEST_F(HistoryScreenPlayback, goesOnWhileAnEntryIsAdded)
{
    screen.togglePlayback();
    bench.history.addEntry({.text = u"New"_qs});
    settle();
    EXPECT_TRUE(playback().isPlaying());
    EXPECT_EQ(screen.selectedID(), u"a"_qs);
}

TEST_F(HistoryScreenPlayback, saysWhyARecordingDoesNotPlay)
{
    players.refusal = Error(u"libmpv"_qs, -17, u"unrecognized file format"_qs);
    screen.togglePlayback();
    EXPECT_EQ(screen.exportError(), u"Unable to play audio: unrecognized file format"_qs);
    EXPECT_EQ(screen.exportMessage(), std::nullopt);
    EXPECT_FALSE(playback().isPlaying());
}

TEST_F(HistoryScreenPlayback, isRewoundAndSilentAtTheEnd)
{
    screen.togglePlayback();
    players.reachEnd();
    EXPECT_EQ(screen.playLabel(), u"Play Audio"_qs);
    EXPECT_EQ(screen.positionText(), u"0:00"_qs);
    EXPECT_EQ(screen.durationText(), u"0:00"_qs);
}

TEST_F(HistoryScreenPlayback, goesOnAfterScrubbing)
{
    screen.togglePlayback();
    playback().setScrubbingAudio(true);
    playback().seekPlayback(47.2);
    EXPECT_EQ(screen.positionText(), u"0:47"_qs);
    EXPECT_EQ(screen.playLabel(), u"Pause Audio"_qs) << "the flag stays as it was";
    players.takeCalls();
    playback().setScrubbingAudio(false);
    EXPECT_EQ(players.takeCalls(), (QStringList{u"seek 47.2"_qs, u"play"_qs}));
}

TEST_F(HistoryScreenPlayback, feedsTheViewerEvenWhileItIsClosed)
{
    TranscriptWindowModel &model = screen.viewer()->model();
    screen.togglePlayback();
    EXPECT_TRUE(model.isPlaying());
    EXPECT_EQ(model.playbackDuration(), 138.4);
    players.position = 2;
    ASSERT_TRUE(waitUntil([&] { return model.currentTime() == 2; }));
    EXPECT_EQ(model.activeSegmentIndex(), std::nullopt);
    playback().stopPlayback();
    EXPECT_FALSE(model.isPlaying());
    EXPECT_EQ(model.currentTime(), 0);
    EXPECT_EQ(model.playbackDuration(), 0);
}

struct Clock {
    double seconds;
    QString text;
};

class HistoryScreenTimes : public HistoryScreenPlayback, public testing::WithParamInterface<Clock> { };

TEST_P(HistoryScreenTimes, areMinutesAndWholeSeconds)
{
    players.duration = GetParam().seconds;
    screen.togglePlayback();
    EXPECT_EQ(screen.durationText(), GetParam().text);
    playback().seekPlayback(GetParam().seconds);
    EXPECT_EQ(screen.positionText(), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(, HistoryScreenTimes,
                         testing::Values(Clock{138.4, u"2:18"_qs}, Clock{138.5, u"2:19"_qs}, Clock{59.6, u"1:00"_qs},
                                         Clock{3725, u"62:05"_qs}, Clock{0.4, u"0:00"_qs},
                                         Clock{std::numeric_limits<double>::quiet_NaN(), u"0:00"_qs}));

} // namespace

} // namespace sorvanta
