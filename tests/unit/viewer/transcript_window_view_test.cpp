#include "app/viewer/transcript_window_view.h"
#include "app/viewer/window_time_text.h"
#include "support/printing.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QSignalSpy>

#include <cmath>
#include <limits>

using namespace sorvanta;
using testing::ElementsAre;

namespace {

class TranscriptWindowViewTest : public testing::Test {
protected:
    static TranscriptWindowSegment segment(double start, const QString &text)
    {
        return {QString::number(start), QString::number(start + 1), text, start, start + 1};
    }

    TranscriptWindowModel model;
    bool stripDashes = false;
    int copies = 0;
    int closes = 0;
    int toggles = 0;
    std::vector<double> seeks;
    TranscriptWindowView view{model,
                              {.get = [this] { return stripDashes; }, .set = [this](bool on) { stripDashes = on; }},
                              {.onCopy = [this] { ++copies; },
                               .onClose = [this] { ++closes; },
                               .onTogglePlay = [this] { ++toggles; },
                               .onSeek = [this](double seconds) { seeks.push_back(seconds); }}};
};

TEST_F(TranscriptWindowViewTest, beginsWithTheDefaults)
{
    EXPECT_EQ(view.fontSize(), 16);
    EXPECT_EQ(view.fontChoice(), TranscriptFontChoice::monospaced);
    EXPECT_EQ(view.lineSpacing(), 6);
    EXPECT_EQ(view.horizontalPadding(), 16);
    EXPECT_EQ(view.searchText(), QString());
    EXPECT_TRUE(view.matches().empty());
    EXPECT_EQ(view.currentMatchIndex(), 0);
    EXPECT_TRUE(view.showTimestamps());
    EXPECT_TRUE(view.autoScrollToPlayback());
}

TEST_F(TranscriptWindowViewTest, offersTheTypefacesInOrder)
{
    EXPECT_EQ(TranscriptWindowView::fontLabels(),
              (QStringList{u"Monospaced"_qs, u"Sans"_qs, u"Rounded"_qs, u"Serif"_qs}));
    const QStringList designs = {u"monospaced"_qs, u"sans"_qs, u"rounded"_qs, u"serif"_qs};
    for (int index = 0; index < 4; ++index) {
        view.setFontIndex(index);
        EXPECT_EQ(view.fontIndex(), index);
        EXPECT_EQ(view.fontDesign(), designs[index]);
    }
    view.setFontIndex(4);
    EXPECT_EQ(view.fontIndex(), 3);
}

TEST_F(TranscriptWindowViewTest, holdsTheOptionsWithinTheirRangesAndSteps)
{
    view.setFontSize(11);
    EXPECT_EQ(view.fontSize(), 12);
    view.setFontSize(97);
    EXPECT_EQ(view.fontSize(), 96);
    view.setFontSize(20.4);
    EXPECT_EQ(view.fontSize(), 20);
    view.setLineSpacing(-1);
    EXPECT_EQ(view.lineSpacing(), 0);
    view.setLineSpacing(17);
    EXPECT_EQ(view.lineSpacing(), 16);
    view.setHorizontalPadding(7);
    EXPECT_EQ(view.horizontalPadding(), 8);
    view.setHorizontalPadding(49);
    EXPECT_EQ(view.horizontalPadding(), 48);
    view.setHorizontalPadding(21.2);
    EXPECT_EQ(view.horizontalPadding(), 22);
}

struct TimeText {
    double seconds;
    const char *text;
};

class WindowTimeText : public testing::TestWithParam<TimeText> { };

TEST_P(WindowTimeText, showsMinutesAndSeconds)
{
    EXPECT_EQ(windowTimeText(GetParam().seconds), QString::fromUtf8(GetParam().text));
}

INSTANTIATE_TEST_SUITE_P(Times, WindowTimeText,
                         testing::Values(TimeText{0, "00:00"}, TimeText{3725, "62:05"}, TimeText{59.4, "00:59"},
                                         TimeText{59.5, "01:00"}, TimeText{-0.1, "--:--"}, TimeText{6000, "100:00"},
                                         TimeText{std::numeric_limits<double>::quiet_NaN(), "--:--"},
                                         TimeText{std::numeric_limits<double>::infinity(), "--:--"},
                                         TimeText{-std::numeric_limits<double>::infinity(), "--:--"}));

TEST_F(TranscriptWindowViewTest, theSliderEndsAtTheLargestOfDurationTimeAndOne)
{
    EXPECT_EQ(view.sliderEnd(), 1);
    EXPECT_FALSE(view.canSeek());
    model.setCurrentTime(5);
    EXPECT_EQ(view.sliderEnd(), 5);
    model.setPlaybackDuration(9);
    EXPECT_EQ(view.sliderEnd(), 9);
}

TEST_F(TranscriptWindowViewTest, canSeekWithAudioOfSomeLengthOnly)
{
    EXPECT_FALSE(view.canPlay());
    model.setPlaybackDuration(9);
    EXPECT_FALSE(view.canSeek());
    model.setPlaybackAvailable(true);
    EXPECT_TRUE(view.canPlay());
    EXPECT_TRUE(view.canSeek());
    model.setPlaybackDuration(0);
    EXPECT_TRUE(view.canPlay());
    EXPECT_FALSE(view.canSeek());
}

TEST_F(TranscriptWindowViewTest, theButtonSaysWhatItDoes)
{
    EXPECT_EQ(view.playLabel(), u"Play"_qs);
    model.setPlaying(true);
    EXPECT_EQ(view.playLabel(), u"Pause"_qs);
    view.togglePlay();
    view.copy();
    view.close();
    EXPECT_EQ(toggles, 1);
    EXPECT_EQ(copies, 1);
    EXPECT_EQ(closes, 1);
}

TEST_F(TranscriptWindowViewTest, movingTheSliderSetsTheTimeAndSeeks)
{
    view.slideTo(7.25);
    EXPECT_EQ(model.currentTime(), 7.25);
    EXPECT_THAT(seeks, ElementsAre(7.25));
}

TEST_F(TranscriptWindowViewTest, theOptionOfTheScreenIsItsOwn)
{
    view.setStripDashes(true);
    EXPECT_TRUE(stripDashes);
    stripDashes = false;
    EXPECT_FALSE(view.isStripDashes());
}

TEST_F(TranscriptWindowViewTest, showsATotalOfCounts)
{
    EXPECT_EQ(view.totalText(), QString());
    model.setCounts(u"2 words · 9 chars"_qs);
    EXPECT_EQ(view.totalText(), u"Total: 2 words · 9 chars"_qs);
}

TEST_F(TranscriptWindowViewTest, twoHitsInOneLineAreTwoMatchesOfThatLine)
{
    model.setTranscript(u"None\nHarbour and harbour"_qs);
    view.setSearchText(u" harbour\n"_qs);
    EXPECT_THAT(view.matches(), ElementsAre(TranscriptWindowMatch{1, 0, 7}, TranscriptWindowMatch{1, 12, 7}));
    EXPECT_EQ(view.positionText(), u"1 / 2"_qs);
    EXPECT_EQ(view.hitsInRow(1), (QList<int>{0, 7, 1, 12, 7, 0}));
    view.nextMatch();
    EXPECT_EQ(view.hitsInRow(1), (QList<int>{0, 7, 0, 12, 7, 1}));
    EXPECT_EQ(view.hitsInRow(0), QList<int>());
    EXPECT_EQ(view.hitsInRow(2), QList<int>());
}

TEST_F(TranscriptWindowViewTest, goesRoundAtBothEndsOfTheMatches)
{
    model.setTranscript(u"a\na\na"_qs);
    view.setSearchText(u"A"_qs);
    view.previousMatch();
    EXPECT_EQ(view.positionText(), u"3 / 3"_qs);
    view.nextMatch();
    EXPECT_EQ(view.positionText(), u"1 / 3"_qs);
}

TEST_F(TranscriptWindowViewTest, withoutMatchesTheArrowsDoNothing)
{
    QSignalSpy scrolled(&view, &TranscriptWindowView::scrollToRow);
    model.setTranscript(u"a"_qs);
    view.setSearchText(u"  "_qs);
    EXPECT_TRUE(view.isPositionShown()) << "the field is not empty";
    view.nextMatch();
    view.previousMatch();
    EXPECT_EQ(view.positionText(), u"0 / 0"_qs);
    EXPECT_EQ(view.currentMatchIndex(), 0);
    EXPECT_EQ(scrolled.count(), 0);
    view.setSearchText({});
    EXPECT_FALSE(view.isPositionShown());
}

TEST_F(TranscriptWindowViewTest, aNewTextSearchesAgainAndGoesBackToTheFirst)
{
    model.setTranscript(u"a a"_qs);
    view.setSearchText(u"a"_qs);
    view.nextMatch();
    model.setTranscript(u"a a a"_qs);
    EXPECT_EQ(view.positionText(), u"1 / 3"_qs);
    view.nextMatch();
    model.setSegments({segment(0, u"a"_qs), segment(1, u"b a"_qs)});
    EXPECT_EQ(view.positionText(), u"1 / 2"_qs);
    view.nextMatch();
    model.setTranscript(u"of which nothing is shown"_qs);
    EXPECT_EQ(view.positionText(), u"1 / 2"_qs);
    view.nextMatch();
    model.replaceSegmentsFrom(2, {segment(2, u"a"_qs)});
    EXPECT_EQ(view.positionText(), u"1 / 3"_qs);
}

TEST_F(TranscriptWindowViewTest, scrollsToTheLineOfTheCurrentMatchWhenItChanges)
{
    model.setTranscript(u"a\nb\na"_qs);
    QSignalSpy scrolled(&view, &TranscriptWindowView::scrollToRow);
    view.setSearchText(u"a"_qs);
    EXPECT_EQ(scrolled.count(), 0);
    view.nextMatch();
    ASSERT_EQ(scrolled.count(), 1);
    EXPECT_EQ(scrolled[0][0].toInt(), 2);
}

TEST_F(TranscriptWindowViewTest, scrollsToTheSegmentThatIsHeardUnlessToldNotTo)
{
    model.setSegments({segment(0, u"a"_qs), segment(2, u"b"_qs)});
    QSignalSpy scrolled(&view, &TranscriptWindowView::scrollToRow);
    model.setActiveSegmentIndex(1);
    ASSERT_EQ(scrolled.count(), 1);
    EXPECT_EQ(scrolled[0][0].toInt(), 1);
    model.setActiveSegmentIndex(std::nullopt);
    EXPECT_EQ(scrolled.count(), 1);
    view.setAutoScrollToPlayback(false);
    model.setActiveSegmentIndex(0);
    EXPECT_EQ(scrolled.count(), 1);
    EXPECT_TRUE(view.rows()->index(0).data(TranscriptRows::IsActiveRole).toBool()) << "the mark moves all the same";
}

} // namespace
