#include "platform/media/wav_file.h"

#include "platform/error.h"
#include "platform/media/media_duration.h"
#include "platform/media/power_meter.h"
#include "support/media_files.h"
#include "support/printing.h"

#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <vector>

using namespace sorvanta;

namespace {

constexpr AudioFormat voice = {16000, 1, AudioFormat::SampleType::Int16};

std::vector<qint16> sine(double amplitude, double seconds, int channels = 1, int channel = 0)
{
    const auto count = static_cast<std::size_t>(seconds * 16000);
    std::vector<qint16> samples(count * static_cast<std::size_t>(channels));
    for (std::size_t i = 0; i < count; ++i)
        samples[i * static_cast<std::size_t>(channels) + static_cast<std::size_t>(channel)] = static_cast<qint16>(
            std::lround(32767 * amplitude * std::sin(2 * std::numbers::pi * 1000 * static_cast<double>(i) / 16000)));
    return samples;
}

TEST(WavFile, isWholeAfterEveryWrite)
{
    const MediaFolder folder;
    const QString path = folder.path(u"a.wav"_qs);
    WavFile file(path, voice);
    EXPECT_EQ(describedFormat(path), u"wav pcm_s16le 16000 1"_qs);
    const auto samples = sine(0.25, 0.5);
    for (int i = 1; i <= 4; ++i) {
        file.append(std::as_bytes(std::span(samples)));
        EXPECT_EQ(samplesOf(path).size(), 8000U * static_cast<std::size_t>(i)) << "also while it is open";
        EXPECT_EQ(mediaDuration(path), 0.5 * i);
    }
    EXPECT_EQ(file.frameCount(), 32000);
    file.close();
    EXPECT_NEAR(toneAmplitude(samplesOf(path), 1000, 16000), 0.25, 0.0001);
}

TEST(WavFile, hasTheFormThatWasAskedFor)
{
    const MediaFolder folder;
    WavFile file(folder.path(u"a.wav"_qs), {44100, 2, AudioFormat::SampleType::Int16});
    const auto samples = sine(0.5, 0.1, 2, 1);
    file.append(std::as_bytes(std::span(samples)));
    file.close();
    EXPECT_EQ(describedFormat(folder.path(u"a.wav"_qs)), u"wav pcm_s16le 44100 2"_qs);
}

TEST(WavFile, isForItsOwnerAlone)
{
    const MediaFolder folder;
    const WavFile file(folder.path(u"a.wav"_qs), voice);
    EXPECT_EQ(QFile::permissions(folder.path(u"a.wav"_qs)) & (QFile::ReadGroup | QFile::ReadOther),
              QFile::Permissions());
}

TEST(WavFile, takesNoPlaceThatIsTaken)
{
    const MediaFolder folder;
    const QString path = folder.write(u"a.wav"_qs, "mine");
    EXPECT_THROW(WavFile(path, voice), Error);
    EXPECT_EQ(QFileInfo(path).size(), 4);
    try {
        const WavFile file(folder.path(u"missing/a.wav"_qs), voice);
        FAIL() << "there is no such folder";
    } catch (const Error &failure) {
        EXPECT_EQ(failure.domain(), u"NSCocoaErrorDomain"_qs);
    }
}

TEST(WavFile, growsOverFourGigabytes)
{
    const MediaFolder folder;
    const QString path = folder.path(u"a.wav"_qs);
    constexpr AudioFormat wide = {48000, 2, AudioFormat::SampleType::Int16};
    WavFile file(path, wide);
    const std::vector<std::byte> block(64 * 1024 * 1024);
    // The file system keeps no blocks of zeros that are cut out again.
    for (int i = 0; i < 65; ++i) {
        file.append(block);
        outputOf(u"fallocate"_qs, {u"--dig-holes"_qs, path});
    }
    file.close();
    EXPECT_NEAR(mediaDuration(path), 65.0 * 64 * 1024 * 1024 / (48000 * 4), 0.001);
    const QByteArray probed = outputOf(u"ffprobe"_qs, {u"-v"_qs, u"error"_qs, u"-show_entries"_qs,
                                                       u"format=duration"_qs, u"-of"_qs, u"csv=p=0"_qs, path});
    EXPECT_NEAR(probed.trimmed().toDouble(), 65.0 * 64 * 1024 * 1024 / (48000 * 4), 0.001);
}

TEST(PowerMeter, tellsTheAveragePower)
{
    PowerMeter meter(1);
    EXPECT_EQ(meter.powers(-160), std::vector<float>{-160}) << "without any sound";
    const auto samples = sine(1, 0.2);
    meter.take(std::as_bytes(std::span(samples)));
    EXPECT_NEAR(meter.powers(-160).front(), -3.01, 0.01) << "a sine of full scale";
    EXPECT_EQ(meter.powers(-160), std::vector<float>{-160}) << "since the last question";
    const std::vector<qint16> square(1600, -32768);
    meter.take(std::as_bytes(std::span(square)));
    EXPECT_EQ(meter.powers(-160), std::vector<float>{0});
    const std::vector<qint16> silence(1600);
    meter.take(std::as_bytes(std::span(silence)));
    EXPECT_EQ(meter.powers(-160), std::vector<float>{-160});
}

TEST(PowerMeter, keepsChannelsApart)
{
    PowerMeter meter(2);
    const auto samples = sine(0.1, 0.2, 2, 1);
    meter.take(std::as_bytes(std::span(samples)));
    const auto powers = meter.powers(-160);
    EXPECT_EQ(powers[0], -160);
    EXPECT_NEAR(powers[1], -23.01, 0.01);
}

} // namespace
