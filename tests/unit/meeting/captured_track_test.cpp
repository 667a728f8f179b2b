#include "audio/captured_track.h"

#include "platform/media/media_duration.h"
#include "support/media_files.h"
#include "support/printing.h"

#include <gtest/gtest.h>

#include <QStringList>

using namespace sorvanta;
using namespace std::chrono_literals;

namespace {

/// A track of 1000 frames a second, of which each has its number.
class CapturedTrackTest : public testing::Test {
protected:
    CapturedTrackTest() { track.begin(start); }

    /// So many frames of this value, heard from then on.
    void take(std::chrono::milliseconds at, int frames, std::int16_t value, bool isContinuous)
    {
        const std::vector<std::int16_t> samples(static_cast<std::size_t>(frames), value);
        track.take({std::as_bytes(std::span(samples)), start + at, isContinuous});
    }
    /// The file as stretches: "100x5 50x0".
    QString written()
    {
        track.finish();
        QString text;
        int count = 0;
        const QByteArray bytes = outputOf(u"sox"_qs, {path, u"-t"_qs, u"s16"_qs, u"-"_qs});
        const auto *values = reinterpret_cast<const std::int16_t *>(bytes.constData());
        const qsizetype size = bytes.size() / 2;
        for (qsizetype i = 0; i < size; ++i) {
            ++count;
            if (i + 1 == size || values[i + 1] != values[i]) {
                text += QStringLiteral("%1x%2 ").arg(count).arg(values[i]);
                count = 0;
            }
        }
        return text.trimmed();
    }

    MediaFolder folder;
    SoundTime start = SoundTime(1000s);
    QString path = folder.path(u"a.wav"_qs);
    QStringList failures;
    CapturedTrack track{
        path, {AudioFileSettings::Container::Wav, 1000, 1, 0}, [this](const QString &text) { failures << text; }};
};

TEST_F(CapturedTrackTest, beginsAtItsBeginning)
{
    take(-30ms, 50, 7, false);
    EXPECT_EQ(written(), u"20x7"_qs);
}

TEST_F(CapturedTrackTest, leavesOutWhatWasHeardBefore)
{
    take(-50ms, 50, 7, false);
    take(0ms, 10, 8, true);
    EXPECT_EQ(written(), u"10x8"_qs);
}

TEST_F(CapturedTrackTest, isSilentUntilTheFirstSound)
{
    take(30ms, 50, 7, false);
    EXPECT_EQ(written(), u"30x0 50x7"_qs);
}

TEST_F(CapturedTrackTest, joinsWhatIsContinuousWhateverItsTimesSay)
{
    take(0ms, 50, 7, false);
    take(53ms, 50, 8, true);
    take(97ms, 50, 9, true);
    EXPECT_EQ(written(), u"50x7 50x8 50x9"_qs);
}

TEST_F(CapturedTrackTest, isSilentWhereSoundIsMissing)
{
    take(0ms, 50, 7, false);
    take(80ms, 50, 8, false);
    EXPECT_EQ(written(), u"50x7 30x0 50x8"_qs);
}

TEST_F(CapturedTrackTest, takesNoMomentTwice)
{
    take(0ms, 50, 7, false);
    take(30ms, 50, 8, false);
    take(10ms, 20, 9, false);
    EXPECT_EQ(written(), u"50x7 30x8"_qs);
}

TEST_F(CapturedTrackTest, dropsWhatComesInAPauseAndKeepsItsTime)
{
    take(0ms, 50, 7, false);
    track.setPaused(true);
    take(50ms, 50, 8, true);
    track.setPaused(false);
    take(100ms, 50, 9, true);
    EXPECT_EQ(written(), u"50x7 50x0 50x9"_qs);
}

TEST_F(CapturedTrackTest, endsAtItsEnd)
{
    take(0ms, 50, 7, false);
    track.end(start + 70ms);
    take(50ms, 50, 8, true);
    take(100ms, 50, 9, true);
    EXPECT_EQ(written(), u"50x7 20x8"_qs);
}

TEST_F(CapturedTrackTest, lastsToItsEndAlsoWithoutSound)
{
    take(0ms, 50, 7, false);
    track.end(start + 70ms);
    EXPECT_EQ(written(), u"50x7 20x0"_qs);
}

TEST_F(CapturedTrackTest, doesNotLastThroughAPauseThatNothingFollows)
{
    take(0ms, 50, 7, false);
    track.setPaused(true);
    track.end(start + 70ms);
    EXPECT_EQ(written(), u"50x7"_qs);
}

} // namespace
