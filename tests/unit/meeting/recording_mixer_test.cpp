#include "audio/recording_mixer.h"

#include "platform/media/media_duration.h"
#include "support/media_files.h"
#include "support/printing.h"
#include "support/waiting.h"

#include <QFile>
#include <QTest>

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>

using namespace sorvanta;

namespace {

constexpr int rate = 44100;

class RecordingMixerTest : public testing::Test {
protected:
    QString system(const QString &expression, double seconds)
    {
        return folder.make(
            u"system.m4a"_qs,
            QStringLiteral("-f lavfi -i aevalsrc=%1:s=44100:d=%2 -c:a aac -b:a 256k").arg(expression).arg(seconds));
    }
    QString mic(const QString &expression, double seconds)
    {
        return folder.make(
            u"mic.wav"_qs,
            QStringLiteral("-f lavfi -i aevalsrc=%1:s=44100:d=%2 -c:a pcm_s16le").arg(expression).arg(seconds));
    }
    bool mix(const QString &systemURL, const QString &micURL, const RecordingMixer &mixer = {})
    {
        return mixer.mixRecordings(systemURL, micURL, out);
    }
    static std::vector<double> channel(const QString &path, int number)
    {
        const QByteArray bytes =
            outputOf(u"ffmpeg"_qs, {u"-v"_qs, u"error"_qs, u"-i"_qs, path, u"-af"_qs,
                                    QStringLiteral("pan=mono|c0=c%1").arg(number), u"-f"_qs, u"f64le"_qs, u"-"_qs});
        std::vector<double> samples(static_cast<std::size_t>(bytes.size()) / sizeof(double));
        std::memcpy(samples.data(), bytes.constData(), samples.size() * sizeof(double));
        return samples;
    }
    static double amplitude(const std::vector<double> &samples, double frequency, double from, double to)
    {
        return toneAmplitude(std::vector<double>(samples.begin() + static_cast<std::ptrdiff_t>(from * rate),
                                                 samples.begin() + static_cast<std::ptrdiff_t>(to * rate)),
                             frequency, rate);
    }
    static double levelDifference(double measured, double expected) { return decibels(measured / expected); }

    MediaFolder folder;
    QString out = folder.path(u"out.m4a"_qs);
};

TEST_F(RecordingMixerTest, sumsBothAtFullLevelInBothChannels)
{
    ASSERT_TRUE(mix(system(u"0.25*sin(2*PI*440*t)|0.125*sin(2*PI*700*t)"_qs, 3), mic(u"0.25*sin(2*PI*1000*t)"_qs, 3)));
    EXPECT_EQ(describedFormat(out), u"mov,mp4,m4a,3gp,3g2,mj2 aac 44100 2"_qs);
    const auto left = channel(out, 0);
    const auto right = channel(out, 1);
    EXPECT_NEAR(levelDifference(amplitude(left, 440, 0.5, 2.5), 0.25), 0, 0.5);
    EXPECT_NEAR(levelDifference(amplitude(left, 1000, 0.5, 2.5), 0.25), 0, 0.5);
    EXPECT_NEAR(levelDifference(amplitude(right, 700, 0.5, 2.5), 0.125), 0, 0.5);
    EXPECT_NEAR(levelDifference(amplitude(right, 1000, 0.5, 2.5), 0.25), 0, 0.5);
    EXPECT_LT(amplitude(left, 700, 0.5, 2.5), 0.002) << "the channels stay apart";
    EXPECT_LT(amplitude(right, 440, 0.5, 2.5), 0.002);
}

TEST_F(RecordingMixerTest, cutsOffWhatIsBeyondFullScale)
{
    ASSERT_TRUE(mix(system(u"0.9*sin(2*PI*440*t)|0.9*sin(2*PI*440*t)"_qs, 2), mic(u"0.9*sin(2*PI*440*t)"_qs, 2)));
    const auto samples = channel(out, 0);
    double peak = 0;
    for (const double sample : samples)
        peak = std::max(peak, std::abs(sample));
    EXPECT_LT(peak, 1.25) << "but for what the encoder adds";
    // The first harmonic of a sine of 1.8 that is cut off at 1.
    EXPECT_NEAR(levelDifference(amplitude(samples, 440, 0.5, 1.5), 1.204), 0, 0.5);
}

TEST_F(RecordingMixerTest, laysThemOnEachOtherFromTheirFirstSample)
{
    // Both begin with silence of half a second.
    ASSERT_TRUE(
        mix(system(u"gt(t\\,0.5)*0.25*sin(2*PI*440*t)|0"_qs, 2), mic(u"gt(t\\,0.5)*0.25*sin(2*PI*1000*t)"_qs, 2)));
    const auto left = channel(out, 0);
    EXPECT_LT(level(left, 0, 0.48, rate), 0.003);
    EXPECT_GT(level(left, 0.505, 0.52, rate), 0.1);
    const auto right = channel(out, 1);
    EXPECT_LT(level(right, 0, 0.48, rate), 0.003);
    EXPECT_GT(level(right, 0.505, 0.52, rate), 0.1);
}

TEST_F(RecordingMixerTest, aLongerMicrophoneTakeIsCutAtTheSystemsLength)
{
    const QString systemURL = system(u"0.25*sin(2*PI*440*t)|0"_qs, 1.2345);
    ASSERT_TRUE(mix(systemURL, mic(u"0.25*sin(2*PI*1000*t)"_qs, 5)));
    EXPECT_NEAR(mediaDuration(out) * rate, mediaDuration(systemURL) * rate, 0.6);
}

TEST_F(RecordingMixerTest, behindAShorterMicrophoneTakeTheSystemGoesOnAlone)
{
    const QString systemURL = system(u"0.25*sin(2*PI*440*t)|0.25*sin(2*PI*440*t)"_qs, 4);
    ASSERT_TRUE(mix(systemURL, mic(u"0.25*sin(2*PI*1000*t)"_qs, 1)));
    EXPECT_NEAR(mediaDuration(out), 4, 0.0001);
    const auto left = channel(out, 0);
    EXPECT_NEAR(amplitude(left, 1000, 0.2, 0.9), 0.25, 0.01);
    EXPECT_LT(amplitude(left, 1000, 1.2, 3.8), 0.002);
    EXPECT_NEAR(amplitude(left, 440, 1.2, 3.8), 0.25, 0.01);
}

TEST_F(RecordingMixerTest, bringsOtherFormatsToTheOneOfTheResult)
{
    const QString systemURL =
        folder.make(u"s.m4a"_qs, u"-f lavfi -i aevalsrc=0.25*sin(2*PI*440*t):s=48000:d=2 -c:a aac"_qs);
    const QString micURL =
        folder.make(u"m.wav"_qs, u"-f lavfi -i aevalsrc=0.25*sin(2*PI*1000*t)|0:s=16000:d=2 -c:a pcm_s16le"_qs);
    ASSERT_TRUE(mix(systemURL, micURL));
    EXPECT_EQ(describedFormat(out), u"mov,mp4,m4a,3gp,3g2,mj2 aac 44100 2"_qs);
    EXPECT_NEAR(amplitude(channel(out, 1), 440, 0.5, 1.5), 0.25, 0.01);
    EXPECT_NEAR(amplitude(channel(out, 0), 1000, 0.5, 1.5), 0.25, 0.01);
    EXPECT_LT(amplitude(channel(out, 1), 1000, 0.5, 1.5), 0.002);
}

class UnmixableRecordings : public RecordingMixerTest,
                            public testing::WithParamInterface<std::pair<bool, const char *>> { };

/// Makes what the second of the parameter names.
QString unusable(const MediaFolder &folder, const char *kind)
{
    const QString name = QString::fromLatin1(kind);
    if (name == u"missing")
        return folder.path(u"nothing.wav"_qs);
    if (name == u"empty")
        return folder.write(u"unusable.wav"_qs, {});
    if (name == u"no media")
        return folder.write(u"unusable.wav"_qs, "no sound");
    if (name == u"no samples")
        return folder.make(u"unusable.wav"_qs, u"-f lavfi -i anullsrc=r=44100:cl=mono -t 0 -c:a pcm_s16le"_qs);
    return folder.make(u"unusable.mp4"_qs, u"-f lavfi -i testsrc=d=1:s=64x64 -an"_qs);
}

TEST_P(UnmixableRecordings, failAndLeaveNothing)
{
    const auto [isMic, kind] = GetParam();
    const QString bad = unusable(folder, kind);
    const QString good = folder.make(u"good.wav"_qs, u"-f lavfi -i sine=d=1:r=44100"_qs);
    EXPECT_FALSE(isMic ? mix(good, bad) : mix(bad, good));
    EXPECT_FALSE(QFile::exists(out));
}

INSTANTIATE_TEST_SUITE_P(Kinds, UnmixableRecordings,
                         testing::Values(std::pair(true, "missing"), std::pair(true, "empty"),
                                         std::pair(true, "no media"), std::pair(true, "no samples"),
                                         std::pair(true, "only a picture"), std::pair(false, "missing"),
                                         std::pair(false, "empty"), std::pair(false, "no media"),
                                         std::pair(false, "no samples"), std::pair(false, "only a picture")));

TEST_F(RecordingMixerTest, failsWhereSomethingLiesAtTheDestination)
{
    folder.write(u"out.m4a"_qs, "old");
    EXPECT_FALSE(mix(system(u"0.1*sin(t)|0"_qs, 1), mic(u"0.1*sin(t)"_qs, 1)));
    QFile file(out);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), QByteArray("old"));
}

TEST_F(RecordingMixerTest, aMixThatTakesTooLongHasFailedAndGoesOn)
{
    const QString systemURL = system(u"0.25*sin(2*PI*440*t)|0"_qs, 60);
    const QString micURL = mic(u"0.25*sin(2*PI*1000*t)"_qs, 60);
    RecordingMixer::Settings settings;
    settings.limit = std::chrono::milliseconds(1);
    EXPECT_FALSE(mix(systemURL, micURL, RecordingMixer(settings)));
    EXPECT_TRUE(waitUntil([this] { return mediaDuration(out) > 59.9; })) << "nobody waits, but it ends";
}

TEST_F(RecordingMixerTest, waitsForThirtySeconds)
{
    EXPECT_EQ(RecordingMixer::Settings().limit, std::chrono::seconds(30));
}

TEST_F(RecordingMixerTest, leavesTheTwoFilesAsTheyAre)
{
    const QString systemURL = system(u"0.1*sin(t)|0"_qs, 1);
    const QString micURL = mic(u"0.1*sin(t)"_qs, 1);
    const auto read = [](const QString &path) {
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.readAll();
    };
    const QByteArray systemBytes = read(systemURL);
    const QByteArray micBytes = read(micURL);
    ASSERT_TRUE(mix(systemURL, micURL));
    EXPECT_EQ(read(systemURL), systemBytes);
    EXPECT_EQ(read(micURL), micBytes);
    EXPECT_EQ(folder.names(), QStringList({u"mic.wav"_qs, u"out.m4a"_qs, u"system.m4a"_qs}));
}

} // namespace
