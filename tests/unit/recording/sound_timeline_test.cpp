#include "platform/media/sound_timeline.h"

#include <gtest/gtest.h>

#include <cstring>
#include <vector>

using namespace sorvanta;
using namespace std::chrono_literals;

namespace {

/// A file of 1000 frames a second, in which each frame of sound is the number of its millisecond.
class SoundTimelineTest : public testing::Test {
protected:
    static constexpr AudioFormat format = {1000, 1, AudioFormat::SampleType::Int16};
    static constexpr SoundTime zero{};

    /// The sound of [from, to), in milliseconds.
    void take(int from, int to, bool isContinuous = true)
    {
        std::vector<qint16> samples;
        for (int i = from; i < to; ++i)
            samples.push_back(static_cast<qint16>(i));
        timeline.take({std::as_bytes(std::span(samples)), at(from), isContinuous});
    }
    static SoundTime at(int milliseconds) { return zero + std::chrono::milliseconds(milliseconds); }
    /// The numbers from `from` on to `to`.
    static std::vector<int> run(int from, int to)
    {
        std::vector<int> numbers;
        for (int i = from; i < to; ++i)
            numbers.push_back(i);
        return numbers;
    }
    static std::vector<int> joined(std::vector<int> first, const std::vector<int> &second)
    {
        first.insert(first.end(), second.begin(), second.end());
        return first;
    }

    std::vector<int> file;
    SoundTimeline timeline{format, [this](std::span<const std::byte> frames) {
                               for (std::size_t i = 0; i < frames.size(); i += sizeof(qint16)) {
                                   qint16 sample = 0;
                                   std::memcpy(&sample, frames.data() + i, sizeof sample);
                                   file.push_back(sample);
                               }
                           }};
};

TEST_F(SoundTimelineTest, writesNothingThatIsNotWanted)
{
    EXPECT_TRUE(timeline.isComplete());
    take(0, 100, false);
    EXPECT_TRUE(file.empty());
}

TEST_F(SoundTimelineTest, cutsTheSoundAtTheBeginningAndTheEnd)
{
    timeline.begin(at(150));
    take(100, 200, false);
    EXPECT_EQ(file, run(150, 200));
    take(200, 300);
    timeline.end(at(330));
    EXPECT_FALSE(timeline.isComplete());
    take(300, 400);
    EXPECT_EQ(file, run(150, 330));
    EXPECT_TRUE(timeline.isComplete());
}

TEST_F(SoundTimelineTest, leavesNoTraceOfThePause)
{
    timeline.begin(at(100));
    take(100, 200, false);
    timeline.end(at(210));
    timeline.begin(at(260));
    take(200, 300);
    take(300, 400);
    EXPECT_EQ(file, joined(run(100, 210), run(260, 400)));
}

TEST_F(SoundTimelineTest, takesSeveralStretchesOfOneBuffer)
{
    timeline.begin(at(110));
    timeline.end(at(120));
    timeline.begin(at(130));
    timeline.end(at(140));
    take(100, 200, false);
    EXPECT_EQ(file, joined(run(110, 120), run(130, 140)));
    EXPECT_TRUE(timeline.isComplete());
}

TEST_F(SoundTimelineTest, isSilentWhereSoundIsMissing)
{
    timeline.begin(at(100));
    take(150, 200, false);
    take(250, 300, false);
    EXPECT_EQ(file, joined(joined(std::vector<int>(50), run(150, 200)), joined(std::vector<int>(50), run(250, 300))));
}

TEST_F(SoundTimelineTest, dropsSoundThatComesTwice)
{
    timeline.begin(at(100));
    take(100, 200, false);
    take(170, 260, false);
    EXPECT_EQ(file, run(100, 260));
}

TEST_F(SoundTimelineTest, doesNotTearWhatFollowsWithoutABreak)
{
    timeline.begin(at(100));
    take(100, 200, false);
    take(203, 300); // the sound card's clock is not quite ours
    EXPECT_EQ(file, joined(run(100, 200), run(203, 300)));
}

TEST_F(SoundTimelineTest, isSilentToTheEndOfWhatWasMissed)
{
    timeline.begin(at(100));
    timeline.end(at(150));
    take(200, 300, false);
    EXPECT_EQ(file, std::vector<int>(50));
    timeline.begin(at(300));
    take(300, 320);
    timeline.end(at(350));
    timeline.finish();
    EXPECT_EQ(file, joined(joined(std::vector<int>(50), run(300, 320)), std::vector<int>(30)));
    EXPECT_TRUE(timeline.isComplete());
}

TEST_F(SoundTimelineTest, keepsASilenceOfManyHoursShortInMemory)
{
    timeline.begin(at(0));
    take(40'000'000, 40'000'010, false);
    EXPECT_EQ(file.size(), 40'000'010U);
}

} // namespace
