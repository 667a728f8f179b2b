#include "unit/audio/listening_test.h"

using namespace sorvanta;

namespace {

class AudioPlayerSound : public ListeningTest { };

TEST_F(AudioPlayerSound, playsTheWholeFileInOrderAndTellsTheEnd)
{
    const QString path = makeNoise(u"a.wav"_qs, 3);
    const SoundReference file(path);
    SoundRecording recording;
    const auto player = open(path);
    EXPECT_NEAR(player->duration(), 3, 0.001);
    EXPECT_EQ(player->position(), 0);
    EXPECT_FALSE(player->isPlaying());
    player->play();
    EXPECT_TRUE(player->isPlaying());
    waitFor([this] { return ends == 1; });
    EXPECT_FALSE(player->isPlaying());
    EXPECT_EQ(player->position(), 0) << "it is rewound";
    recording.hear(0.5);

    const auto &heard = recording.samples();
    const auto spans = soundSpans(heard);
    ASSERT_FALSE(spans.empty());
    EXPECT_NEAR(file.beginOf(heard, spans.front()).value_or(-1), 0, 0.03);
    EXPECT_NEAR(file.endOf(heard, spans.back()).value_or(-1), 3, 0.03) << "also the last piece is heard";
    double latest = -1;
    for (double at = spans.front().begin + 0.02; at + 0.12 < spans.back().end; at += 0.1) {
        if (const auto time = file.timeOf(heard, at)) {
            EXPECT_GT(*time, latest);
            latest = *time;
        }
    }
    EXPECT_GT(latest, 2.7);
}

TEST_F(AudioPlayerSound, keepsTheTone)
{
    const QString path = folder.make(u"tones.wav"_qs, u"-f lavfi -i sine=f=440:d=1 -f lavfi -i sine=f=880:d=1 "
                                                      "-filter_complex concat=n=2:v=0:a=1"_qs);
    SoundRecording recording;
    const auto player = open(path);
    player->play();
    waitFor([this] { return ends == 1; });
    recording.hear(0.3);
    const auto &heard = recording.samples();
    const auto spans = soundSpans(heard);
    ASSERT_FALSE(spans.empty());
    const auto piece = [&heard](double at) {
        const auto first = heard.begin() + static_cast<std::ptrdiff_t>(at * SoundRecording::sampleRate);
        return std::vector<double>(first, first + 4000);
    };
    const auto first = piece(spans.front().begin + 0.2);
    const auto second = piece(spans.back().end - 0.7);
    const auto strength = [](const std::vector<double> &samples, double frequency) {
        return toneAmplitude(samples, frequency, SoundRecording::sampleRate);
    };
    EXPECT_GT(strength(first, 440), 50 * strength(first, 880));
    EXPECT_GT(strength(second, 880), 50 * strength(second, 440));
    EXPECT_NEAR(strength(first, 440), 0.125, 0.01) << "and its loudness";
}

TEST_F(AudioPlayerSound, isSilentInAPauseAndGoesOnWhereItStood)
{
    const QString path = makeNoise(u"a.wav"_qs, 20);
    const SoundReference file(path);
    SoundRecording recording;
    const auto player = open(path);
    player->play();
    hearSpans(recording, 1, 1);
    player->pause();
    EXPECT_FALSE(player->isPlaying());
    recording.hear(0.5);
    const double position = player->position();
    const std::size_t silenceBegin = recording.samples().size();
    recording.hear(1);
    EXPECT_EQ(player->position(), position);
    const auto &silent = recording.samples();
    EXPECT_EQ(level(silent, static_cast<double>(silenceBegin) / SoundRecording::sampleRate, recording.seconds(),
                    SoundRecording::sampleRate),
              0);
    const auto before = soundSpans(silent);
    player->play();
    hearSpans(recording, before.size() + 1, 0.8);

    const auto &heard = recording.samples();
    const auto spans = soundSpans(heard);
    const double left = file.endOf(heard, spans[before.size() - 1]).value_or(-1);
    EXPECT_NEAR(position, left, 0.2) << "the position that was told is the one that was heard";
    EXPECT_NEAR(file.beginOf(heard, spans[before.size()]).value_or(-1), left, 0.06);
}

TEST_F(AudioPlayerSound, tellsThePositionThatIsHeard)
{
    const QString path = makeNoise(u"a.wav"_qs, 20);
    const SoundReference file(path);
    SoundRecording recording;
    const auto player = open(path);
    player->play();
    hearSpans(recording, 1, 1.5);
    const double position = player->position();
    const double at = recording.seconds() - 0.15;
    const auto heard = file.timeOf(recording.samples(), at);
    ASSERT_TRUE(heard);
    EXPECT_NEAR(position, *heard + 0.15, 0.3);
}

TEST_F(AudioPlayerSound, seeksWhilePlaying)
{
    const QString path = makeNoise(u"a.wav"_qs, 20);
    const SoundReference file(path);
    SoundRecording recording;
    const auto player = open(path);
    player->play();
    hearSpans(recording, 1, 0.5);
    player->seek(12.345, {});
    EXPECT_EQ(player->position(), 12.345) << "at once";
    waitFor([&] { return player->position() > 13; });
    player->pause();
    recording.hear(0.3);

    const auto &heard = recording.samples();
    const auto spans = soundSpans(heard);
    double firstBehind = -1;
    double latestBefore = -1;
    for (double at = spans.front().begin; at + 0.1 < spans.back().end; at += 0.01) {
        const auto time = file.timeOf(heard, at);
        if (!time)
            continue;
        if (*time < 10) {
            EXPECT_EQ(firstBehind, -1) << "nothing of the old place is heard any more";
            latestBefore = *time;
        } else if (firstBehind < 0) {
            firstBehind = *time;
        }
    }
    EXPECT_GT(latestBefore, 0.3);
    EXPECT_NEAR(firstBehind, 12.345, 0.03);
}

TEST_F(AudioPlayerSound, standsAtTheLastOfManySeeks)
{
    const QString path = makeNoise(u"a.wav"_qs, 20);
    const SoundReference file(path);
    SoundRecording recording;
    const auto player = open(path);
    int earlier = 0;
    for (int i = 0; i < 40; ++i)
        player->seek(0.25 * i, [&earlier] { ++earlier; });
    seekAndWait(*player, 7.5);
    EXPECT_LT(earlier, 40);
    EXPECT_EQ(player->position(), 7.5);
    player->play();
    hearSpans(recording, 1, 0.5);
    EXPECT_NEAR(file.beginOf(recording.samples(), soundSpans(recording.samples()).front()).value_or(-1), 7.5, 0.03);
}

TEST_F(AudioPlayerSound, playsFromTheStartAgainAfterTheEnd)
{
    const QString path = makeNoise(u"a.wav"_qs, 1.5);
    const SoundReference file(path);
    SoundRecording recording;
    const auto player = open(path);
    player->play();
    waitFor([this] { return ends == 1; });
    recording.hear(0.5);
    const auto before = soundSpans(recording.samples()).size();
    player->play();
    waitFor([this] { return ends == 2; });
    recording.hear(0.5);
    const auto &heard = recording.samples();
    const auto spans = soundSpans(heard);
    ASSERT_GT(spans.size(), before);
    EXPECT_NEAR(file.beginOf(heard, spans[before]).value_or(-1), 0, 0.03);
    EXPECT_NEAR(file.endOf(heard, spans.back()).value_or(-1), 1.5, 0.03);
}

TEST_F(AudioPlayerSound, endsAtOnceWhenItPlaysOnFromTheVeryEnd)
{
    const auto player = open(makeNoise(u"a.wav"_qs, 2));
    seekAndWait(*player, 2);
    QTest::qWait(300);
    EXPECT_EQ(ends, 0) << "a paused player does not end";
    EXPECT_NEAR(player->position(), 2, 0.01);
    player->play();
    waitFor([this] { return ends == 1; });
    EXPECT_EQ(player->position(), 0);

    seekAndWait(*player, 2);
    player->play();
    waitFor([this] { return ends == 2; });
}

TEST_F(AudioPlayerSound, mayBeDestroyedInEachOfItsEvents)
{
    const QString path = makeNoise(u"a.wav"_qs, 1);
    std::unique_ptr<AudioPlayer> player;
    bool hasEnded = false;
    player = openAudioPlayer(path, {.ended = [&] {
                                 player.reset();
                                 hasEnded = true;
                             }});
    player->play();
    waitFor([&hasEnded] { return hasEnded; });

    bool hasSought = false;
    player = openAudioPlayer(path, {});
    player->seek(0.5, [&] {
        player.reset();
        hasSought = true;
    });
    waitFor([&hasSought] { return hasSought; });
}

// Exact seeks, whatever the file is.

struct Format {
    const char *testName;
    const char16_t *name;
    const char16_t *encoding;
    double doubt = 0.1; ///< of the duration, in seconds
};

class AudioPlayerFormat : public ListeningTest, public testing::WithParamInterface<Format> { };

INSTANTIATE_TEST_SUITE_P(
    Formats, AudioPlayerFormat,
    testing::Values(Format{"wav", u"a.wav", u"-c:a pcm_s16le"}, Format{"flac", u"a.flac", u"-c:a flac"},
                    Format{"mp3", u"a.mp3", u"-b:a 128k"}, Format{"mp3OfVariableRate", u"a.mp3", u"-q:a 4"},
                    Format{"mp3WithoutIndex", u"a.mp3", u"-q:a 4 -write_xing 0", 1.5},
                    Format{"m4a", u"a.m4a", u"-b:a 128k"}, Format{"opus", u"a.opus", u"-b:a 96k"},
                    Format{"vorbis", u"a.ogg", u"-c:a libvorbis"}, Format{"aiff", u"a.aiff", u"-vn"},
                    Format{"caf", u"a.caf", u"-c:a pcm_s16le"},
                    Format{"mp4WithPicture", u"a.mp4",
                           u"-f lavfi -i testsrc=d=20:s=160x120:r=10 -c:v libx264 -g 200 -c:a aac -b:a 128k"},
                    Format{"matroskaWithPicture", u"a.mkv",
                           u"-f lavfi -i testsrc=d=20:s=160x120:r=10 -c:v libx264 -g 200 -c:a libopus"}),
    [](const auto &format) { return std::string(format.param.testName); });

TEST_P(AudioPlayerFormat, isHeardFromTheAskedPositionOn)
{
    const QString path = makeNoise(QString::fromUtf16(GetParam().name), 20, QString::fromUtf16(GetParam().encoding));
    const SoundReference file(path);
    SoundRecording recording;
    const auto player = open(path);
    EXPECT_NEAR(player->duration(), 20, GetParam().doubt);
    for (const double asked : {13.217, 0.05, 4.4}) {
        const auto before = soundSpans(recording.samples()).size();
        seekAndWait(*player, asked);
        EXPECT_EQ(player->position(), asked);
        player->play();
        hearSpans(recording, before + 1, 0.4);
        player->pause();
        recording.hear(0.4);
        const auto &heard = recording.samples();
        EXPECT_NEAR(file.beginOf(heard, soundSpans(heard)[before]).value_or(-1), asked, 0.03);
    }
    EXPECT_EQ(ends, 0);
    EXPECT_FALSE(failure || openingFailure);
}

} // namespace
