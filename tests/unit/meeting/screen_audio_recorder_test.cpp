#include "audio/screen_audio_recorder.h"

#include "fake_sound.h"
#include "platform/media/media_duration.h"
#include "support/media_files.h"
#include "support/printing.h"
#include "support/waiting.h"
#include "unit/audio/fake_audio_player.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QDateTime>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTest>

#include <csignal>
#include <thread>

#include <sys/resource.h>

using namespace sorvanta;
using testing::ElementsAre;

namespace {

const QString declined = QStringLiteral(
    "Screen Recording permission is required to capture system audio. Open System Settings → Privacy & Security → "
    "Screen Recording and enable this app.");
const QString withoutMic = QStringLiteral("Microphone capture unavailable. Recording system audio only. ");

/// While this lives, the system gives this process no more of something than so much.
class SystemLimit {
public:
    SystemLimit(__rlimit_resource resource, rlim_t most)
        : m_resource(resource)
    {
        getrlimit(m_resource, &m_before);
        const rlimit limit = {most, m_before.rlim_max};
        setrlimit(m_resource, &limit);
    }
    ~SystemLimit()
    {
        setrlimit(m_resource, &m_before);
        std::signal(SIGXFSZ, m_handler);
    }
    SystemLimit(const SystemLimit &) = delete;
    SystemLimit &operator=(const SystemLimit &) = delete;

private:
    void (*m_handler)(int) = std::signal(SIGXFSZ, SIG_IGN);
    __rlimit_resource m_resource;
    rlimit m_before = {};
};

class Recorder : public testing::Test {
protected:
    Recorder() { makeRecorder(); }

    void makeRecorder()
    {
        ScreenAudioRecorder::Surroundings surroundings = sound.surroundings();
        surroundings.openPlayer = players.opener();
        if (adjust)
            adjust(surroundings);
        recorder = std::make_unique<ScreenAudioRecorder>(std::move(surroundings));
        QObject::connect(recorder.get(), &ScreenAudioRecorder::outputURLChanged, recorder.get(),
                         [this] { outputs << recorder->outputURL().value_or(QString()); });
    }
    void start(bool includeMic)
    {
        recorder->startRecording(includeMic, [this] { ++completions; });
    }
    /// A recording without microphone that is on.
    void record()
    {
        start(false);
        sound.answerOpening({.hasDisplay = true});
        ASSERT_TRUE(recorder->isRecording());
    }
    void recordWithMic()
    {
        start(true);
        sound.answerOpening({.hasDisplay = true});
        sound.answerMic(true);
        ASSERT_TRUE(recorder->isRecording());
    }
    /// Stops when the fake's time says so, which has run ahead of ours.
    void stop()
    {
        std::this_thread::sleep_until(sound.time());
        recorder->stopRecording();
    }
    void waitForOutput()
    {
        const qsizetype before = outputs.size();
        ASSERT_TRUE(waitUntil([&] { return outputs.size() > before; }, 5 * patience));
    }
    QString output() const { return recorder->outputURL().value_or(QString()); }
    QString error() const { return recorder->errorMessage().value_or(QString()); }
    void expectIdle() const
    {
        EXPECT_FALSE(recorder->isRecording());
        EXPECT_FALSE(recorder->isStarting());
        EXPECT_FALSE(recorder->isPaused());
        EXPECT_FALSE(sound.isOpen);
    }

    MediaFolder folder;
    FakeSound sound;
    FakePlayers players;
    std::function<void(ScreenAudioRecorder::Surroundings &)> adjust;
    std::unique_ptr<ScreenAudioRecorder> recorder;
    QStringList outputs;
    int completions = 0;
};

TEST_F(Recorder, isIdleAtFirst)
{
    expectIdle();
    EXPECT_FALSE(recorder->outputURL());
    EXPECT_FALSE(recorder->errorMessage());
}

TEST_F(Recorder, startsTheSystemFirstAndTheMicrophoneBehindIt)
{
    start(true);
    EXPECT_TRUE(recorder->isStarting());
    EXPECT_THAT(sound.calls, ElementsAre(u"open"_qs));
    EXPECT_FALSE(recorder->outputURL());
    sound.answerOpening({.hasDisplay = true});
    EXPECT_THAT(sound.calls, ElementsAre(u"open"_qs, u"start"_qs, u"ask for the microphone"_qs));
    EXPECT_TRUE(recorder->isStarting());
    EXPECT_FALSE(recorder->isRecording());
    sound.answerMic(true);
    EXPECT_THAT(sound.calls, ElementsAre(u"open"_qs, u"start"_qs, u"ask for the microphone"_qs, u"record"_qs));
    EXPECT_TRUE(recorder->isRecording());
    EXPECT_FALSE(recorder->isStarting());
    EXPECT_EQ(completions, 1);
    EXPECT_FALSE(recorder->errorMessage());
}

TEST_F(Recorder, doesNotAskForTheMicrophoneWhenItIsNotWanted)
{
    record();
    EXPECT_THAT(sound.calls, ElementsAre(u"open"_qs, u"start"_qs));
    EXPECT_FALSE(recorder->micURL());
    EXPECT_EQ(completions, 1);
}

TEST_F(Recorder, asksForStereoOf44100Hz)
{
    AudioFormat asked;
    adjust = [&](ScreenAudioRecorder::Surroundings &surroundings) {
        surroundings.openSystemSound = [&, open = surroundings.openSystemSound](const AudioFormat &format,
                                                                                auto answer) {
            asked = format;
            return open(format, answer);
        };
    };
    makeRecorder();
    record();
    EXPECT_EQ(asked, (AudioFormat{44100, 2, AudioFormat::SampleType::Float32}));
}

TEST_F(Recorder, namesItsRawFiles)
{
    recordWithMic();
    const QString uuid = u"[0-9A-F]{8}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{12}"_qs;
    EXPECT_THAT(output().toStdString(),
                testing::MatchesRegex((folder.path(u"meeting-system-"_qs) + uuid + u".m4a"_qs).toStdString()));
    EXPECT_THAT(sound.micPath.toStdString(),
                testing::MatchesRegex((folder.path(u"meeting-mic-"_qs) + uuid + u".wav"_qs).toStdString()));
    EXPECT_EQ(recorder->systemURL(), recorder->outputURL());
    EXPECT_EQ(recorder->micURL(), sound.micPath);
    EXPECT_TRUE(QFile::exists(output()));
}

TEST_F(Recorder, aSecondStartDuringAStartDoesNothing)
{
    start(false);
    start(true);
    EXPECT_THAT(sound.calls, ElementsAre(u"open"_qs));
    sound.answerOpening({.hasDisplay = true});
    EXPECT_TRUE(recorder->isRecording());
    EXPECT_FALSE(sound.calls.contains(u"ask for the microphone"_qs)) << "its wish for the microphone is lost";
    EXPECT_TRUE(waitUntil([this] { return completions == 2; }));
}

TEST_F(Recorder, aStartDuringARecordingChangesNothing)
{
    record();
    const QString before = output();
    start(true);
    EXPECT_TRUE(recorder->isRecording());
    EXPECT_FALSE(recorder->isStarting());
    EXPECT_EQ(output(), before);
    EXPECT_TRUE(waitUntil([this] { return completions == 2; }));
}

TEST_F(Recorder, aStopWhileIdleOrStartingDoesNothing)
{
    recorder->stopRecording();
    expectIdle();
    start(false);
    recorder->stopRecording();
    EXPECT_TRUE(recorder->isStarting());
    sound.answerOpening({.hasDisplay = true});
    EXPECT_TRUE(recorder->isRecording());
}

TEST_F(Recorder, pauseAndResumeDoNothingWhileNothingIsRecorded)
{
    recorder->pauseRecording();
    expectIdle();
    recorder->resumeRecording();
    expectIdle();
    EXPECT_FALSE(recorder->outputURL());
    EXPECT_FALSE(recorder->errorMessage());
}

// What a start can end with.

TEST_F(Recorder, withoutADisplayThereIsNothingToRecord)
{
    start(true);
    sound.answerOpening({});
    EXPECT_EQ(error(), u"No display found to capture audio from."_qs);
    expectIdle();
    EXPECT_FALSE(recorder->outputURL());
    EXPECT_EQ(completions, 1);
}

TEST_F(Recorder, wordsARefusalInItsOwnWay)
{
    start(false);
    sound.answerOpening({.failure = Error(u"SCStreamErrorDomain"_qs, -3801, u"declined"_qs)});
    EXPECT_EQ(error(), declined);
    expectIdle();
    EXPECT_EQ(completions, 1);
}

struct OtherFailure {
    const char *domain;
    int code;
};

class OtherFailures : public Recorder, public testing::WithParamInterface<OtherFailure> { };

TEST_P(OtherFailures, areToldInTheirOwnWords)
{
    start(false);
    sound.answerOpening(
        {.failure = Error(QLatin1String(GetParam().domain), GetParam().code, u"There is no sound server."_qs)});
    EXPECT_EQ(error(), u"There is no sound server."_qs);
    expectIdle();
}

INSTANTIATE_TEST_SUITE_P(Kinds, OtherFailures,
                         testing::Values(OtherFailure{"SCStreamErrorDomain", -3802},
                                         OtherFailure{"SoundCapture", -3801}, OtherFailure{"SoundCapture", 1}));

TEST_F(Recorder, tellsThatTheSystemHasNoThreadToGive)
{
    sound.openingFailure = Error(u"NSPOSIXErrorDomain"_qs, 11, u"There are too many threads."_qs);
    start(false);
    EXPECT_EQ(error(), u"There are too many threads."_qs);
    expectIdle();
    EXPECT_EQ(completions, 1);
}

TEST_F(Recorder, tellsThatSuchAFileIsNotPossible)
{
    adjust = [](ScreenAudioRecorder::Surroundings &surroundings) { surroundings.systemFile.sampleRate = 12345; };
    makeRecorder();
    start(false);
    sound.answerOpening({.hasDisplay = true});
    EXPECT_EQ(error(), u"Cannot configure audio writer."_qs);
    expectIdle();
    EXPECT_FALSE(recorder->outputURL()) << "this comes before there is a file";
}

TEST_F(Recorder, tellsThatWritingCannotStart)
{
    start(false);
    {
        const SystemLimit files(RLIMIT_NOFILE, 0);
        sound.answerOpening({.hasDisplay = true});
    }
    EXPECT_EQ(error(), u"Unable to start writing."_qs);
    expectIdle();
    EXPECT_TRUE(recorder->outputURL()) << "it names a file that is not there";
    EXPECT_FALSE(QFile::exists(output()));
    EXPECT_FALSE(recorder->systemURL());
}

TEST_F(Recorder, aFailedStartLeavesTheLastOutput)
{
    record();
    sound.play(500, 0.2);
    stop();
    waitForOutput();
    const QString last = output();
    start(false);
    sound.answerOpening({});
    EXPECT_EQ(output(), last);
}

TEST_F(Recorder, aNewStartTakesTheOldErrorBack)
{
    start(false);
    sound.answerOpening({});
    start(false);
    EXPECT_FALSE(recorder->errorMessage());
}

TEST_F(Recorder, goesOnWithoutAMicrophoneThatIsRefused)
{
    start(true);
    sound.answerOpening({.hasDisplay = true});
    sound.answerMic(false);
    EXPECT_TRUE(recorder->isRecording());
    EXPECT_FALSE(recorder->isStarting());
    EXPECT_EQ(error(), withoutMic + u"Microphone permission is required to include your voice."_qs);
    EXPECT_FALSE(recorder->micURL());
    EXPECT_EQ(completions, 1);
    sound.play(500, 1);
    stop();
    waitForOutput();
    EXPECT_NEAR(mediaDuration(output()), 1, 0.3);
    EXPECT_EQ(error(), withoutMic + u"Microphone permission is required to include your voice."_qs)
        << "and no mix is attempted";
}

TEST_F(Recorder, goesOnWithoutAMicrophoneRecorderThatCannotBeMade)
{
    sound.micRefusal = Error(u"x"_qs, 1, u"The disk is full."_qs);
    start(true);
    sound.answerOpening({.hasDisplay = true});
    sound.answerMic(true);
    EXPECT_TRUE(recorder->isRecording());
    EXPECT_EQ(error(), withoutMic + u"The disk is full."_qs);
    EXPECT_FALSE(recorder->micURL());
}

// The stop, and what becomes of the files.

TEST_F(Recorder, withoutMicrophoneTheFinalFileIsACopy)
{
    record();
    sound.play(500, 1);
    const QString raw = output();
    stop();
    EXPECT_FALSE(recorder->isRecording()) << "at once";
    EXPECT_EQ(output(), raw) << "until the files are finished";
    EXPECT_EQ(recorder->systemURL(), raw);
    waitForOutput();
    EXPECT_THAT(outputs, ElementsAre(raw, output()));
    const QString day = u"[0-9]{4}-[0-9]{2}-[0-9]{2}_[0-9]{2}-[0-9]{2}"_qs;
    EXPECT_THAT(output().toStdString(),
                testing::MatchesRegex((folder.path(u"meeting_"_qs) + day + u"_[0-9a-f]{6}.m4a"_qs).toStdString()));
    EXPECT_TRUE(output().contains(QDateTime::currentDateTime().toString(u"yyyy-MM-dd_"_qs)));
    EXPECT_EQ(folder.names().size(), 2) << "the raw file stays";
    QFile copy(output());
    QFile original(raw);
    ASSERT_TRUE(copy.open(QIODevice::ReadOnly) && original.open(QIODevice::ReadOnly));
    EXPECT_EQ(copy.readAll(), original.readAll());
    EXPECT_NEAR(mediaDuration(output()), 1, 0.3);
    EXPECT_FALSE(recorder->systemURL());
    EXPECT_FALSE(recorder->errorMessage());
    EXPECT_EQ(describedFormat(output()), u"mov,mp4,m4a,3gp,3g2,mj2 aac 44100 2"_qs);
}

TEST_F(Recorder, withMicrophoneTheFinalFileIsTheMix)
{
    recordWithMic();
    sound.play(440, 1.5);
    const QString raw = output();
    stop();
    EXPECT_FALSE(sound.isMicOpen);
    waitForOutput();
    EXPECT_NE(output(), raw);
    const auto samples = samplesOf(output());
    const std::vector<double> middle(samples.begin() + 22050, samples.begin() + 44100);
    EXPECT_NEAR(toneAmplitude(middle, 440, 44100), 0.25, 0.01);
    EXPECT_NEAR(toneAmplitude(middle, 1000, 44100), 0.25, 0.01);
    EXPECT_NEAR(mediaDuration(output()), mediaDuration(raw), 0.001);
    EXPECT_EQ(folder.names().size(), 3) << "both raw files stay";
    EXPECT_FALSE(recorder->systemURL());
    EXPECT_FALSE(recorder->micURL());
    EXPECT_FALSE(recorder->errorMessage());
}

TEST_F(Recorder, aMixThatFailsLeavesTheSystemAlone)
{
    sound.micSeconds = -1; // no file
    recordWithMic();
    sound.play(440, 0.5);
    const QString raw = output();
    stop();
    ASSERT_TRUE(waitUntil([this] { return recorder->errorMessage().has_value(); }));
    EXPECT_EQ(error(), u"Could not mix microphone audio. System audio only was captured."_qs);
    EXPECT_EQ(output(), raw);
    EXPECT_FALSE(recorder->systemURL());
    EXPECT_NEAR(mediaDuration(raw), 0.5, 0.3);
}

TEST_F(Recorder, aMixThatSucceedsLeavesTheMessageAsItIs)
{
    recordWithMic();
    sound.play(440, 0.5);
    stop();
    players.refusal = Error(u"libmpv"_qs, -13, u"no."_qs);
    recorder->togglePlayback();
    const QString before = error();
    EXPECT_EQ(before, u"Unable to play audio: no."_qs);
    waitForOutput();
    EXPECT_EQ(error(), before);
}

TEST_F(Recorder, aCopyThatFailsLeavesTheRawFileAndSaysNothing)
{
    record();
    sound.play(440, 0.3);
    const QString raw = output();
    QFile::remove(raw);
    stop();
    ASSERT_TRUE(waitUntil([this] { return !recorder->systemURL(); }));
    EXPECT_EQ(output(), raw);
    EXPECT_FALSE(recorder->errorMessage());
}

TEST_F(Recorder, stopsInOrder)
{
    recordWithMic();
    sound.calls.clear();
    recorder->stopRecording();
    EXPECT_THAT(sound.calls, ElementsAre(u"stop"_qs, u"release"_qs, u"stop the microphone"_qs));
}

TEST_F(Recorder, twoStopsInOneMinuteGiveTwoNames)
{
    QStringList names;
    for (int i = 0; i < 2; ++i) {
        record();
        sound.play(440, 0.2);
        stop();
        waitForOutput();
        names << output();
    }
    EXPECT_NE(names[0], names[1]);
}

TEST_F(Recorder, aStartWhileTheLastRecordingIsFinishedIsAllowedAndTheFinishTakesItsFields)
{
    record();
    const QString first = output();
    sound.play(500, 0.3);
    stop();
    record();
    const QString second = output();
    EXPECT_NE(second, first);
    sound.play(700, 1.5);
    waitForOutput();
    EXPECT_TRUE(recorder->isRecording());
    EXPECT_FALSE(recorder->systemURL()) << "it is the new recording that was finished";
    EXPECT_FALSE(sound.isOpen);
    EXPECT_TRUE(QFile::exists(first) && QFile::exists(second)) << "and nothing is lost";
    EXPECT_NEAR(static_cast<double>(samplesOf(first).size()) / 44100, 0.3, 0.3);
    EXPECT_GT(static_cast<double>(samplesOf(second).size()) / 44100, 0.4);
    const qsizetype before = outputs.size();
    recorder->stopRecording();
    EXPECT_FALSE(recorder->isRecording());
    QTest::qWait(50);
    EXPECT_EQ(outputs.size(), before) << "there is nothing left to finish";
}

TEST_F(Recorder, theFilesAreFinishedAlsoWhenTheRecorderGoesMeanwhile)
{
    record();
    sound.play(500, 2.5);
    const QString raw = output();
    stop();
    recorder.reset();
    const auto isOrdinary = [&raw] {
        QFile file(raw);
        return file.open(QIODevice::ReadOnly) && !file.readAll().contains("moof");
    };
    EXPECT_TRUE(waitUntil(isOrdinary));
    EXPECT_NEAR(mediaDuration(raw), 2.5, 0.3);
    EXPECT_EQ(folder.names().size(), 1) << "no final file is made";
}

TEST_F(Recorder, theRawFileIsWholeWhenTheStopReturns)
{
    record();
    sound.play(500, 1);
    stop();
    EXPECT_NEAR(static_cast<double>(samplesOf(output()).size()) / 44100, 1, 0.3);
}

TEST_F(Recorder, aStoppedRecordingLastsUpToTheStopAlsoWhenNoSoundComes)
{
    record();
    sound.play(500, 0.5);
    sound.pass(0.5);
    stop();
    waitForOutput();
    EXPECT_NEAR(mediaDuration(output()), 1, 0.3);
}

// A writer that fails during the recording.

TEST_F(Recorder, aFileThatCannotGrowIsToldOfAndTheRecordingStaysOn)
{
    record();
    sound.play(500, 3);
    const QString raw = output();
    {
        const SystemLimit size(RLIMIT_FSIZE, 1000);
        sound.play(500, 3);
        ASSERT_TRUE(waitUntil([this] { return recorder->errorMessage().has_value(); }));
    }
    EXPECT_THAT(error().toStdString(), testing::HasSubstr("meeting-system-"));
    EXPECT_TRUE(recorder->isRecording());
    // Each later buffer is lost, and said again.
    start(false);
    players.refusal = Error(u"libmpv"_qs, -13, u"no."_qs);
    recorder->togglePlayback();
    EXPECT_EQ(error(), u"Unable to play audio: no."_qs);
    sound.play(500, 0.1);
    ASSERT_TRUE(waitUntil([this] { return error().contains(u"meeting-system-"_qs); }));
    stop();
    waitForOutput();
    EXPECT_NE(output(), raw) << "the files are finished all the same";
    EXPECT_GT(mediaDuration(output()), 1.5) << "what was written before is there";
}

// The pause.

TEST_F(Recorder, aPauseStaysInTheTimelineAsSilence)
{
    record();
    sound.play(500, 0.5);
    recorder->pauseRecording();
    EXPECT_TRUE(recorder->isPaused());
    EXPECT_TRUE(recorder->isRecording());
    sound.play(700, 1);
    recorder->resumeRecording();
    EXPECT_FALSE(recorder->isPaused());
    sound.play(900, 0.5);
    stop();
    EXPECT_FALSE(recorder->isPaused());
    waitForOutput();
    EXPECT_NEAR(mediaDuration(output()), 2, 0.3);
    const auto samples = samplesOf(output());
    EXPECT_GT(level(samples, 0.1, 0.4, 44100), 0.15);
    EXPECT_LT(level(samples, 0.55, 1.45, 44100), 1e-4);
    EXPECT_GT(level(samples, 1.6, 1.9, 44100), 0.15);
    EXPECT_FALSE(sound.calls.contains(u"pause the microphone"_qs));
}

TEST_F(Recorder, eightHoursLastEightHours)
{
    record();
    sound.play(500, 0.5);
    recorder->pauseRecording();
    sound.pass(8 * 3600 - 1);
    recorder->resumeRecording();
    sound.play(900, 0.5);
    recorder->stopRecording();
    waitForOutput();
    EXPECT_NEAR(mediaDuration(output()), 8 * 3600, 0.1);
    const QString end = folder.make(u"end.wav"_qs, u"-ss 28799.4 -i %1"_qs.arg(output()));
    EXPECT_GT(toneAmplitude(samplesOf(end), 900, 44100), 0.15) << "and what is at its end is found there";
}

TEST_F(Recorder, theMicrophoneGoesOnThroughAPause)
{
    recordWithMic();
    recorder->pauseRecording();
    EXPECT_TRUE(sound.isMicOpen);
    recorder->resumeRecording();
    EXPECT_FALSE(sound.calls.contains(u"pause the microphone"_qs));
}

TEST_F(Recorder, aRecordingStoppedInAPauseEndsWithTheSoundBeforeIt)
{
    record();
    sound.play(500, 0.5);
    recorder->pauseRecording();
    sound.play(700, 0.7);
    stop();
    waitForOutput();
    EXPECT_NEAR(mediaDuration(output()), 0.5, 0.001);
    EXPECT_FALSE(recorder->isPaused());
}

TEST_F(Recorder, aNewRecordingBeginsWithoutThePauseOfTheLast)
{
    record();
    sound.play(500, 0.2);
    recorder->pauseRecording();
    stop();
    waitForOutput();
    record();
    EXPECT_FALSE(recorder->isPaused());
    sound.play(500, 0.5);
    stop();
    waitForOutput();
    EXPECT_NEAR(mediaDuration(output()), 0.5, 0.3);
}

// The second way of the microphone.

class DormantWay : public ScreenAudioRecorder {
public:
    using ScreenAudioRecorder::micFailureText;
    using ScreenAudioRecorder::micWriter;
    using ScreenAudioRecorder::ScreenAudioRecorder;
    using ScreenAudioRecorder::setMicWriter;
    using ScreenAudioRecorder::systemFailureText;
};

TEST_F(Recorder, tellsAFileThatFailsInTheSystemsWordsOrItsOwn)
{
    EXPECT_EQ(DormantWay::systemFailureText(u"No space."_qs), u"No space."_qs);
    EXPECT_EQ(DormantWay::systemFailureText({}), u"Recording failed."_qs);
    const QString mic = u"Microphone capture failed. Recording system audio only. "_qs;
    EXPECT_EQ(DormantWay::micFailureText(u"No space."_qs), mic + u"No space."_qs);
    EXPECT_EQ(DormantWay::micFailureText({}), mic + u"The operation could not be completed."_qs);
}

TEST_F(Recorder, nothingOpensTheSecondWay)
{
    DormantWay dormant(sound.surroundings());
    dormant.startRecording(true, {});
    sound.answerOpening({.hasDisplay = true});
    sound.answerMic(true);
    EXPECT_EQ(dormant.micWriter(), nullptr);
    dormant.stopRecording();
    EXPECT_EQ(dormant.micWriter(), nullptr);
}

TEST_F(Recorder, theSecondWayWouldRecordWithItsPausesAndEndWithTheRecording)
{
    DormantWay dormant(sound.surroundings());
    dormant.startRecording(false, {});
    sound.answerOpening({.hasDisplay = true});
    dormant.setMicWriter(folder.path(u"second.wav"_qs), {AudioFileSettings::Container::Wav, 44100, 1, 0});
    dormant.micWriter()->begin(sound.begin);
    const std::vector<std::int16_t> samples(4410, 8000);
    const auto bytes = std::as_bytes(std::span(samples));
    dormant.micWriter()->take({bytes, sound.begin, true});
    dormant.pauseRecording();
    dormant.micWriter()->take({bytes, sound.begin + std::chrono::milliseconds(100), true});
    dormant.stopRecording();
    EXPECT_NEAR(mediaDuration(folder.path(u"second.wav"_qs)), 0.1, 0.001);
}

TEST_F(Recorder, theSecondWayWouldBeGivenUpWhenItsFileFails)
{
    DormantWay dormant(sound.surroundings());
    dormant.startRecording(false, {});
    sound.answerOpening({.hasDisplay = true});
    dormant.setMicWriter(folder.path(u"second.wav"_qs), {AudioFileSettings::Container::Wav, 44100, 1, 0});
    dormant.micWriter()->begin(sound.begin);
    const std::vector<std::int16_t> samples(441000, 8000);
    {
        const SystemLimit size(RLIMIT_FSIZE, 1000);
        for (int i = 0; i < 2; ++i)
            dormant.micWriter()->take({std::as_bytes(std::span(samples)), sound.begin, false});
        dormant.micWriter()->take({std::as_bytes(std::span(samples)), sound.begin + std::chrono::seconds(10), false});
        dormant.micWriter()->take({std::as_bytes(std::span(samples)), sound.begin + std::chrono::seconds(20), false});
    }
    ASSERT_TRUE(waitUntil([&] { return dormant.errorMessage().has_value(); }));
    EXPECT_TRUE(dormant.errorMessage()->startsWith(u"Microphone capture failed. Recording system audio only. "_qs));
    EXPECT_EQ(dormant.micWriter(), nullptr);
    EXPECT_FALSE(dormant.micURL());
    EXPECT_TRUE(dormant.isRecording());
}

} // namespace
