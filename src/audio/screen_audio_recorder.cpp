#include "audio/screen_audio_recorder.h"

#include "platform/error.h"
#include "platform/file_system.h"
#include "platform/folders.h"
#include "platform/main_queue.h"
#include "platform/media/microphone.h"
#include "platform/media/ordinary_file.h"
#include "platform/named_thread.h"
#include "platform/unique_names.h"

#include <QFile>
#include <QPointer>

#include <chrono>
#include <utility>

namespace sorvanta {

namespace {

enum Code { CannotConfigureWriter = 100, UnableToStartWriting = 101, MicPermissionRequired = 102 };

Error recorderError(Code code, const QString &description)
{
    return Error(QStringLiteral("MeetingRecorder"), code, description);
}

QString recorderErrorMessage(const Error &error)
{
    if (error.domain() == QLatin1String(systemSoundErrorDomain) && error.code() == systemSoundDeclined) {
        return QStringLiteral("Screen Recording permission is required to capture system audio. Open System Settings → "
                              "Privacy & Security → Screen Recording and enable this app.");
    }
    return error.localizedDescription();
}

/// A name in the temporary folder that the final file can have; whatever lies there is removed.
QString uniqueRecordingURL(const QString &extension)
{
    const QString path = freePath(temporaryFolder(), newDatedName(QStringLiteral("meeting_")), extension);
    QFile::remove(path);
    return path;
}

QString newRawFile(const QString &prefix, const QString &extension)
{
    const QString path = newTemporaryPath(prefix, extension);
    QFile::remove(path);
    return path;
}

/// The file is whole as it is; if it does not get its usual form, it keeps the one that it has.
void settle(const QString &path)
{
    try {
        makeOrdinary(path);
    } catch (const std::exception &) {
        return;
    }
}

} // namespace

ScreenAudioRecorder::Surroundings ScreenAudioRecorder::Surroundings::ofThisMachine()
{
    const auto microphone =
        std::make_shared<Microphone>(AudioFormat{44100, 1, AudioFormat::SampleType::Int16},
                                     QStringLiteral("ScreenAudioRecorder.mic"), Microphone::Events{});
    Surroundings surroundings;
    surroundings.requestMicAccess = [microphone](const std::function<void(bool)> &answer) {
        microphone->requestAccess(answer);
    };
    surroundings.makeMicRecorder = [microphone](const QString &path) { return microphone->makeRecorder(path, {}); };
    return surroundings;
}

ScreenAudioRecorder::ScreenAudioRecorder(Surroundings surroundings, QObject *parent)
    : QObject(parent)
    , m_surroundings(std::move(surroundings))
    , m_playback(meetingPlayback(),
                 {.file = [this] { return m_outputURL.value(); },
                  .setError =
                      [this](const QString &error) {
                          m_errorMessage = std::nullopt; // a failure that comes again is told again
                          m_errorMessage = error;
                      }},
                 m_surroundings.openPlayer)
{
}

ScreenAudioRecorder::~ScreenAudioRecorder() = default;

void ScreenAudioRecorder::startRecording(bool includeMic, std::function<void()> completed)
{
    if (m_isRecording || m_isStarting) {
        postToMain([self = QPointer(this), completed = std::move(completed)] {
            if (self && completed)
                completed();
        });
        return;
    }
    m_isStarting = true;
    m_errorMessage = std::nullopt;
    m_includesMic = includeMic;
    m_startCompleted = std::move(completed);
    try {
        m_content = m_surroundings.openSystemSound(m_surroundings.systemFile.inputFormat(),
                                                   [this](const SystemSound::Answer &answer) { takeContent(answer); });
    } catch (const Error &failure) {
        failStart(failure);
    }
}

void ScreenAudioRecorder::takeContent(const SystemSound::Answer &answer)
{
    if (answer.failure) {
        failStart(*answer.failure);
        return;
    }
    if (!answer.hasDisplay) {
        m_content.reset();
        m_errorMessage = QStringLiteral("No display found to capture audio from.");
        endStart();
        return;
    }
    try {
        startSystemCapture();
    } catch (const Error &failure) {
        failStart(failure);
        return;
    }
    if (m_includesMic) {
        m_surroundings.requestMicAccess([self = QPointer(this)](bool isGranted) {
            if (self)
                self->takeMicAccess(isGranted);
        });
    } else {
        dropMicFile();
        beginRecording();
        endStart();
    }
}

void ScreenAudioRecorder::startSystemCapture()
{
    const AudioFileSettings &settings = m_surroundings.systemFile;
    const QString path = newRawFile(QStringLiteral("meeting-system-"), QStringLiteral("m4a"));
    if (!AudioWriter::canWrite(settings))
        throw recorderError(CannotConfigureWriter, QStringLiteral("Cannot configure audio writer."));
    m_systemURL = path;
    m_outputURL = path;
    m_stream = std::move(m_content);
    try {
        m_writer = std::make_shared<CapturedTrack>(path, settings, failureReport([this](const QString &description) {
                                                       m_errorMessage = systemFailureText(description);
                                                   }));
    } catch (const Error &) {
        throw recorderError(UnableToStartWriting, QStringLiteral("Unable to start writing."));
    }
    m_writer->begin(SoundTime::clock::now());
    m_stream->start([track = m_writer](const SoundBuffer &buffer) { track->take(buffer); });
}

void ScreenAudioRecorder::takeMicAccess(bool isGranted)
{
    std::optional<QString> warning;
    try {
        startMicCapture(isGranted);
    } catch (const Error &failure) {
        stopMicCapture();
        dropMicFile();
        warning = QStringLiteral("Microphone capture unavailable. Recording system audio only. ")
                  + recorderErrorMessage(failure);
    }
    beginRecording();
    if (warning)
        m_errorMessage = warning;
    endStart();
}

void ScreenAudioRecorder::startMicCapture(bool isGranted)
{
    if (!isGranted) {
        throw recorderError(MicPermissionRequired,
                            QStringLiteral("Microphone permission is required to include your voice."));
    }
    const QString path = newRawFile(QStringLiteral("meeting-mic-"), QStringLiteral("wav"));
    m_micRecorder = m_surroundings.makeMicRecorder(path);
    m_micRecorder->record();
    m_micURL = path;
    m_micWriter.reset();
    m_micSession.reset();
}

void ScreenAudioRecorder::beginRecording()
{
    m_isRecording = true;
    m_isPaused = false;
    setTracksPaused(false);
}

void ScreenAudioRecorder::failStart(const Error &failure)
{
    m_content.reset();
    m_errorMessage = recorderErrorMessage(failure);
    resetCaptureState(false);
    endStart();
}

void ScreenAudioRecorder::endStart()
{
    m_isStarting = false;
    if (const auto completed = std::exchange(m_startCompleted, {}))
        completed();
}

void ScreenAudioRecorder::pauseRecording()
{
    if (!m_isRecording)
        return;
    setTracksPaused(true);
    m_isPaused = true;
}

void ScreenAudioRecorder::resumeRecording()
{
    if (!m_isRecording)
        return;
    setTracksPaused(false);
    m_isPaused = false;
}

void ScreenAudioRecorder::setTracksPaused(bool isPaused)
{
    for (const auto &track : {m_writer, m_micWriter}) {
        if (track)
            track->setPaused(isPaused);
    }
}

void ScreenAudioRecorder::stopRecording()
{
    if (!m_isRecording)
        return;
    const SoundTime now = SoundTime::clock::now();
    for (const auto &track : {m_writer, m_micWriter}) {
        if (track)
            track->end(now);
    }
    if (m_stream)
        m_stream->stop(now);
    m_stream.reset();
    stopMicCapture();
    for (const auto &track : {m_writer, m_micWriter}) {
        if (track)
            track->finish();
    }
    finishWriting();
    m_isRecording = false;
    m_isPaused = false;
}

/// The rest of the work with the system's file takes a second for some hours.
void ScreenAudioRecorder::finishWriting()
{
    const auto finish = [self = QPointer(this)] {
        postToMain([self] {
            if (self)
                self->finishOutputs();
        });
    };
    if (!m_systemURL) {
        finish();
        return;
    }
    try {
        runOnNamedThread(QStringLiteral("ScreenAudioRecorder.finish"), [path = *m_systemURL, finish] {
            settle(path);
            finish();
        });
    } catch (const Error &) {
        finish();
    }
}

void ScreenAudioRecorder::finishOutputs()
{
    if (!m_systemURL) {
        resetCaptureState(true);
        return;
    }
    const QString destination = uniqueRecordingURL(QStringLiteral("m4a"));
    if (m_micURL) {
        postToMain([self = QPointer(this), systemURL = *m_systemURL, micURL = *m_micURL, destination] {
            if (self)
                self->runMix(systemURL, micURL, destination);
        });
        return;
    }
    try {
        copyFile(*m_systemURL, destination);
        m_outputURL = destination;
    } catch (const Error &) {
        m_outputURL = m_systemURL;
    }
    resetCaptureState(true);
}

void ScreenAudioRecorder::runMix(const QString &systemURL, const QString &micURL, const QString &destinationURL)
{
    if (m_surroundings.mixer.mixRecordings(systemURL, micURL, destinationURL)) {
        m_outputURL = destinationURL;
    } else {
        m_errorMessage = QStringLiteral("Could not mix microphone audio. System audio only was captured.");
        m_outputURL = systemURL;
    }
    resetCaptureState(true);
}

void ScreenAudioRecorder::resetCaptureState(bool keepRecordingFlag)
{
    m_stream.reset();
    m_writer.reset();
    m_micWriter.reset();
    m_micURL.reset();
    m_systemURL.reset();
    stopMicCapture();
    if (!keepRecordingFlag)
        m_isRecording = false;
}

void ScreenAudioRecorder::stopMicCapture()
{
    if (m_micRecorder)
        m_micRecorder->stop();
    m_micRecorder.reset();
    m_micSession.reset();
}

void ScreenAudioRecorder::dropMicFile()
{
    m_micWriter.reset();
    m_micURL.reset();
}

void ScreenAudioRecorder::setMicWriter(const QString &path, const AudioFileSettings &settings)
{
    m_micURL = path;
    m_micWriter = std::make_shared<CapturedTrack>(path, settings, failureReport([this](const QString &description) {
                                                      m_errorMessage = micFailureText(description);
                                                      stopMicCapture();
                                                      dropMicFile();
                                                  }));
}

QString ScreenAudioRecorder::systemFailureText(const QString &description)
{
    return description.isEmpty() ? QStringLiteral("Recording failed.") : description;
}

QString ScreenAudioRecorder::micFailureText(const QString &description)
{
    return QStringLiteral("Microphone capture failed. Recording system audio only. ")
           + (description.isEmpty() ? QStringLiteral("The operation could not be completed.") : description);
}

/// Reaches the main thread from that of a track, unless this object has gone.
CapturedTrack::ReportFailure ScreenAudioRecorder::failureReport(std::function<void(const QString &)> show)
{
    return [self = QPointer(this), show = std::move(show)](const QString &description) {
        postToMain([self, show, description] {
            if (self)
                show(description);
        });
    };
}

} // namespace sorvanta
