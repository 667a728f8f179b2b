#include "platform/error.h"
#include "platform/media/audio_writer.h"
#include "platform/media/media_duration.h"
#include "platform/media/ordinary_file.h"
#include "support/media_files.h"
#include "support/printing.h"

#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <numbers>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

using namespace sorvanta;

namespace {

/// The file that was flushed to the disk last, and whether the one that was given another name last was this one.
ino_t flushedFile = 0;
bool wasFlushed = false;

} // namespace

// In the place of the C library's:

extern "C" int fsync(int file)
{
    struct stat status = {};
    if (::fstat(file, &status) == 0)
        flushedFile = status.st_ino;
    return static_cast<int>(::syscall(SYS_fsync, file));
}

extern "C" int rename(const char *source, const char *destination) noexcept
{
    struct stat status = {};
    wasFlushed = ::stat(source, &status) == 0 && status.st_ino == flushedFile;
    return ::renameat(AT_FDCWD, source, AT_FDCWD, destination);
}

namespace {

constexpr int rate = 44100;

AudioFileSettings settings()
{
    return {AudioFileSettings::Container::M4a, rate, 2, 128000, AudioFileSettings::AacSearch::Fast, true};
}

/// A second of a tone of this frequency.
std::vector<float> second(double frequency)
{
    std::vector<float> samples;
    for (int i = 0; i < rate; ++i) {
        const auto value = static_cast<float>(0.25 * std::sin(2 * std::numbers::pi * frequency * i / rate));
        samples.insert(samples.end(), 2, value);
    }
    return samples;
}

void append(AudioWriter &writer, double frequency, std::size_t frames = rate)
{
    const std::vector<float> samples = second(frequency);
    EXPECT_TRUE(writer.append(std::as_bytes(std::span(samples).first(2 * frames))));
}

double toneAt(const std::vector<double> &samples, double frequency, double seconds)
{
    const auto from = samples.begin() + static_cast<std::ptrdiff_t>((seconds + 0.2) * rate);
    return toneAmplitude(std::vector<double>(from, from + rate / 2), frequency, rate);
}

TEST(ReadableWhileWritten, holdsAllButTheLastSecondAtAnyMoment)
{
    MediaFolder folder;
    AudioWriter writer(folder.path(u"a.m4a"_qs), settings());
    for (int i = 0; i < 6; ++i) {
        append(writer, 500 + 100 * i);
        if (i < 1)
            continue;
        QFile::copy(folder.path(u"a.m4a"_qs), folder.path(u"copy.m4a"_qs));
        const std::vector<double> samples = samplesOf(folder.path(u"copy.m4a"_qs));
        EXPECT_GE(static_cast<double>(samples.size()) / rate, i - 0.1) << i;
        EXPECT_NEAR(toneAt(samples, 500, 0), 0.25, 0.01);
        QFile::remove(folder.path(u"copy.m4a"_qs));
    }
}

TEST(ReadableWhileWritten, isWholeOnceFinished)
{
    MediaFolder folder;
    AudioWriter writer(folder.path(u"a.m4a"_qs), settings());
    for (int i = 0; i < 3; ++i)
        append(writer, 500 + 100 * i);
    EXPECT_TRUE(writer.finish());
    const std::vector<double> samples = samplesOf(folder.path(u"a.m4a"_qs));
    EXPECT_NEAR(static_cast<double>(samples.size()), 3 * rate, 2048);
    for (int i = 0; i < 3; ++i)
        EXPECT_NEAR(toneAt(samples, 500 + 100 * i, i), 0.25, 0.01);
}

TEST(MakeOrdinary, keepsTheSoundAndMakesTheLengthExact)
{
    MediaFolder folder;
    const QString path = folder.path(u"a.m4a"_qs);
    AudioWriter writer(path, settings());
    for (int i = 0; i < 3; ++i)
        append(writer, 500 + 100 * i);
    append(writer, 800, 12345);
    EXPECT_TRUE(writer.finish());
    makeOrdinary(path);
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_FALSE(file.readAll().contains("moof"));
    EXPECT_EQ(describedFormat(path), u"mov,mp4,m4a,3gp,3g2,mj2 aac 44100 2"_qs);
    EXPECT_NEAR(mediaDuration(path) * rate, 3 * rate + 12345, 0.1);
    const std::vector<double> samples = samplesOf(path);
    for (int i = 0; i < 3; ++i)
        EXPECT_NEAR(toneAt(samples, 500 + 100 * i, i), 0.25, 0.01);
    EXPECT_EQ(folder.names(), QStringList{u"a.m4a"_qs});
    EXPECT_EQ(QFileInfo(path).permissions() & 0x0FF, QFile::Permissions());
}

TEST(MakeOrdinary, hasTheNewFormOnTheDiskBeforeTheOldOneGoes)
{
    MediaFolder folder;
    const QString path = folder.path(u"a.m4a"_qs);
    AudioWriter writer(path, settings());
    append(writer, 500);
    EXPECT_TRUE(writer.finish());
    makeOrdinary(path);
    EXPECT_TRUE(wasFlushed);
}

TEST(MakeOrdinary, leavesAFileThatItCannotReadAsItWas)
{
    MediaFolder folder;
    const QString path = folder.write(u"a.m4a"_qs, "no media");
    EXPECT_THROW(makeOrdinary(path), Error);
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), QByteArray("no media"));
    EXPECT_EQ(folder.names(), QStringList{u"a.m4a"_qs});
}

TEST(AppendSilence, takesTheTimeThatItLasts)
{
    MediaFolder folder;
    const QString path = folder.path(u"a.m4a"_qs);
    AudioWriter writer(path, settings());
    append(writer, 500);
    EXPECT_TRUE(writer.appendSilence(5 * rate + 333));
    append(writer, 700);
    EXPECT_TRUE(writer.finish());
    makeOrdinary(path);
    EXPECT_NEAR(mediaDuration(path) * rate, 7 * rate + 333, 0.1);
    const std::vector<double> samples = samplesOf(path);
    EXPECT_NEAR(toneAt(samples, 500, 0), 0.25, 0.01);
    EXPECT_LT(level(samples, 1.1, 5.9, rate), 1e-5);
    EXPECT_NEAR(toneAt(samples, 700, 6), 0.25, 0.01);
    const double before = level(samples, 6 + 333.0 / rate - 0.03, 6 + 333.0 / rate - 0.001, rate);
    EXPECT_LT(before, 0.02) << "the sound comes back on the sample";
    EXPECT_GT(level(samples, 6 + 333.0 / rate + 0.001, 6 + 333.0 / rate + 0.03, rate), 0.1);
}

class ShortSilence : public testing::TestWithParam<int> { };

TEST_P(ShortSilence, isKeptToTheFrame)
{
    MediaFolder folder;
    const QString path = folder.path(u"a.m4a"_qs);
    AudioWriter writer(path, settings());
    append(writer, 500, 1500);
    EXPECT_TRUE(writer.appendSilence(GetParam()));
    append(writer, 500, 1500);
    EXPECT_TRUE(writer.finish());
    makeOrdinary(path);
    EXPECT_NEAR(mediaDuration(path) * rate, 3000 + GetParam(), 0.1);
}

INSTANTIATE_TEST_SUITE_P(AroundWhereItIsRepeated, ShortSilence,
                         testing::Values(0, 1, 548, 549, 8192, 548 + 8192, 549 + 8192, 548 + 9216, 20000));

TEST(AppendSilence, ofHoursCostsLessThanEncodingMinutes)
{
    MediaFolder folder;
    const QString path = folder.path(u"a.m4a"_qs);
    AudioWriter writer(path, settings());
    QElapsedTimer timer;
    timer.start();
    constexpr int minute = 60;
    for (int i = 0; i < minute; ++i)
        append(writer, 500);
    const qint64 ofAMinute = timer.nsecsElapsed();
    timer.start();
    EXPECT_TRUE(writer.appendSilence(3 * 3600LL * rate));
    EXPECT_LT(timer.nsecsElapsed(), 45 * ofAMinute) << "a quarter of what encoding it would take";
    EXPECT_TRUE(writer.finish());
    EXPECT_NEAR(mediaDuration(path), 3 * 3600 + minute, 0.1);
}

} // namespace
