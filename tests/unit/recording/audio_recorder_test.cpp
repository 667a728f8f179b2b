#include "unit/recording/room_test.h"

#include <QFileInfo>

#include <cmath>
#include <csignal>

#include <sys/resource.h>

using namespace sorvanta;

namespace {

/// In seconds: what a call on a busy machine may come late.
constexpr double tolerance = 0.05;

using Clock = std::chrono::steady_clock;

class AudioRecorderSound : public RoomTest {
protected:
    /// A recorder of the microphone into the file `name`.
    std::unique_ptr<AudioRecorder> makeRecorder(const QString &name, const AudioFormat &format = voice)
    {
        microphone.emplace(format, u"test"_qs,
                           Microphone::Events{.interrupted = [this](const Error &error) { interruption = error; },
                                              .resumed = [this] { isResumed = true; }});
        std::unique_ptr<AudioRecorder> recorder;
        std::exception_ptr refusal = std::make_exception_ptr(std::runtime_error("no answer"));
        bool isAnswered = false;
        microphone->requestAccess([&](bool isGranted) {
            isAnswered = true;
            try {
                if (!isGranted)
                    throw std::runtime_error("no access");
                recorder = microphone->makeRecorder(folder.path(name),
                                                    {.failed = [this](const Error &error) { failure = error; }});
            } catch (...) {
                refusal = std::current_exception();
            }
        });
        waitFor([&isAnswered] { return isAnswered; });
        if (!recorder)
            std::rethrow_exception(refusal);
        recorder->setMeteringEnabled(true);
        return recorder;
    }

    /// Records for some time. @return how many seconds passed between the two calls
    static double recordFor(AudioRecorder &recorder, int milliseconds)
    {
        recorder.record();
        const auto begin = Clock::now();
        QTest::qWait(milliseconds);
        const double seconds = secondsSince(begin);
        recorder.pause();
        return seconds;
    }

    std::optional<Microphone> microphone;
    std::optional<Error> failure;
    std::optional<Error> interruption;
    bool isResumed = false;
};

TEST_F(AudioRecorderSound, recordsTheToneAtItsLevelInTheFormatThatWasAskedFor)
{
    play(makeTone(u"tone.wav"_qs, 1000, 10));
    const auto recorder = makeRecorder(u"a.wav"_qs);
    QTest::qWait(500);
    const double seconds = recordFor(*recorder, 2000);
    recorder->stop();
    EXPECT_EQ(describedFormat(folder.path(u"a.wav"_qs)), u"wav pcm_s16le 16000 1"_qs);
    const auto heard = samplesOf(folder.path(u"a.wav"_qs));
    EXPECT_NEAR(static_cast<double>(heard.size()) / 16000, seconds, tolerance);
    EXPECT_NEAR(decibels(heardAmplitude(heard, 1000, 0.5, 1.5, 16000)), decibels(0.25), 0.1);
    EXPECT_LT(decibels(level(heard, 0.1, 1.9, 16000)), decibels(0.25 / std::sqrt(2)) + 0.1) << "and nothing else";
    EXPECT_FALSE(failure || interruption);
}

TEST_F(AudioRecorderSound, metersTheAveragePowerOfWhatItRecords)
{
    play(makeTone(u"tone.wav"_qs, 1000, 200));
    const auto recorder = makeRecorder(u"a.wav"_qs);
    QTest::qWait(500);
    EXPECT_EQ(recorder->averagePower(0), silentPower);
    const auto meters = [&recorder](double power) { // of the sound since the time before
        QTest::qWait(150);
        recorder->updateMeters();
        return std::abs(recorder->averagePower(0) - power) < 0.1;
    };
    recorder->record();
    waitFor([&meters] { return meters(decibels(0.25 / std::sqrt(2))); });
    recorder->pause();
    waitFor([&meters] { return meters(silentPower); }); // what is said in a pause is not heard
}

TEST_F(AudioRecorderSound, leavesNoTraceOfAPauseAndGoesOnInTheSameFile)
{
    const QString noise = makeNoise(u"noise.wav"_qs, 20);
    const SoundReference reference(noise);
    play(noise);
    const auto recorder = makeRecorder(u"a.wav"_qs);
    QTest::qWait(1500);
    const double first = recordFor(*recorder, 1500);
    const auto pauseBegin = Clock::now();
    QTest::qWait(2000);
    const double paused = secondsSince(pauseBegin);
    const double second = recordFor(*recorder, 1500);
    recorder->stop();

    const SoundReference file(folder.path(u"a.wav"_qs));
    EXPECT_NEAR(static_cast<double>(samplesOf(folder.path(u"a.wav"_qs)).size()) / 16000, first + second, tolerance);
    const auto recorded = [this] {
        std::vector<double> samples = samplesOf(folder.path(u"a.wav"_qs));
        std::vector<double> half;
        for (std::size_t i = 0; i < samples.size(); i += 2)
            half.push_back(samples[i]);
        return half;
    }();
    const double begin = reference.timeOf(recorded, 0).value_or(-1);
    ASSERT_GE(begin, 0);
    EXPECT_NEAR(reference.timeOf(recorded, first - 0.11).value_or(-1), begin + first - 0.11, tolerance);
    EXPECT_NEAR(reference.timeOf(recorded, first + 0.01).value_or(-1), begin + first + paused + 0.01, tolerance);
    EXPECT_NEAR(reference.timeOf(recorded, first + second - 0.11).value_or(-1), begin + first + paused + second - 0.11,
                0.02)
        << "to the very end";
}

TEST_F(AudioRecorderSound, keepsEveryChannelForItself)
{
    const QString left =
        folder.make(u"two.wav"_qs, u"-f lavfi -i aevalsrc=0.25*sin(2*PI*t*500)|0.1*sin(2*PI*t*3000):d=10:s=48000"_qs);
    play(left);
    const AudioFormat stereo = {44100, 2, AudioFormat::SampleType::Int16};
    const auto recorder = makeRecorder(u"a.wav"_qs, stereo);
    QTest::qWait(500);
    recordFor(*recorder, 1500);
    recorder->stop();
    EXPECT_EQ(describedFormat(folder.path(u"a.wav"_qs)), u"wav pcm_s16le 44100 2"_qs);
    const auto first = samplesOf(folder.path(u"a.wav"_qs));
    outputOf(u"sox"_qs, {folder.path(u"a.wav"_qs), folder.path(u"right.wav"_qs), u"remix"_qs, u"2"_qs});
    const auto second = samplesOf(folder.path(u"right.wav"_qs));
    EXPECT_NEAR(decibels(heardAmplitude(first, 500, 0.4, 1.4, 44100)), decibels(0.25), 0.1);
    EXPECT_LT(heardAmplitude(first, 3000, 0.4, 1.4, 44100), 0.001);
    EXPECT_NEAR(decibels(heardAmplitude(second, 3000, 0.4, 1.4, 44100)), decibels(0.1), 0.1);
    EXPECT_LT(heardAmplitude(second, 500, 0.4, 1.4, 44100), 0.001);
}

TEST_F(AudioRecorderSound, makesAFileThatPlaysOfATakeOfAnyLength)
{
    for (const int milliseconds : {0, 1, 30}) {
        const QString name = QStringLiteral("%1.wav").arg(milliseconds);
        const auto recorder = makeRecorder(name);
        recorder->record();
        EXPECT_TRUE(recorder->isRecording());
        const auto begin = Clock::now();
        QTest::qSleep(milliseconds);
        const double seconds = secondsSince(begin);
        recorder->stop();
        EXPECT_FALSE(recorder->isRecording());
        EXPECT_EQ(describedFormat(folder.path(name)), u"wav pcm_s16le 16000 1"_qs);
        EXPECT_NEAR(static_cast<double>(samplesOf(folder.path(name)).size()) / 16000, seconds, tolerance);
    }
}

TEST_F(AudioRecorderSound, stopsOnceAndForAll)
{
    const auto recorder = makeRecorder(u"a.wav"_qs);
    recordFor(*recorder, 200);
    recorder->stop();
    const qint64 size = QFileInfo(folder.path(u"a.wav"_qs)).size();
    recorder->record();
    EXPECT_FALSE(recorder->isRecording());
    recorder->stop();
    EXPECT_EQ(QFileInfo(folder.path(u"a.wav"_qs)).size(), size);
}

TEST_F(AudioRecorderSound, isSilentWhileTheServerIsAwayAndGoesOnWhenItIsBack)
{
    const QString noise = makeNoise(u"noise.wav"_qs, 60);
    const SoundReference reference(noise);
    play(noise);
    const auto recorder = makeRecorder(u"a.wav"_qs);
    QTest::qWait(1500);
    recorder->record();
    const auto begin = Clock::now();
    QTest::qWait(1000);
    server.kill();
    const double killed = secondsSince(begin);
    waitFor([this] { return interruption.has_value(); }, soon * 1000);
    EXPECT_EQ(interruption->domain(), u"SoundCapture"_qs);
    EXPECT_TRUE(interruption->code() == SoundCapture::NoServer || interruption->code() == SoundCapture::Lost);
    recorder->updateMeters();
    QTest::qWait(50);
    recorder->updateMeters();
    EXPECT_EQ(recorder->averagePower(0), silentPower);
    server.start();
    waitFor([this] { return isResumed; });
    play(noise);
    QTest::qWait(2000);
    const double seconds = secondsSince(begin);
    recorder->stop();

    const auto heard = samplesOf(folder.path(u"a.wav"_qs));
    EXPECT_NEAR(static_cast<double>(heard.size()) / 16000, seconds, tolerance);
    EXPECT_GT(level(heard, 0.1, killed - 0.1, 16000), 0.02);
    EXPECT_EQ(level(heard, killed + 0.05, killed + 0.8, 16000), 0);
    EXPECT_GT(level(heard, seconds - 0.5, seconds, 16000), 0.02);
    EXPECT_FALSE(failure);
}

TEST_F(AudioRecorderSound, isSilentWhileTheServerHangs)
{
    const auto recorder = makeRecorder(u"a.wav"_qs);
    recorder->record();
    const auto begin = Clock::now();
    QTest::qWait(500);
    server.suspend(true);
    waitFor([this] { return interruption.has_value(); }, soon * 1000);
    EXPECT_EQ(interruption->code(), SoundCapture::NoAnswer);
    server.suspend(false);
    waitFor([this] { return isResumed; });
    play(makeTone(u"tone.wav"_qs, 1000, 10));
    QTest::qWait(1500);
    const double seconds = secondsSince(begin);
    recorder->stop();
    const auto heard = samplesOf(folder.path(u"a.wav"_qs));
    EXPECT_NEAR(static_cast<double>(heard.size()) / 16000, seconds, tolerance);
    EXPECT_NEAR(level(heard, seconds - 0.5, seconds - 0.05, 16000), 0.25 / std::sqrt(2), 0.01);
}

TEST_F(AudioRecorderSound, doesNotWaitForAServerThatHangs)
{
    const auto recorder = makeRecorder(u"a.wav"_qs);
    recorder->record();
    const auto begin = Clock::now();
    QTest::qWait(500);
    server.suspend(true);
    QTest::qWait(300);
    const auto stop = Clock::now();
    const double seconds = secondsSince(begin);
    recorder->stop();
    EXPECT_LT(secondsSince(stop), 1);
    server.suspend(false);
    EXPECT_NEAR(static_cast<double>(samplesOf(folder.path(u"a.wav"_qs)).size()) / 16000, seconds, tolerance)
        << "what did not come is silent";
}

TEST_F(AudioRecorderSound, tellsOnceThatTheFileCannotGrowAndKeepsWhatItHas)
{
    const auto recorder = makeRecorder(u"a.wav"_qs);
    struct rlimit before = {};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    const struct rlimit small = {32000, before.rlim_max}; // a second
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
    recorder->record();
    waitFor([this] { return failure.has_value(); });
    EXPECT_FALSE(recorder->isRecording());
    recorder->stop();
    setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, handler);
    EXPECT_EQ(failure->domain(), u"NSCocoaErrorDomain"_qs);
    EXPECT_TRUE(failure->localizedDescription().contains(u"a.wav"_qs)) << failure->localizedDescription().toStdString();
    EXPECT_NEAR(static_cast<double>(samplesOf(folder.path(u"a.wav"_qs)).size()) / 16000, 1, tolerance);
}

TEST_F(AudioRecorderSound, leavesTheMicrophoneAloneIfItIsNotMade)
{
    Microphone asked(voice, u"test"_qs, {});
    bool isAnswered = false;
    asked.requestAccess([&isAnswered](bool isGranted) { isAnswered = isGranted; });
    waitFor([&isAnswered] { return isAnswered; });
    QTest::qWait(200);
    EXPECT_EQ(outputOf(u"pactl"_qs, {u"list"_qs, u"short"_qs, u"source-outputs"_qs}), QByteArray());
}

TEST_F(AudioRecorderSound, cannotBeMadeWhereAFileLies)
{
    folder.write(u"a.wav"_qs, "mine");
    EXPECT_THROW(makeRecorder(u"a.wav"_qs), Error);
    QFile file(folder.path(u"a.wav"_qs));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), "mine");
}

} // namespace
