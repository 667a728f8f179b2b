#include "platform/media/sound_clock.h"

#include "support/printing.h"

#include <QStringList>

#include <gtest/gtest.h>

#include <array>
#include <cmath>

using namespace sorvanta;
using namespace std::chrono_literals;

namespace {

constexpr int rate = 16000;
constexpr qint64 frames = 320; // 20 ms

class SoundClockTest : public testing::Test {
protected:
    static double milliseconds(SoundTime time)
    {
        return std::chrono::duration<double, std::milli>(time.time_since_epoch()).count();
    }
    SoundClock::Place place(double measured)
    {
        return clock.place(SoundTime(std::chrono::microseconds(std::llround(measured * 1000))), frames);
    }

    SoundClock clock{rate};
};

TEST_F(SoundClockTest, beginsWhereTheFirstBufferWasMeasured)
{
    const auto first = place(500);
    EXPECT_EQ(milliseconds(first.time), 500);
    EXPECT_FALSE(first.isContinuous);
}

TEST_F(SoundClockTest, smoothesTimesThatWaver)
{
    place(500);
    for (int i = 1; i < 500; ++i) {
        const auto next = place(500 + 20 * i + (i % 2 == 0 ? 8 : -8));
        EXPECT_TRUE(next.isContinuous);
        EXPECT_NEAR(milliseconds(next.time), 500 + 20 * i, 4.5);
    }
}

TEST_F(SoundClockTest, followsTheSoundCardsClock)
{
    place(0);
    double measured = 0;
    for (int i = 1; i < 30000; ++i) { // ten minutes, 100 parts in a million slow
        measured = 20 * i * 1.0001;
        EXPECT_NEAR(milliseconds(place(measured).time), measured, 3);
    }
}

class UnevenClocks : public SoundClockTest, public testing::WithParamInterface<double> { };

TEST_P(UnevenClocks, theFramesKeepPaceWithTime)
{
    // Ten minutes of a sound card whose clock is that much slow, or fast.
    double counted = 0;
    for (int i = 0; i < 30000; ++i) {
        const double measured = 20 * i * GetParam();
        EXPECT_NEAR(counted, measured, 17);
        counted += 20 + place(measured).correction * 1000.0 / rate;
    }
}

INSTANTIATE_TEST_SUITE_P(Rates, UnevenClocks, testing::Values(1, 1.00005, 0.99995, 1.0001, 0.9999));

TEST_F(SoundClockTest, correctsNothingOfTimesThatOnlyWaver)
{
    for (int i = 0; i < 2000; ++i)
        EXPECT_EQ(place(500 + 20 * i + (i * 7 % 17) - 8).correction, 0);
}

TEST_F(SoundClockTest, makesUpForWhatIsLeftOut)
{
    // Once the server leaves out thirty milliseconds, which are too few for a break.
    double counted = 0;
    for (int i = 0; i < 10000; ++i) {
        const double measured = 20 * i + (i < 500 ? 0 : 30);
        const auto next = place(measured);
        EXPECT_EQ(next.isContinuous, i > 0);
        counted += 20 + next.correction * 1000.0 / rate;
    }
    EXPECT_NEAR(counted, 20 * 10000 + 30, 5.5);
}

TEST_F(SoundClockTest, correctsSlowly)
{
    int latest = -1;
    for (int i = 0; i < 3000; ++i) {
        if (place(20 * i + (i < 500 ? 0 : 30)).correction == 0)
            continue;
        EXPECT_TRUE(latest < 0 || i - latest == 10) << i;
        latest = i;
    }
    EXPECT_GT(latest, 0);
}

TEST_F(SoundClockTest, countsAnewAfterAnInterruption)
{
    place(0);
    clock.interrupt();
    place(5000);
    for (int i = 1; i < 100; ++i)
        EXPECT_EQ(place(5000 + 20 * i).correction, 0);
}

TEST_F(SoundClockTest, believesTheMeasureAfterAnInterruption)
{
    place(500);
    place(520);
    clock.interrupt();
    const auto next = place(900);
    EXPECT_EQ(milliseconds(next.time), 900);
    EXPECT_FALSE(next.isContinuous);
    EXPECT_TRUE(place(920).isContinuous);
}

TEST_F(SoundClockTest, isNotMisledByAFewWildTimes)
{
    place(0);
    for (int i = 1; i < 200; ++i) {
        const auto next = place(20 * i + (i % 10 == 0 ? 150 : 0));
        EXPECT_TRUE(next.isContinuous);
        EXPECT_NEAR(milliseconds(next.time), 20 * i, 1);
    }
}

TEST_F(SoundClockTest, noticesALossThatNobodyTells)
{
    place(0);
    place(20);
    int breaks = 0;
    double latest = 0;
    for (int i = 0; i < 20; ++i) {
        const auto next = place(240 + 20 * i);
        breaks += next.isContinuous ? 0 : 1;
        latest = milliseconds(next.time);
    }
    EXPECT_EQ(breaks, 1);
    EXPECT_NEAR(latest, 240 + 20 * 19, 1);
}

/// What is received of four frames, "time: values", with a plus in front if they continue.
QString receivedWith(int correction)
{
    const AudioFormat format = {1000, 2, AudioFormat::SampleType::Int16};
    const std::array<std::int16_t, 8> samples = {1, -1, 2, -2, 3, -3, 4, -4};
    QStringList received;
    handOverCorrected(std::as_bytes(std::span(samples)), {SoundTime(100ms), true, correction}, format,
                      [&](const SoundBuffer &buffer) {
                          QString text = buffer.isContinuous ? QStringLiteral("+") : QString();
                          text += QString::number(buffer.time.time_since_epoch() / 1ms) + QLatin1Char(':');
                          const auto *values = reinterpret_cast<const std::int16_t *>(buffer.frames.data());
                          for (std::size_t i = 0; i < buffer.frames.size() / 2; ++i)
                              text += QStringLiteral(" %1").arg(values[i]);
                          received << text;
                      });
    return received.join(QStringLiteral(", "));
}

TEST(CorrectedSound, isAFrameMoreOrLess)
{
    EXPECT_EQ(receivedWith(0), u"+100: 1 -1 2 -2 3 -3 4 -4"_qs);
    EXPECT_EQ(receivedWith(-1), u"+100: 1 -1 2 -2 3 -3"_qs);
    EXPECT_EQ(receivedWith(1), u"+100: 1 -1 2 -2 3 -3 4 -4, +104: 4 -4"_qs);
}

} // namespace
