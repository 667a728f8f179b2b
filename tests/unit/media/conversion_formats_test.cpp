#include "core/audio_preparer.h"

#include "support/media_files.h"
#include "support/printing.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace sorvanta;

namespace {

constexpr double sampleRate = 16000;
const QString tone = u"-f lavfi -i aevalsrc=0.25*sin(2*PI*1000*t):s=48000:d=3"_qs;
const QString stereo = u"-f lavfi -i aevalsrc=0.25*sin(2*PI*1000*t)|0.25*sin(2*PI*1000*t):s=44100:d=3"_qs;
const QString picture = u" -f lavfi -i testsrc=size=64x48:rate=5:duration=3"_qs;

struct Source {
    const char *name;
    QString arguments;
    /// The time that one frame of the encoding takes: so much may be missing or too much.
    double frame = 1 / sampleRate;
};

void PrintTo(const Source &source, std::ostream *out)
{
    *out << source.name << ' ' << source.arguments.toStdString();
}

/// How loud the tone is in the source, as another program decodes it: some encoders change the level a little.
double sourceAmplitude(const QString &path)
{
    const std::vector<double> samples = samplesOf(path);
    const QByteArray rates =
        outputOf(u"ffprobe"_qs, {u"-v"_qs, u"error"_qs, u"-of"_qs, u"csv=p=0"_qs, u"-select_streams"_qs, u"a:0"_qs,
                                 u"-show_entries"_qs, u"stream=sample_rate"_qs, path});
    // Some containers list a track more than once.
    const double rate = rates.simplified().replace(',', ' ').split(' ').first().toDouble();
    const auto second = static_cast<std::ptrdiff_t>(rate);
    const double found = toneAmplitude({samples.begin() + second, samples.begin() + 2 * second}, 1000, rate);
    EXPECT_NEAR(decibels(found / 0.25), 0, 0.3);
    return found;
}

/// Every source holds three seconds of a tone of 1 kHz.
class ConversionFormats : public testing::TestWithParam<Source> { };

TEST_P(ConversionFormats, becomeMonoWavOfTheSameLengthLevelAndTone)
{
    MediaFolder folder;
    const QString source = folder.make(QString::fromUtf8(GetParam().name), GetParam().arguments);
    const std::optional<QString> result = AudioPreparer(TemporaryFiles()).convertToWav(source, u"test"_qs);
    ASSERT_TRUE(result);
    EXPECT_EQ(describedFormat(*result), u"wav pcm_s16le 16000 1"_qs);
    EXPECT_EQ(outputOf(u"soxi"_qs, {u"-b"_qs, *result}).trimmed(), "16");

    std::vector<double> samples = samplesOf(*result);
    EXPECT_NEAR(static_cast<double>(samples.size()) / sampleRate, 3, GetParam().frame);
    ASSERT_GT(samples.size(), 32000U);
    const std::vector<double> middle(samples.begin() + 8000, samples.begin() + 24000);
    const double found = toneAmplitude(middle, 1000, sampleRate);
    EXPECT_NEAR(decibels(found / sourceAmplitude(source)), 0, 0.1);
    const double rest = level(middle, 0, 1, sampleRate) / (found / std::sqrt(2.0));
    EXPECT_NEAR(decibels(rest), 0, 0.05) << "there is something else than the tone";
}

INSTANTIATE_TEST_SUITE_P(
    Wav, ConversionFormats,
    testing::Values(Source{"8bit.wav", tone + u" -c:a pcm_u8"_qs}, Source{"16bit.wav", tone + u" -c:a pcm_s16le"_qs},
                    Source{"24bit.wav", tone + u" -c:a pcm_s24le"_qs},
                    Source{"32bit.wav", tone + u" -c:a pcm_s32le"_qs},
                    Source{"float.wav", tone + u" -c:a pcm_f32le"_qs},
                    Source{"double.wav", tone + u" -c:a pcm_f64le"_qs},
                    Source{"8k.wav", tone + u" -ar 8000"_qs, 1.0 / 8000},
                    Source{"11k.wav", tone + u" -ar 11025"_qs, 1.0 / 11025}, Source{"16k.wav", tone + u" -ar 16000"_qs},
                    Source{"22k.wav", tone + u" -ar 22050"_qs}, Source{"44k.wav", tone + u" -ar 44100"_qs},
                    Source{"96k.wav", tone + u" -ar 96000"_qs}, Source{"192k.wav", tone + u" -ar 192000"_qs}));

QString channels(int count)
{
    return u"-f lavfi -i aevalsrc=0.25*sin(2*PI*1000*t)"_qs + QString(u"|0.25*sin(2*PI*1000*t)"_qs).repeated(count - 1)
           + u":s=48000:d=3"_qs;
}

INSTANTIATE_TEST_SUITE_P(Channels, ConversionFormats,
                         testing::Values(Source{"1.wav", channels(1)}, Source{"2.wav", channels(2)},
                                         Source{"3.wav", channels(3)}, Source{"4.wav", channels(4)},
                                         Source{"5.wav", channels(5)}, Source{"6.wav", channels(6)},
                                         Source{"7.wav", channels(7)}, Source{"8.wav", channels(8)}));

INSTANTIATE_TEST_SUITE_P(
    Encodings, ConversionFormats,
    testing::Values(Source{"a.mp3", stereo + u" -b:a 192k"_qs, 1152.0 / 44100},
                    Source{"a.m4a", stereo + u" -c:a aac -b:a 192k"_qs, 1024.0 / 44100}, Source{"a.flac", stereo},
                    Source{"a.ogg", stereo + u" -c:a libvorbis -q:a 7"_qs, 1024.0 / 44100},
                    Source{"a.opus", tone + u" -c:a libopus -b:a 128k"_qs, 0.02}, Source{"a.aiff", stereo},
                    Source{"a.caf", stereo}, Source{"a.wma", stereo + u" -b:a 192k"_qs, 2048.0 / 44100 * 2},
                    Source{"a.aac", stereo + u" -b:a 192k"_qs, 1024.0 / 44100 * 2}, Source{"a.au", stereo},
                    Source{"a.wv", stereo}, Source{"nameless", stereo + u" -f wav"_qs}));

INSTANTIATE_TEST_SUITE_P(
    Videos, ConversionFormats,
    testing::Values(Source{"a.mp4", stereo + picture + u" -c:v libx264 -c:a aac -b:a 192k"_qs, 1024.0 / 44100},
                    Source{"fragmented.mp4",
                           stereo + picture
                               + u" -c:v libx264 -c:a aac -b:a 192k -bf 0 -movflags frag_keyframe+empty_moov"_qs,
                           1024.0 / 44100 * 2},
                    Source{"a.mov", stereo + picture + u" -c:v mpeg4 -c:a pcm_s16le"_qs},
                    Source{"a.mkv", stereo + picture + u" -c:v libx264 -c:a flac"_qs, 0.002},
                    Source{"a.webm", tone + picture + u" -c:v libvpx -c:a libopus -b:a 128k"_qs, 0.02},
                    Source{"a.avi", stereo + picture + u" -c:v mpeg4 -c:a mp3 -b:a 192k"_qs, 1152.0 / 44100 * 2},
                    Source{"a.ts", stereo + picture + u" -c:v mpeg2video -c:a aac -b:a 192k"_qs, 0.1}));

} // namespace
