#include "audio/screen_audio_recorder.h"

#include "platform/media/media_duration.h"
#include "unit/recording/room_test.h"

#include <QFile>

#include <algorithm>
#include <cstring>

using namespace sorvanta;
using Clock = std::chrono::steady_clock;

namespace {

constexpr int rate = 44100;

/// The recorder with the sound server of this test.
class MeetingSound : public RoomTest {
protected:
    MeetingSound()
        : recorder(ScreenAudioRecorder::Surroundings::ofThisMachine())
    {
    }

    /// @return how many seconds the start took
    double start(bool includeMic)
    {
        bool hasReturned = false;
        const auto begin = Clock::now();
        recorder.startRecording(includeMic, [&] {
            started = Clock::now();
            hasReturned = true;
        });
        waitFor([&] { return hasReturned; });
        return secondsSince(begin);
    }
    /// @return how long the recording was on, in seconds
    double stop()
    {
        const double length = secondsSince(started);
        recorder.stopRecording();
        waitFor([this] { return !recorder.systemURL(); }, 30000);
        return length;
    }
    void wait(double seconds) { QTest::qWait(static_cast<int>(seconds * 1000)); }
    QString output() const { return recorder.outputURL().value_or(QString()); }
    QString error() const { return recorder.errorMessage().value_or(QString()); }

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
        return heardAmplitude(samples, frequency, from, to, rate);
    }
    /// Where a tone of that frequency sounds: the first and the last moment, in seconds.
    static std::pair<double, double> spanOf(const std::vector<double> &samples, double frequency)
    {
        constexpr double step = 0.01;
        std::pair<double, double> span = {-1, -1};
        for (double at = 0; (at + step) * rate < static_cast<double>(samples.size()); at += step) {
            if (amplitude(samples, frequency, at, at + step) < 0.1)
                continue;
            if (span.first < 0)
                span.first = at;
            span.second = at + step;
        }
        return span;
    }

    ScreenAudioRecorder recorder;
    Clock::time_point started;
};

TEST_F(MeetingSound, recordsWhatTheMachinePlaysAsItIs)
{
    const QString sound =
        folder.make(u"stereo.wav"_qs,
                    u"-f lavfi -i aevalsrc=0.25*sin(2*PI*440*t)|0.125*sin(2*PI*700*t):s=48000:d=30 -c:a pcm_s16le"_qs);
    play(sound, u"speaker"_qs);
    wait(0.5);
    EXPECT_LT(start(false), 2);
    EXPECT_EQ(error(), QString());
    wait(3);
    const double length = stop();
    EXPECT_NEAR(mediaDuration(output()), length, 0.05);
    EXPECT_EQ(describedFormat(output()), u"mov,mp4,m4a,3gp,3g2,mj2 aac 44100 2"_qs);
    const auto left = channel(output(), 0);
    const auto right = channel(output(), 1);
    EXPECT_NEAR(decibels(amplitude(left, 440, 0.3, length - 0.3) / 0.25), 0, 0.5);
    EXPECT_NEAR(decibels(amplitude(right, 700, 0.3, length - 0.3) / 0.125), 0, 0.5);
    EXPECT_LT(amplitude(left, 700, 0.3, length - 0.3), 0.003) << "the channels stay apart";
    EXPECT_LT(amplitude(right, 440, 0.3, length - 0.3), 0.003);
    // It sounds from the first moment to the last.
    EXPECT_GT(amplitude(left, 440, 0, 0.05), 0.15);
    EXPECT_GT(amplitude(left, 440, length - 0.06, length - 0.01), 0.15);
}

TEST_F(MeetingSound, standsAtItsMoment)
{
    start(false);
    const QString tone = makeTone(u"tone.wav"_qs, 1000, 0.5);
    SoundRecording heard;
    play(tone, u"speaker"_qs);
    waitFor([&] { return !soundSpans(heard.samples()).empty(); });
    const double latestBegin = secondsSince(started);
    wait(1);
    stop();
    const auto span = spanOf(channel(output(), 0), 1000);
    EXPECT_LT(span.first, latestBegin + 0.02);
    EXPECT_GT(span.first, latestBegin - 0.3);
    EXPECT_NEAR(span.second - span.first, 0.5, 0.03);
}

TEST_F(MeetingSound, mixesTheMicrophoneIn)
{
    play(makeTone(u"low.wav"_qs, 440, 30), u"speaker"_qs);
    play(makeTone(u"voice.wav"_qs, 1000, 30), u"room"_qs);
    wait(0.5);
    const double starting = start(true);
    EXPECT_LT(starting, 2);
    EXPECT_EQ(error(), QString());
    wait(3);
    const QString raw = output();
    const double length = stop();
    EXPECT_NE(output(), raw);
    EXPECT_EQ(error(), QString());
    EXPECT_NEAR(mediaDuration(output()), mediaDuration(raw), 0.001) << "as long as the system's file";
    // The system's sound began before the microphone was there.
    EXPECT_GT(mediaDuration(raw), length - 0.05);
    EXPECT_LT(mediaDuration(raw), length + starting + 0.05);
    for (int number = 0; number < 2; ++number) {
        const auto samples = channel(output(), number);
        EXPECT_NEAR(decibels(amplitude(samples, 440, 0.5, 2.5) / 0.25), 0, 0.5);
        EXPECT_NEAR(decibels(amplitude(samples, 1000, 0.5, 2.5) / 0.25), 0, 0.5);
    }
    EXPECT_LT(amplitude(channel(raw, 0), 1000, 0.5, 2.5), 0.003) << "the microphone is not in the raw file";
}

TEST_F(MeetingSound, leavesAPauseSilentAtItsPlace)
{
    play(makeTone(u"tone.wav"_qs, 1000, 30), u"speaker"_qs);
    wait(0.5);
    start(false);
    wait(1);
    const double paused = secondsSince(started);
    recorder.pauseRecording();
    wait(1.5);
    const double resumed = secondsSince(started);
    recorder.resumeRecording();
    wait(1);
    const double length = stop();
    EXPECT_NEAR(mediaDuration(output()), length, 0.05);
    const auto samples = channel(output(), 0);
    EXPECT_GT(amplitude(samples, 1000, 0.1, paused - 0.08), 0.2);
    EXPECT_LT(level(samples, paused + 0.03, resumed - 0.08, rate), 0.001);
    EXPECT_GT(amplitude(samples, 1000, resumed + 0.03, length - 0.05), 0.2);
}

TEST_F(MeetingSound, followsTheUserToAnotherOutput)
{
    tellServer(u"load-module module-null-sink sink_name=headset"_qs);
    play(makeTone(u"tone.wav"_qs, 600, 60), u"speaker"_qs);
    wait(0.5);
    start(false);
    wait(1.5);
    const double changed = secondsSince(started);
    // What plays on the old output is moved to the new one by the server.
    tellServer(u"set-default-sink headset"_qs);
    wait(3);
    const double length = stop();
    EXPECT_NEAR(mediaDuration(output()), length, 0.05);
    const auto samples = channel(output(), 0);
    EXPECT_NEAR(decibels(amplitude(samples, 600, 0.3, changed - 0.2) / 0.25), 0, 0.5);
    EXPECT_NEAR(decibels(amplitude(samples, 600, changed + 2, length - 0.2) / 0.25), 0, 0.5);
    EXPECT_EQ(error(), QString());
}

TEST_F(MeetingSound, goesOnWhenTheServerIsStartedAnew)
{
    play(makeTone(u"low.wav"_qs, 600, 60), u"speaker"_qs);
    wait(0.5);
    start(false);
    wait(1.5);
    const double killed = secondsSince(started);
    server.kill();
    wait(1);
    server.start();
    play(makeTone(u"high.wav"_qs, 1700, 60), u"speaker"_qs);
    wait(3);
    EXPECT_TRUE(recorder.isRecording());
    const double length = stop();
    EXPECT_NEAR(mediaDuration(output()), length, 0.05) << "the time without a server counts";
    const auto samples = channel(output(), 0);
    EXPECT_NEAR(decibels(amplitude(samples, 600, 0.3, killed - 0.2) / 0.25), 0, 0.5);
    EXPECT_LT(level(samples, killed + 0.2, killed + 0.9, rate), 0.001);
    EXPECT_NEAR(decibels(amplitude(samples, 1700, length - 1, length - 0.2) / 0.25), 0, 0.5);
}

TEST_F(MeetingSound, stopsInTimeWhenTheServerHangs)
{
    start(true);
    wait(1);
    server.suspend(true);
    wait(0.5);
    const double length = secondsSince(started);
    const auto begin = Clock::now();
    recorder.stopRecording();
    EXPECT_LT(secondsSince(begin), soon);
    server.suspend(false);
    waitFor([this] { return !recorder.systemURL(); });
    // The system's sound began before the microphone was there.
    EXPECT_GT(mediaDuration(output()), length - 0.05);
    EXPECT_LT(mediaDuration(output()), length + 1);
}

TEST_F(MeetingSound, saysThatThereIsNoServer)
{
    server.kill();
    EXPECT_LT(start(true), 2);
    EXPECT_EQ(error(), u"There is no sound server."_qs);
    EXPECT_FALSE(recorder.isRecording());
}

TEST_F(MeetingSound, saysThatTheServerHangs)
{
    server.suspend(true);
    EXPECT_LT(start(true), 2);
    server.suspend(false);
    EXPECT_EQ(error(), u"The sound server does not answer."_qs);
}

TEST_F(MeetingSound, takesARefusalForTheUsers)
{
    tellServer(u"load-module module-native-protocol-tcp listen=127.0.0.1 port=47134 auth-cookie="_qs
               + folder.path(u"other-cookie"_qs));
    const QByteArray address = qgetenv("PULSE_SERVER");
    qputenv("PULSE_SERVER", "tcp:127.0.0.1:47134");
    EXPECT_LT(start(true), 2);
    qputenv("PULSE_SERVER", address);
    EXPECT_TRUE(error().startsWith(u"Screen Recording permission is required to capture system audio."_qs))
        << error().toStdString();
}

TEST_F(MeetingSound, takesAMissingOutputForAMissingDisplay)
{
    tellServer(u"unload-module module-null-sink"_qs);
    EXPECT_LT(start(true), 2);
    EXPECT_EQ(error(), u"No display found to capture audio from."_qs);
}

TEST_F(MeetingSound, goesOnWithoutAMicrophone)
{
    tellServer(u"set-default-source speaker.monitor"_qs);
    EXPECT_LT(start(true), 2.5);
    EXPECT_TRUE(recorder.isRecording());
    EXPECT_EQ(error(), u"Microphone capture unavailable. Recording system audio only. Microphone permission is "
                       u"required to include your voice."_qs);
    wait(0.5);
    stop();
    EXPECT_NEAR(mediaDuration(output()), 0.5, 0.2);
}

TEST_F(MeetingSound, doesNotDrift)
{
    // A short tone at each end of a recording of twenty seconds.
    start(false);
    SoundRecording heard;
    const QString tone = makeTone(u"tone.wav"_qs, 1000, 0.3);
    play(tone, u"speaker"_qs);
    heard.hear(20);
    play(tone, u"speaker"_qs);
    heard.hear(1);
    stop();
    const auto spans = soundSpans(heard.samples());
    ASSERT_EQ(spans.size(), 2U);
    const auto samples = channel(output(), 0);
    const auto half = samples.begin() + static_cast<std::ptrdiff_t>(samples.size() / 2);
    const double first = spanOf(std::vector<double>(samples.begin(), half), 1000).first;
    const double second =
        spanOf(std::vector<double>(half, samples.end()), 1000).first + static_cast<double>(samples.size() / 2) / rate;
    EXPECT_NEAR(second - first, spans[1].begin - spans[0].begin, 0.02);
}

} // namespace
