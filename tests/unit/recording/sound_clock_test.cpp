#include "platform/media/sound_clock.h"

#include <gtest/gtest.h>

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

} // namespace
