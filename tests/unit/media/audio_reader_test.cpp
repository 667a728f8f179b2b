#include "platform/media/audio_reader.h"

#include "platform/error.h"
#include "support/media_files.h"
#include "support/printing.h"

#include <QFile>
#include <QtEndian>

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstring>

using namespace sorvanta;

namespace {

constexpr AudioFormat speech = {16000, 1, AudioFormat::SampleType::Int16};

/// All samples of a started reader, from -1 to 1.
std::vector<double> readAll(AudioReader &reader)
{
    std::vector<double> samples;
    for (auto bytes = reader.read(); !bytes.empty(); bytes = reader.read()) {
        for (std::size_t i = 0; i + 2 <= bytes.size(); i += 2) {
            std::int16_t sample = 0;
            std::memcpy(&sample, bytes.data() + i, 2);
            samples.push_back(sample / 32768.0);
        }
    }
    return samples;
}

std::vector<double> readAll(const QString &path)
{
    AudioReader reader(path);
    reader.start(speech);
    const std::vector<double> samples = readAll(reader);
    EXPECT_EQ(reader.status(), AudioReader::Status::Completed) << reader.errorDescription().toStdString();
    return samples;
}

double seconds(const std::vector<double> &samples)
{
    return static_cast<double>(samples.size()) / 16000;
}

const QString threeSeconds = u"-f lavfi -i sine=frequency=1000:sample_rate=44100:duration=3"_qs;

TEST(AudioReader, tellsWhatTheSourceIs)
{
    MediaFolder folder;
    const AudioReader reader(folder.make(u"a.flac"_qs, threeSeconds + u" -ac 2"_qs));
    EXPECT_EQ(reader.sourceSampleRate(), 44100);
    EXPECT_EQ(reader.sourceChannels(), 2);
    EXPECT_EQ(reader.status(), AudioReader::Status::Reading);
    EXPECT_EQ(reader.errorDescription(), QString());
}

TEST(AudioReader, takesTheFirstOfTwoAudioTracks)
{
    MediaFolder folder;
    const std::vector<double> samples = readAll(folder.make(
        u"two.mkv"_qs, u"-f lavfi -i testsrc=size=64x48:rate=5:duration=2 -f lavfi -i sine=frequency=400:duration=2 -f "
                       u"lavfi -i sine=frequency=2000:duration=2 -map 0 -map 1 -map 2 -c:a flac"_qs));
    EXPECT_NEAR(toneAmplitude(samples, 400, 16000), 0.125, 0.005);
    EXPECT_LT(toneAmplitude(samples, 2000, 16000), 0.001);
}

TEST(AudioReader, putsSilenceInFrontOfSoundThatStartsLater)
{
    MediaFolder folder;
    const QString late = u"-f lavfi -i testsrc=size=64x48:rate=10:duration=4 -itsoffset 1.5 "_qs + threeSeconds;
    for (const QString &name : {u"late.mp4"_qs, u"late.mkv"_qs, u"late.mov"_qs, u"late.ts"_qs}) {
        const std::vector<double> samples = readAll(folder.make(name, late + u" -c:v mpeg4 -c:a aac"_qs));
        EXPECT_NEAR(seconds(samples), 4.5, 0.06) << name.toStdString();
        EXPECT_LT(level(samples, 0, 1.4, 16000), 0.0001) << name.toStdString();
        EXPECT_GT(level(samples, 1.6, 4.4, 16000), 0.08) << name.toStdString();
    }
}

TEST(AudioReader, putsSilenceInFrontAlsoWhereThereIsNoPicture)
{
    MediaFolder folder;
    const std::vector<double> samples =
        readAll(folder.make(u"late.m4a"_qs, u"-itsoffset 2 "_qs + threeSeconds + u" -c:a aac"_qs));
    EXPECT_NEAR(seconds(samples), 5, 0.05);
    EXPECT_LT(level(samples, 0, 1.9, 16000), 0.0001);
}

TEST(AudioReader, fillsAHoleInTheTrackWithSilence)
{
    MediaFolder folder;
    const std::vector<double> samples =
        readAll(folder.make(u"hole.mkv"_qs, threeSeconds + u" -af asetpts=PTS+gte(T\\,1)*2/TB -c:a pcm_s16le"_qs));
    EXPECT_NEAR(seconds(samples), 5, 0.05);
    EXPECT_GT(level(samples, 0.1, 0.9, 16000), 0.08);
    EXPECT_LT(level(samples, 1.2, 2.9, 16000), 0.0001);
    EXPECT_GT(level(samples, 3.2, 4.9, 16000), 0.08);
}

TEST(AudioReader, takesOffWhatTheEncoderPutInFront)
{
    MediaFolder folder;
    const QString click = u"-f lavfi -i aevalsrc=between(t\\,1\\,1.01)*0.9*sin(2*PI*1000*t):s=48000:d=2 "_qs;
    for (const QString &name : {u"a.m4a"_qs, u"a.mp3"_qs, u"a.opus"_qs, u"a.mp4"_qs}) {
        const std::vector<double> samples = readAll(folder.make(name, click + u"-b:a 192k"_qs));
        std::size_t first = 0;
        while (first < samples.size() && std::abs(samples[first]) < 0.3)
            ++first;
        EXPECT_NEAR(static_cast<double>(first) / 16000, 1.0, 0.004) << name.toStdString();
    }
}

TEST(AudioReader, followsAChangeOfRateAndChannelsInTheMiddle)
{
    MediaFolder folder;
    const auto bytesOf = [&](const QString &name, const QString &arguments) {
        QFile file(folder.make(name, arguments + u" -c:a aac -f adts"_qs));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.readAll();
    };
    const QByteArray first = bytesOf(u"1.aac"_qs, threeSeconds + u" -ac 1 -ar 44100"_qs);
    const QByteArray second = bytesOf(u"2.aac"_qs, threeSeconds + u" -af pan=stereo|c0=c0|c1=c0 -ar 22050"_qs);
    const std::vector<double> samples = readAll(folder.write(u"both.aac"_qs, first + second));
    EXPECT_NEAR(seconds(samples), 6, 0.3);
    const std::vector<double> early(samples.begin() + 16000, samples.begin() + 32000);
    const std::vector<double> late(samples.end() - 32000, samples.end() - 16000);
    EXPECT_NEAR(toneAmplitude(early, 1000, 16000), 0.125, 0.01);
    EXPECT_NEAR(toneAmplitude(late, 1000, 16000), 0.125, 0.01);
}

TEST(AudioReader, passesOverDamagedPackets)
{
    MediaFolder folder;
    QFile file(folder.make(u"a.mp3"_qs, threeSeconds + u" -b:a 128k"_qs));
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    ASSERT_TRUE(file.seek(file.size() / 2));
    file.write(QByteArray(4000, '\x55'));
    file.close();
    const std::vector<double> samples = readAll(file.fileName());
    EXPECT_NEAR(seconds(samples), 3, 0.4);
    EXPECT_GT(level(samples, 0.2, 1.2, 16000), 0.08);
    EXPECT_GT(level(samples, 2.0, 2.4, 16000), 0.08) << "what comes behind the damage is kept";
}

TEST(AudioReader, keepsWhatCanBeDecodedOfACutFile)
{
    MediaFolder folder;
    for (const QString &name : {u"a.wav"_qs, u"a.mp3"_qs, u"a.flac"_qs, u"a.ogg"_qs, u"a.mkv"_qs, u"front.m4a"_qs}) {
        const QString options = name == u"front.m4a" ? u" -movflags +faststart"_qs : QString();
        QFile file(folder.make(name, u"-f lavfi -i sine=frequency=1000:sample_rate=44100:duration=30"_qs + options));
        ASSERT_TRUE(file.resize(file.size() * 6 / 10)) << name.toStdString();
        const std::vector<double> samples = readAll(file.fileName());
        EXPECT_NEAR(seconds(samples), 18, 2) << name.toStdString();
        EXPECT_GT(level(samples, 0.1, seconds(samples) - 1, 16000), 0.08) << name.toStdString();
    }
}

TEST(AudioReader, failsWhereNothingCanBeDecoded)
{
    MediaFolder folder;
    QFile file(folder.make(u"a.m4a"_qs, threeSeconds + u" -movflags +faststart"_qs));
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    const qint64 media = file.readAll().indexOf("mdat");
    ASSERT_GT(media, 0);
    ASSERT_TRUE(file.resize(media + 4));
    file.close();
    AudioReader reader(file.fileName());
    reader.start(speech);
    EXPECT_TRUE(reader.read().empty());
    EXPECT_EQ(reader.status(), AudioReader::Status::Failed);
    EXPECT_EQ(reader.errorDescription(),
              u"The file “a.m4a” couldn’t be opened because it isn’t in the correct format."_qs);
    EXPECT_TRUE(reader.read().empty());
}

TEST(AudioReader, anInterruptionEndsTheReadingAsFailed)
{
    MediaFolder folder;
    std::atomic<bool> interrupt = false;
    AudioReader reader(
        folder.make(u"a.wav"_qs, u"-f lavfi -i sine=frequency=1000:sample_rate=44100:duration=600 -ac 2"_qs),
        &interrupt);
    reader.start(speech);
    EXPECT_FALSE(reader.read().empty());
    interrupt = true;
    EXPECT_LT(seconds(readAll(reader)), 60) << "what was decoded before may still come";
    EXPECT_EQ(reader.status(), AudioReader::Status::Failed);
    EXPECT_EQ(reader.errorDescription(), u"The file “a.wav” couldn’t be opened."_qs);
}

TEST(AudioReader, aReaderThatIsNotReadToTheEndMayGo)
{
    MediaFolder folder;
    AudioReader reader(folder.make(u"a.wav"_qs, u"-f lavfi -i sine=duration=600"_qs));
    reader.start(speech);
    EXPECT_FALSE(reader.read().empty());
}

/// A WAV file that plays as fast as its damaged header says.
QString makeWavOfRate(const MediaFolder &folder, quint32 rate)
{
    QFile file(folder.make(u"rate.wav"_qs, threeSeconds + u" -y"_qs));
    EXPECT_TRUE(file.open(QIODevice::ReadWrite));
    rate = qToLittleEndian(rate);
    EXPECT_TRUE(file.seek(24) && file.write(reinterpret_cast<const char *>(&rate), 4) == 4);
    return file.fileName();
}

TEST(AudioReader, refusesSampleRatesThatOnlyDamageExplains)
{
    MediaFolder folder;
    for (const quint32 rate : {1U, 999U, 12'288'001U, 402'697'284U}) {
        AudioReader reader(makeWavOfRate(folder, rate));
        reader.start(speech);
        EXPECT_TRUE(reader.read().empty()) << rate;
        EXPECT_EQ(reader.status(), AudioReader::Status::Failed) << rate;
    }
    EXPECT_NEAR(seconds(readAll(makeWavOfRate(folder, 1000))), 132.3, 0.1);
    EXPECT_NEAR(seconds(readAll(makeWavOfRate(folder, 12'288'000))), 0.01, 0.005);
}

/// Three seconds with a hole behind each of the first `holes` tenths of a second.
QString makeHoles(const MediaFolder &folder, int holes, int length)
{
    const QString shift = u"asetpts=PTS+%2/TB*min(%1\\,floor(T*10+0.001))"_qs.arg(holes).arg(length);
    return folder.make(u"holes%1.mkv"_qs.arg(length), u"-f lavfi -i sine=sample_rate=8000:samples_per_frame=800:"_qs
                                                          + u"duration=3 -af "_qs + shift + u" -c:a pcm_s16le"_qs);
}

TEST(AudioReader, takesHoursOfSilenceForDamage)
{
    MediaFolder folder;
    EXPECT_NEAR(seconds(readAll(makeHoles(folder, 1, 590))), 593, 0.2);
    EXPECT_NEAR(seconds(readAll(makeHoles(folder, 1, 610))), 3, 0.2) << "one hole of more than ten minutes";
    EXPECT_NEAR(seconds(readAll(makeHoles(folder, 9, 580))), 3483, 0.5) << "no more than an hour of them all";
}

TEST(AudioReader, putsSilenceInFrontAlsoWhereTheFileTellsNoDuration)
{
    MediaFolder folder;
    const std::vector<double> samples =
        readAll(folder.make(u"late.mkv"_qs, u"-f lavfi -i testsrc=size=64x48:rate=10:duration=4 -itsoffset 1.5 "_qs
                                                + threeSeconds + u" -c:v ffv1 -c:a flac -f matroska -live 1"_qs));
    EXPECT_NEAR(seconds(samples), 4.5, 0.06);
    EXPECT_LT(level(samples, 0, 1.4, 16000), 0.0001);
}

TEST(AudioReader, givesOneChannelToBothAtFullLevelAsFloatingPoint)
{
    MediaFolder folder;
    AudioReader reader(folder.make(u"a.wav"_qs, threeSeconds));
    reader.start({44100, 2, AudioFormat::SampleType::Float32});
    std::vector<float> samples;
    for (auto bytes = reader.read(); !bytes.empty(); bytes = reader.read()) {
        const std::size_t start = samples.size();
        samples.resize(start + bytes.size() / sizeof(float));
        std::memcpy(samples.data() + start, bytes.data(), bytes.size());
    }
    ASSERT_EQ(samples.size(), 2U * 3 * 44100);
    std::vector<double> left;
    for (std::size_t i = 0; i < samples.size(); i += 2) {
        ASSERT_EQ(samples[i], samples[i + 1]);
        left.push_back(samples[i]);
    }
    EXPECT_NEAR(toneAmplitude(left, 1000, 44100), 0.125, 0.0005);
}

TEST(AudioReader, cannotStartForAFormatThatIsNone)
{
    MediaFolder folder;
    AudioReader reader(folder.make(u"a.wav"_qs, threeSeconds));
    EXPECT_THROW(reader.start({0, 1, AudioFormat::SampleType::Int16}), Error);
}

} // namespace
