#include "core/transcription_progress.h"

#include "support/printing.h"

#include <gtest/gtest.h>

using namespace sorvanta;
using namespace std::chrono_literals;

namespace {

const TranscriptionProgress::Clock::time_point start{1000s};

TranscriptionProgress begun()
{
    TranscriptionProgress progress;
    progress.begin(start);
    return progress;
}

TEST(TranscriptionProgress, knowsNothingAtTheBegin)
{
    TranscriptionProgress progress;
    progress.progress = 0.7;
    progress.totalDuration = 3.0;
    progress.begin(start);
    EXPECT_FALSE(progress.progress);
    EXPECT_FALSE(progress.totalDuration);
    EXPECT_EQ(progress.etaText, u"Estimating…"_qs);
    EXPECT_EQ(progress.transcriptionStart, start);
}

TEST(TranscriptionProgress, waitsForTheLengthOfTheAudio)
{
    auto progress = begun();
    progress.etaText = u"as it was"_qs;
    progress.update(u"[00:00:00.000 --> 00:00:15.000] x", start + 10s);
    EXPECT_FALSE(progress.progress);
    EXPECT_EQ(progress.etaText, u"as it was"_qs);
}

TEST(TranscriptionProgress, isZeroBeforeTheFirstTimedLine)
{
    auto progress = begun();
    progress.update(u"processing 'a.wav' (16000 samples, 1.0 sec)", start + 1s);
    EXPECT_EQ(progress.progress, 0.0);
    EXPECT_EQ(progress.etaText, u"Estimating…"_qs);
}

TEST(TranscriptionProgress, isTheShareOfTheAudioThatWasHeard)
{
    auto progress = begun();
    progress.update(u"main: processing 'a.wav' (480000 samples, 30.0 sec), 4 threads\n"
                    "[00:00:00.000 --> 00:00:05.000] x\n[00:00:05.000 --> 00:00:15.000] y\n",
                    start + 10s);
    EXPECT_EQ(progress.totalDuration, 30.0);
    EXPECT_EQ(progress.progress, 0.5);
    EXPECT_EQ(progress.etaText, u"ETA: 10s"_qs);
}

TEST(TranscriptionProgress, readsTheLengthOnceOnly)
{
    auto progress = begun();
    const QString output = u"processing 'a' (1 samples, 30.0 sec)\nprocessing 'b' (1 samples, 60.0 sec)\n"_qs;
    progress.update(output, start);
    EXPECT_EQ(progress.totalDuration, 30.0) << "the first match wins";
    progress.update(u"processing 'c' (1 samples, 90.0 sec)", start);
    EXPECT_EQ(progress.totalDuration, 30.0);
}

TEST(TranscriptionProgress, takesAQuoteInTheFileName)
{
    EXPECT_EQ(audioDuration(u"processing 'it's (1 samples, 2 sec)' (16000 samples, .5 sec)"), 0.5);
    EXPECT_FALSE(audioDuration(u"processing 'a\n' (16000 samples, 1.0 sec)"));
    EXPECT_FALSE(audioDuration(u"processing 'a' (16000 samples, x sec)"));
}

TEST(TranscriptionProgress, takesALengthThatIsNoNumberForNone)
{
    auto progress = begun();
    const QString tooLarge = u"processing 'a' (1 samples, "_qs + QString(400, u'9') + u" sec)\n"_qs;
    progress.update(tooLarge + u"processing 'b' (1 samples, 30.0 sec)\n"_qs, start);
    EXPECT_FALSE(progress.totalDuration) << "the first match wins all the same";
    EXPECT_FALSE(progress.progress);
}

TEST(TranscriptionProgress, readsAHundredPercentOnlyWhenTheLastTimedLineReachesTheEnd)
{
    auto progress = begun();
    const QString length = u"processing 'a' (480000 samples, 30.0 sec)\n"_qs;
    progress.update(length + u"[00:00:00.000 --> 00:00:29.999] x\n"_qs, start);
    EXPECT_EQ(progressText(progress.progress.value_or(-1)), u"Progress: 99%"_qs);
    progress.update(length + u"[00:00:00.000 --> 00:00:30.000] x\n"_qs, start);
    EXPECT_EQ(progressText(progress.progress.value_or(-1)), u"Progress: 100%"_qs);
}

TEST(TranscriptionProgress, isNeverOverOne)
{
    auto progress = begun();
    progress.update(u"processing 'a' (1 samples, 10.0 sec)\n[00:00:00.000 --> 00:00:30.000] x", start + 3s);
    EXPECT_EQ(progress.progress, 1.0);
    EXPECT_EQ(progress.etaText, u"ETA: 0s"_qs);
}

TEST(TranscriptionProgress, bearsAnAudioOfNoLength)
{
    auto progress = begun();
    progress.update(u"processing 'a' (0 samples, 0.0 sec)", start);
    EXPECT_EQ(progress.progress, 0.0);
    progress.update(u"processing 'a' (0 samples, 0.0 sec)\n[00:00:00.000 --> 00:00:30.000] x", start);
    EXPECT_EQ(progress.progress, 1.0);
}

TEST(TranscriptionProgress, estimatesAnewWithoutAStart)
{
    auto progress = begun();
    progress.transcriptionStart.reset();
    progress.update(u"processing 'a' (1 samples, 10.0 sec)\n[00:00:00.000 --> 00:00:05.000] x", start + 3s);
    EXPECT_EQ(progress.progress, 0.5);
    EXPECT_EQ(progress.etaText, u"Estimating…"_qs);
}

TEST(TranscriptionProgress, countsAClockThatWentBackAsNothingLeft)
{
    auto progress = begun();
    progress.update(u"processing 'a' (1 samples, 10.0 sec)\n[00:00:00.000 --> 00:00:05.000] x", start - 3s);
    EXPECT_EQ(progress.etaText, u"ETA: 0s"_qs);
}

TEST(TranscriptionProgress, runsOverAllFilesOfABatchWhileTheTimeSpeaksOfOne)
{
    TranscriptionProgress progress;
    progress.beginFile(1, 4, start);
    EXPECT_EQ(progress.progress, 0.25);
    EXPECT_FALSE(progress.totalDuration);
    EXPECT_EQ(progress.etaText, u"Estimating…"_qs);
    progress.update(u"processing 'a' (1 samples, 30.0 sec)\n[00:00:00.000 --> 00:00:15.000] x", 1, 4, start + 10s);
    EXPECT_EQ(progress.progress, 0.375);
    EXPECT_EQ(progress.etaText, u"ETA: 10s"_qs);
    progress.update(u"", 0, 0, start + 10s);
    EXPECT_EQ(progress.progress, 0.0) << "a batch of no files counts as one";
}

TEST(TranscriptionProgress, isFullWhenTheRunIsDone)
{
    auto progress = begun();
    progress.finish();
    EXPECT_EQ(progress.progress, 1.0);
    EXPECT_EQ(progress.etaText, u"Done"_qs);
}

TEST(LastTimedEnd, isThatOfTheLastTimedLineAnywhere)
{
    EXPECT_FALSE(lastTimedEnd(u"nothing"));
    EXPECT_EQ(lastTimedEnd(u"[00:00:00.000 --> 01:02:03.500] a [00:00:00.000 --> 00:00:04.250]"), 4.25);
    EXPECT_EQ(lastTimedEnd(u"[00:00:00.000 --> 00:00:04.250]\n[00:00:00.000 --> 00:00:09.2"), 4.25);
    EXPECT_EQ(lastTimedEnd(u"[00:00:00.000 --> 00:00:0٤.250]"), 0.0) << "a digit that is no number";
}

TEST(ProgressScanner, findsDigitsOfTwoUnitsThatComeUnitByUnit)
{
    const QString digit = u"\U0001D7D9"_qs; // a one that is no number in ASCII
    QString line = u"[##:##:##.### --> ##:##:##.###]"_qs;
    line.replace(u"#"_qs, digit);
    ProgressScanner scanner;
    QString output(100, u'x');
    for (const QChar unit : line) {
        output += unit;
        const auto end = scanner.scan(output, output.size() - 1, 0).lastEnd;
        ASSERT_EQ(end, lastTimedEnd(output));
    }
    EXPECT_EQ(lastTimedEnd(output), 0.0);
}

struct RemainingCase {
    double seconds;
    const char16_t *text;
};

class FormatRemaining : public testing::TestWithParam<RemainingCase> { };

TEST_P(FormatRemaining, padsNothing)
{
    EXPECT_EQ(formatRemaining(GetParam().seconds), QStringView(GetParam().text).toString());
}

INSTANTIATE_TEST_SUITE_P(Table, FormatRemaining,
                         testing::Values(RemainingCase{0, u"0s"}, RemainingCase{42, u"42s"},
                                         RemainingCase{59.4, u"59s"}, RemainingCase{59.5, u"1m 0s"},
                                         RemainingCase{65, u"1m 5s"}, RemainingCase{3599, u"59m 59s"},
                                         RemainingCase{3600, u"1h 0m 0s"}, RemainingCase{3725, u"1h 2m 5s"},
                                         RemainingCase{90061, u"25h 1m 1s"}));

TEST(ProgressText, isCutTowardsZero)
{
    EXPECT_EQ(progressText(0.999), u"Progress: 99%"_qs);
    EXPECT_EQ(progressText(0.0), u"Progress: 0%"_qs);
    EXPECT_EQ(progressText(0.42), u"Progress: 42%"_qs);
    EXPECT_EQ(progressText(1.0), u"Progress: 100%"_qs);
}

} // namespace
