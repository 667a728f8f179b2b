#include "models/download_text.h"

#include "support/printing.h"

#include <gtest/gtest.h>

using namespace sorvanta;

namespace {

DownloadState state(qint64 received, qint64 expected, std::optional<double> estimate = std::nullopt)
{
    return {.bytesReceived = received, .totalBytesExpected = expected, .estimatedSecondsRemaining = estimate};
}

TEST(PercentLine, cutsTheNumber)
{
    EXPECT_EQ(percentLine(state(0, 1000)), u"Downloading 0%"_qs);
    EXPECT_EQ(percentLine(state(9, 1000)), u"Downloading 0%"_qs);
    EXPECT_EQ(percentLine(state(10, 1000)), u"Downloading 1%"_qs);
    EXPECT_EQ(percentLine(state(429, 1000)), u"Downloading 42%"_qs);
    EXPECT_EQ(percentLine(state(999, 1000)), u"Downloading 99%"_qs);
    EXPECT_EQ(percentLine(state(1000, 1000)), u"Downloading 100%"_qs);
    EXPECT_EQ(percentLine(state(1, 1)), u"Downloading 100%"_qs);
}

TEST(PercentLine, losesNoPercentToBinaryFractions)
{
    for (int percent = 0; percent <= 100; ++percent)
        EXPECT_EQ(percentLine(state(percent, 100)), u"Downloading %1%"_qs.arg(percent));
    EXPECT_EQ(percentLine(state(2'899'999'999, 10'000'000'000)), u"Downloading 28%"_qs);
}

TEST(PercentLine, isZeroWithoutAKnownSize)
{
    EXPECT_EQ(percentLine(state(5'000'000, -1)), u"Downloading 0%"_qs);
    EXPECT_EQ(percentLine(state(5'000'000, 0)), u"Downloading 0%"_qs);
}

TEST(ByteLine, showsBothFiguresAndTheEstimate)
{
    EXPECT_EQ(byteLine(state(1'200'000'000, 3'095'033'483, 725.2)), u"1.2 GB / 3.1 GB • ~12m 5s left"_qs);
    EXPECT_EQ(byteLine(state(1'200'000, 77'691'713, 45.4)), u"1.2 MB / 77.7 MB • ~45s left"_qs);
    EXPECT_EQ(byteLine(state(77'691'713, 77'691'713, 0)), u"77.7 MB / 77.7 MB • ~0s left"_qs);
}

TEST(ByteLine, leavesOutAnEstimateThatIsNotThere)
{
    EXPECT_EQ(byteLine(state(0, 77'691'713)), u"Zero KB / 77.7 MB"_qs);
    EXPECT_EQ(byteLine(state(0, 1)), u"Zero KB / 0 MB"_qs);
}

TEST(ByteLine, showsNoTotalAndNoEstimateWithoutAKnownSize)
{
    EXPECT_EQ(byteLine(state(1'200'000, -1, -3.0)), u"1.2 MB downloaded"_qs);
    EXPECT_EQ(byteLine(state(0, 0)), u"Zero KB downloaded"_qs);
}

TEST(TimeText, hasMinutesFromSixtySecondsOn)
{
    EXPECT_EQ(timeText(0), u"0s"_qs);
    EXPECT_EQ(timeText(0.4), u"0s"_qs);
    EXPECT_EQ(timeText(0.6), u"1s"_qs);
    EXPECT_EQ(timeText(59.4), u"59s"_qs);
    EXPECT_EQ(timeText(59.6), u"1m 0s"_qs);
    EXPECT_EQ(timeText(61), u"1m 1s"_qs);
    EXPECT_EQ(timeText(725), u"12m 5s"_qs);
    EXPECT_EQ(timeText(7325), u"122m 5s"_qs);
}

} // namespace
