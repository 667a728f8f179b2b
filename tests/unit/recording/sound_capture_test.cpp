#include "unit/recording/room_test.h"

#include <atomic>
#include <cmath>
#include <cstring>
#include <mutex>

#include <sys/time.h>

using namespace sorvanta;

namespace {

/// How far somebody has set the clock of the day ahead.
std::atomic<time_t> secondsAhead = 0;

} // namespace

/// In the place of the C library's, also for the library of the sound server.
extern "C" int gettimeofday(timeval *time, void *) noexcept
{
    timespec now = {};
    clock_gettime(CLOCK_REALTIME, &now);
    *time = {now.tv_sec + secondsAhead, now.tv_nsec / 1000};
    return 0;
}

namespace {

using Clock = std::chrono::steady_clock;

/// What a capture hears, kept.
class Listener {
public:
    Listener(SoundSource source, const AudioFormat &format)
        : m_capture(source, format, QStringLiteral("test capture"),
                    {.opened = [this] { isOpen = true; },
                     .failedToOpen = [this](const Error &error) { failure = error; },
                     .interrupted = [this](const Error &error) { interruption = error; },
                     .resumed = [this] { isResumed = true; }})
    {
        m_capture.start([this, format](const SoundBuffer &buffer) { take(buffer, format); });
    }

    /// The samples of the last `seconds` of one channel, from -1 to 1.
    std::vector<double> latest(double seconds, const AudioFormat &format, int channel = 0)
    {
        const std::lock_guard lock(m_mutex);
        const auto channels = static_cast<std::size_t>(format.channels);
        const auto wanted = static_cast<std::size_t>(seconds * format.sampleRate);
        const std::size_t count = m_samples.size() / channels;
        std::vector<double> samples;
        for (std::size_t i = count - std::min(count, wanted); i < count; ++i)
            samples.push_back(m_samples[i * channels + static_cast<std::size_t>(channel)]);
        return samples;
    }

    std::size_t breaks()
    {
        const std::lock_guard lock(m_mutex);
        return m_breaks;
    }
    SoundTime end()
    {
        const std::lock_guard lock(m_mutex);
        return m_end;
    }

    bool isOpen = false;
    bool isResumed = false;
    std::optional<Error> failure;
    std::optional<Error> interruption;

private:
    void take(const SoundBuffer &buffer, const AudioFormat &format)
    {
        const std::lock_guard lock(m_mutex);
        const bool isShort = format.sampleType == AudioFormat::SampleType::Int16;
        const std::size_t size = isShort ? sizeof(qint16) : sizeof(float);
        for (std::size_t at = 0; at < buffer.frames.size(); at += size) {
            qint16 whole = 0;
            float fraction = 0;
            if (isShort)
                std::memcpy(&whole, buffer.frames.data() + at, size);
            else
                std::memcpy(&fraction, buffer.frames.data() + at, size);
            m_samples.push_back(isShort ? whole / 32768.0 : static_cast<double>(fraction));
        }
        m_breaks += buffer.isContinuous ? 0 : 1;
        m_end = buffer.time
                + soundDuration(static_cast<qint64>(buffer.frames.size()) / format.bytesPerFrame(), format.sampleRate);
    }

    std::mutex m_mutex;
    std::vector<double> m_samples;
    std::size_t m_breaks = 0;
    SoundTime m_end;
    SoundCapture m_capture;
};

class SoundCaptureTest : public RoomTest {
protected:
    static void open(Listener &listener)
    {
        waitFor([&listener] { return listener.isOpen; });
    }
    /// Waits until the tone is what is heard.
    static void hear(Listener &listener, const AudioFormat &format, double frequency, int channel = 0)
    {
        waitFor([&] {
            const auto heard = listener.latest(0.2, format, channel);
            return heard.size() > 1000 && toneAmplitude(heard, frequency, format.sampleRate) > 0.2;
        });
    }
    /// How a capture fails that should not open, and within how many seconds.
    static std::pair<std::optional<Error>, double> failureToOpen(SoundSource source)
    {
        const auto begin = Clock::now();
        Listener listener(source, voice);
        waitFor([&listener] { return listener.failure || listener.isOpen; });
        return {listener.failure, secondsSince(begin)};
    }
};

constexpr AudioFormat music = {44100, 2, AudioFormat::SampleType::Float32};

TEST_F(SoundCaptureTest, hearsWhatTheMachinePlaysInTheFormatThatWasAskedFor)
{
    Listener listener(SoundSource::SystemOutput, music);
    open(listener);
    play(makeTone(u"tone.wav"_qs, 1000, 20, 2), u"speaker"_qs);
    hear(listener, music, 1000);
    hear(listener, music, 1000, 1);
    const auto heard = listener.latest(0.1, music, 1);
    EXPECT_NEAR(decibels(toneAmplitude(heard, 1000, 44100)), decibels(0.25), 0.5);
    EXPECT_FALSE(listener.interruption);
}

TEST_F(SoundCaptureTest, hearsNothingOfTheOtherSource)
{
    Listener output(SoundSource::SystemOutput, voice);
    Listener microphone(SoundSource::Microphone, voice);
    open(output);
    open(microphone);
    play(makeTone(u"tone.wav"_qs, 1000, 20));
    hear(microphone, voice, 1000);
    EXPECT_LT(toneAmplitude(output.latest(0.2, voice), 1000, 16000), 0.001);
}

TEST_F(SoundCaptureTest, tellsWhenSoundWasHeardWithoutABreak)
{
    Listener listener(SoundSource::Microphone, voice);
    waitFor([&listener] { return listener.end() != SoundTime(); });
    QTest::qWait(200);
    const std::size_t breaks = listener.breaks();
    const SoundTime begin = listener.end();
    QTest::qWait(1500);
    EXPECT_EQ(listener.breaks(), breaks);
    EXPECT_NEAR(secondsSince(listener.end()), 0.02, 0.05) << "the latest sound is new";
    EXPECT_NEAR(std::chrono::duration<double>(listener.end() - begin).count(), 1.5, 0.1);
}

TEST_F(SoundCaptureTest, goesOnWithoutABreakWhenTheClockOfTheDayIsSet)
{
    Listener listener(SoundSource::Microphone, voice);
    open(listener);
    QTest::qWait(1000);
    const std::size_t breaks = listener.breaks();
    for (int i = 0; i < 4; ++i) {
        ++secondsAhead; // at another distance each time from when the server tells its own
        QTest::qWait(400);
    }
    EXPECT_EQ(listener.breaks(), breaks);
}

TEST_F(SoundCaptureTest, followsTheUserToAnotherMicrophone)
{
    tellServer(u"load-module module-null-sink sink_name=headset"_qs);
    Listener listener(SoundSource::Microphone, voice);
    open(listener);
    play(makeTone(u"low.wav"_qs, 600, 60));
    play(makeTone(u"high.wav"_qs, 1700, 60), u"headset"_qs);
    hear(listener, voice, 600);
    tellServer(u"set-default-source headset.monitor"_qs);
    hear(listener, voice, 1700);
    EXPECT_LT(toneAmplitude(listener.latest(0.1, voice), 600, 16000), 0.01);
    tellServer(u"set-default-source room.monitor"_qs);
    hear(listener, voice, 600);
    EXPECT_FALSE(listener.failure);
}

TEST_F(SoundCaptureTest, followsTheUserToAnotherOutput)
{
    tellServer(u"load-module module-null-sink sink_name=headset"_qs);
    Listener listener(SoundSource::SystemOutput, voice);
    open(listener);
    play(makeTone(u"low.wav"_qs, 600, 60), u"speaker"_qs);
    hear(listener, voice, 600);
    silence();
    tellServer(u"set-default-sink headset"_qs);
    play(makeTone(u"high.wav"_qs, 1700, 60), u"headset"_qs);
    hear(listener, voice, 1700);
    play(makeTone(u"other.wav"_qs, 900, 60), u"speaker"_qs);
    QTest::qWait(1500);
    EXPECT_LT(toneAmplitude(listener.latest(0.1, voice), 900, 16000), 0.01) << "and leaves the first one";
    EXPECT_FALSE(listener.failure);
}

TEST_F(SoundCaptureTest, goesOnWhenItsDeviceIsUnplugged)
{
    const QByteArray module =
        outputOf(u"pactl"_qs, {u"load-module"_qs, u"module-null-sink"_qs, u"sink_name=headset"_qs});
    tellServer(u"set-default-sink headset"_qs);
    tellServer(u"set-default-source headset.monitor"_qs);
    Listener output(SoundSource::SystemOutput, voice);
    open(output);
    play(makeTone(u"voice.wav"_qs, 600, 60), u"room"_qs);
    play(makeTone(u"music.wav"_qs, 1700, 60), u"speaker"_qs);
    tellServer(u"set-default-source room.monitor"_qs);
    Listener microphone(SoundSource::Microphone, voice);
    open(microphone);
    tellServer(u"unload-module "_qs + QString::fromLatin1(module.trimmed()));
    tellServer(u"set-default-sink speaker"_qs);
    hear(output, voice, 1700);
    EXPECT_LT(toneAmplitude(output.latest(0.1, voice), 600, 16000), 0.01) << "the microphone is not the output";
    hear(microphone, voice, 600);
}

TEST_F(SoundCaptureTest, goesOnWhenTheServerIsStartedAnew)
{
    Listener listener(SoundSource::Microphone, voice);
    open(listener);
    const auto killed = Clock::now();
    server.kill();
    waitFor([&listener] { return listener.interruption.has_value(); });
    EXPECT_LT(secondsSince(killed), soon);
    server.start();
    waitFor([&listener] { return listener.isResumed; });
    play(makeTone(u"tone.wav"_qs, 1000, 20));
    hear(listener, voice, 1000);
    EXPECT_GT(listener.breaks(), 0U);
}

TEST_F(SoundCaptureTest, saysThatThereIsNoServer)
{
    server.kill();
    const auto [failure, seconds] = failureToOpen(SoundSource::Microphone);
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->domain(), u"SoundCapture"_qs);
    EXPECT_EQ(failure->code(), SoundCapture::NoServer);
    EXPECT_EQ(failure->localizedDescription(), u"There is no sound server."_qs);
    EXPECT_LT(seconds, soon);
}

TEST_F(SoundCaptureTest, saysThatTheServerHangs)
{
    server.suspend(true);
    const auto [failure, seconds] = failureToOpen(SoundSource::Microphone);
    server.suspend(false);
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->code(), SoundCapture::NoAnswer);
    EXPECT_EQ(failure->localizedDescription(), u"The sound server does not answer."_qs);
    EXPECT_LT(seconds, soon);
}

TEST_F(SoundCaptureTest, saysThatTheServerRefusesAccess)
{
    tellServer(u"load-module module-native-protocol-tcp listen=127.0.0.1 port=47133 auth-cookie="_qs
               + folder.path(u"other-cookie"_qs));
    const QByteArray address = qgetenv("PULSE_SERVER");
    qputenv("PULSE_SERVER", "tcp:127.0.0.1:47133");
    const auto [failure, seconds] = failureToOpen(SoundSource::Microphone);
    qputenv("PULSE_SERVER", address);
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->code(), SoundCapture::Refused) << failure->localizedDescription().toStdString();
    EXPECT_EQ(failure->localizedDescription(), u"The sound server refuses access."_qs);
    EXPECT_LT(seconds, soon);
}

TEST_F(SoundCaptureTest, saysThatThereIsNoDevice)
{
    tellServer(u"unload-module module-null-sink"_qs);
    const auto [noMicrophone, seconds] = failureToOpen(SoundSource::Microphone);
    ASSERT_TRUE(noMicrophone);
    EXPECT_EQ(noMicrophone->code(), SoundCapture::NoDevice);
    EXPECT_EQ(noMicrophone->localizedDescription(), u"There is no microphone."_qs);
    EXPECT_LT(seconds, soon);
    const auto [noOutput, outputSeconds] = failureToOpen(SoundSource::SystemOutput);
    ASSERT_TRUE(noOutput);
    EXPECT_EQ(noOutput->code(), SoundCapture::NoDevice);
    EXPECT_EQ(noOutput->localizedDescription(), u"There is no sound output."_qs);
    EXPECT_LT(outputSeconds, soon);
}

TEST_F(SoundCaptureTest, takesWhatTheMachinePlaysForNoMicrophone)
{
    tellServer(u"set-default-source speaker.monitor"_qs);
    const auto [failure, seconds] = failureToOpen(SoundSource::Microphone);
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->code(), SoundCapture::NoDevice);
    EXPECT_LT(seconds, soon);
}

TEST_F(SoundCaptureTest, endsAtOnceAtAnyTime)
{
    for (const int milliseconds : {0, 1, 5, 20, 100, 700}) {
        auto listener = std::make_unique<Listener>(SoundSource::Microphone, voice);
        QTest::qWait(milliseconds);
        const auto begin = Clock::now();
        listener.reset();
        EXPECT_LT(secondsSince(begin), 1);
    }
    auto listener = std::make_unique<Listener>(SoundSource::Microphone, voice);
    open(*listener);
    server.suspend(true);
    const auto begin = Clock::now();
    listener.reset();
    EXPECT_LT(secondsSince(begin), 1) << "also if the server hangs";
    server.suspend(false);
}

} // namespace
