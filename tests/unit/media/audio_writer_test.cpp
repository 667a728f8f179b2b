#include "platform/media/audio_writer.h"

#include "platform/error.h"
#include "support/media_files.h"
#include "support/printing.h"

#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

#include <limits>

#include <cmath>
#include <cstdint>
#include <numbers>

using namespace sorvanta;

namespace {

using Container = AudioFileSettings::Container;

template<typename Sample>
std::vector<Sample> tone(double scale, int frames, int channels, int sampleRate)
{
    std::vector<Sample> samples;
    for (int i = 0; i < frames; ++i) {
        const double value = 0.25 * scale * std::sin(2 * std::numbers::pi * 1000 * i / sampleRate);
        samples.insert(samples.end(), static_cast<std::size_t>(channels), static_cast<Sample>(value));
    }
    return samples;
}

template<typename Sample>
bool appendInPieces(AudioWriter &writer, const std::vector<Sample> &samples, std::size_t piece)
{
    bool isWriting = true;
    for (std::size_t i = 0; i < samples.size() && isWriting; i += piece)
        isWriting = writer.append(std::as_bytes(std::span(samples).subspan(i, std::min(piece, samples.size() - i))));
    return isWriting;
}

TEST(AudioWriter, writesAWavFileOfJustTheSamples)
{
    MediaFolder folder;
    const QString path = folder.path(u"a.wav"_qs);
    const auto samples = tone<std::int16_t>(32768, 48000, 1, 16000);
    AudioWriter writer(path, {Container::Wav, 16000, 1, 0});
    EXPECT_EQ(writer.status(), AudioWriter::Status::Writing);
    EXPECT_TRUE(appendInPieces(writer, samples, 777));
    EXPECT_TRUE(writer.finish());
    EXPECT_EQ(writer.status(), AudioWriter::Status::Completed);
    EXPECT_EQ(writer.errorDescription(), QString());
    EXPECT_EQ(describedFormat(path), u"wav pcm_s16le 16000 1"_qs);
    const QByteArray raw = outputOf(u"sox"_qs, {path, u"-t"_qs, u"raw"_qs, u"-"_qs});
    EXPECT_EQ(raw, QByteArray(reinterpret_cast<const char *>(samples.data()), 96000));
}

TEST(AudioWriter, writesAacInAnM4aFile)
{
    MediaFolder folder;
    const QString path = folder.path(u"a.m4a"_qs);
    AudioWriter writer(path, {Container::M4a, 44100, 2, 128000});
    EXPECT_TRUE(appendInPieces(writer, tone<float>(1, 3 * 44100, 2, 44100), 2 * 1000));
    EXPECT_TRUE(writer.finish());
    EXPECT_EQ(describedFormat(path), u"mov,mp4,m4a,3gp,3g2,mj2 aac 44100 2"_qs);
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.read(12).mid(4), "ftypM4A ");
    const std::vector<double> samples = samplesOf(path);
    EXPECT_NEAR(static_cast<double>(samples.size()), 3 * 44100, 1024);
    const std::vector<double> middle(samples.begin() + 44100, samples.begin() + 88200);
    EXPECT_NEAR(decibels(toneAmplitude(middle, 1000, 44100) / 0.25), 0, 0.1);
}

TEST(AudioWriter, makesFilesThatAreTheUsersAlone)
{
    MediaFolder folder;
    const AudioWriter writer(folder.path(u"a.wav"_qs), {Container::Wav, 16000, 1, 0});
    EXPECT_EQ(QFileInfo(folder.path(u"a.wav"_qs)).permissions() & 0x0FF, QFile::Permissions());
}

TEST(AudioWriter, aFileWithoutAFrameIsWholeToo)
{
    MediaFolder folder;
    AudioWriter writer(folder.path(u"a.wav"_qs), {Container::Wav, 16000, 1, 0});
    EXPECT_TRUE(writer.finish());
    EXPECT_EQ(describedFormat(folder.path(u"a.wav"_qs)), u"wav pcm_s16le 16000 1"_qs);
    EXPECT_FALSE(writer.append(std::as_bytes(std::span("ab", 2)))) << "nothing goes into a file that has been ended";
    EXPECT_TRUE(writer.finish());
}

TEST(AudioWriter, refusesAnImpossibleFileAndLeavesNothing)
{
    MediaFolder folder;
    const QString path = folder.path(u"a.m4a"_qs);
    EXPECT_THROW(AudioWriter(path, {Container::M4a, 12345, 1, 0}), Error);
    EXPECT_THROW(AudioWriter(path, {Container::Wav, 16000, 0, 0}), Error);
    EXPECT_EQ(folder.names(), QStringList());
}

QString refusal(const QString &path)
{
    try {
        const AudioWriter writer(path, {Container::Wav, 16000, 1, 0});
    } catch (const Error &failure) {
        return failure.localizedDescription();
    }
    return {};
}

TEST(AudioWriter, neverWritesOverAFile)
{
    MediaFolder folder;
    const QString path = folder.write(u"a.wav"_qs, "mine");
    EXPECT_TRUE(refusal(path).startsWith(u"The file “a.wav” couldn’t be saved in the folder “"_qs));
    EXPECT_TRUE(refusal(path).endsWith(u"” because a file with the same name already exists."_qs));
    EXPECT_EQ(QFileInfo(path).size(), 4);
}

TEST(AudioWriter, saysThatTheFolderIsMissing)
{
    MediaFolder folder;
    EXPECT_EQ(refusal(folder.path(u"gone/a.wav"_qs)), u"The folder “gone” doesn’t exist."_qs);
}

TEST(NearestAacSampleRate, isOneThatTheFormatKnows)
{
    for (const int rate : {8000, 11025, 16000, 22050, 24000, 44100, 48000})
        EXPECT_EQ(nearestAacSampleRate(rate), rate);
    EXPECT_EQ(nearestAacSampleRate(192000), 48000);
    EXPECT_EQ(nearestAacSampleRate(96000), 48000);
    EXPECT_EQ(nearestAacSampleRate(37800), 32000);
    EXPECT_EQ(nearestAacSampleRate(4000), 7350);
    EXPECT_EQ(nearestAacSampleRate(std::numeric_limits<int>::max()), 48000);
    EXPECT_EQ(nearestAacSampleRate(std::numeric_limits<int>::min()), 7350);
}

} // namespace
