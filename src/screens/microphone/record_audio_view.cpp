#include "screens/microphone/record_audio_view.h"

#include "core/transcript_text.h"
#include "platform/error.h"
#include "platform/file_system.h"
#include "platform/folders.h"
#include "platform/paths.h"
#include "platform/unique_names.h"

#include <QPointer>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <utility>

namespace sorvanta {

namespace {

constexpr AudioFormat takeFormat = {16000, 1, AudioFormat::SampleType::Int16};
constexpr std::chrono::milliseconds tickInterval(150);
constexpr float quietestVoice = 0.02F;

/// A failure to remove it would show in the next step.
void removeIfThere(const QString &path)
{
    try {
        removeItem(path);
    } catch (const Error &) {
        return;
    }
}

} // namespace

RecordAudioView::Input RecordAudioView::systemInput(Microphone::Events events)
{
    auto microphone = std::make_shared<Microphone>(takeFormat, QStringLiteral("microphone"), std::move(events));
    return {.requestAccess = [microphone](auto answer) { microphone->requestAccess(std::move(answer)); },
            .makeRecorder =
                [microphone](const QString &path, AudioRecorder::Events recorderEvents) {
                    return microphone->makeRecorder(path, std::move(recorderEvents));
                }};
}

double RecordAudioView::systemSeconds()
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

RecordAudioView::RecordAudioView(const Surroundings &surroundings, QObject *parent)
    : TranscriptionScreen(surroundings.shared,
                          {.preparation = microphonePreparation(),
                           .printsCommand = true,
                           .naming = transcriptionNaming(),
                           .source = [this] { return m_selectedFile; },
                           .missingSourceError = QStringLiteral("Please record audio first."),
                           .unknownSource = QStringLiteral("recording"),
                           .keepsRecording = true},
                          parent)
    , m_seconds(surroundings.seconds)
    , m_playback(microphonePlayback(),
                 {.file = [this] { return m_selectedFile; },
                  .setError = [this](const QString &error) { run()->setError(error); },
                  .setStatus = [this](const QString &status) { run()->setStatus(status); }},
                 surroundings.openPlayer)
    , m_pane(*run(), {}, {.controller = &m_playback, .isAvailable = [this] { return m_selectedFile.has_value(); }})
    , m_input(surroundings.makeInput(
          {.interrupted = [this](const Error &interruption) { handleInterruption(interruption); },
           .resumed = [this] { handleResumption(); }}))
{
    m_recordingTimer.setInterval(tickInterval);
    m_recordingTimer.callOnTimeout(this, &RecordAudioView::tick);
    connect(run(), &TranscriptionRun::isTranscribingChanged, this, &RecordAudioView::canRecordChanged);
    connect(this, &RecordAudioView::takeChanged, this, &RecordAudioView::canStartChanged);
    connect(this, &RecordAudioView::takeChanged, this, &RecordAudioView::recordingStatusTextChanged);
    connect(this, &RecordAudioView::takeChanged, this, &RecordAudioView::levelTextChanged);
    connect(&m_playback, &PlaybackController::isPlayingChanged, this, &RecordAudioView::playChanged);
}

RecordAudioView::~RecordAudioView()
{
    if (m_isRecording)
        stopTake(false);
    m_playback.stopPlayback();
}

// What is shown

QString RecordAudioView::recordLabel() const
{
    return m_isRecording ? QStringLiteral("Stop Recording") : QStringLiteral("Record");
}

QString RecordAudioView::recordSymbol() const
{
    return m_isRecording ? QStringLiteral("stop.circle.fill") : QStringLiteral("record.circle.fill");
}

QString RecordAudioView::pauseLabel() const
{
    return m_isPaused ? QStringLiteral("Resume") : QStringLiteral("Pause");
}

QString RecordAudioView::pauseSymbol() const
{
    return m_isPaused ? QStringLiteral("play.circle") : QStringLiteral("pause.circle");
}

QString RecordAudioView::heading() const
{
    if (m_isRecording)
        return QStringLiteral("Recording…");
    return m_selectedFile ? QStringLiteral("Latest recording ready") : QStringLiteral("No recording yet");
}

QString RecordAudioView::recordingStatusText() const
{
    const QString time = formatClock(m_recordingDuration);
    if (m_isRecording)
        return (m_isPaused ? QStringLiteral("Paused at ") : QStringLiteral("Recording time: ")) + time;
    if (!m_selectedFile)
        return QStringLiteral("Press Record to capture microphone audio.");
    return QStringLiteral("Ready to transcribe (") + lastPathComponent(*m_selectedFile) + QStringLiteral(", ")
           + (m_recordingDuration > 0 ? time : QStringLiteral("ready")) + u')';
}

QString RecordAudioView::levelText() const
{
    if (!m_isRecording)
        return QStringLiteral("Not recording");
    return m_inputLevel < quietestVoice ? QStringLiteral("No voice detected from your microphone")
                                        : QStringLiteral("Listening…");
}

QString RecordAudioView::playLabel() const
{
    return m_playback.isPlaying() ? QStringLiteral("Pause Playback") : QStringLiteral("Play Recording");
}

QString RecordAudioView::playSymbol() const
{
    return m_playback.isPlaying() ? QStringLiteral("pause.fill") : QStringLiteral("play.fill");
}

// The take

void RecordAudioView::toggleRecording()
{
    if (!canRecord())
        return;
    if (m_isRecording)
        stopTake(false);
    else
        beginTake();
}

void RecordAudioView::togglePause()
{
    if (!canRecord())
        return;
    if (m_isPaused)
        resumeTake();
    else
        pauseTake();
}

void RecordAudioView::beginTake()
{
    run()->setError(std::nullopt);
    run()->setStatus(QString());
    m_playback.stopPlayback();
    m_input.requestAccess([self = QPointer(this)](bool isGranted) {
        // While the question was open, a run may have begun over the take that a new one would replace.
        if (self && self->canRecord() && !self->m_isRecording)
            self->handleAccess(isGranted);
    });
}

void RecordAudioView::handleAccess(bool isGranted)
{
    if (!isGranted) {
        run()->setError(QStringLiteral("Microphone access is required to record."));
        return;
    }
    clearForNewTake();
    if (m_selectedFile)
        removeIfThere(*m_selectedFile);
    expectNewRecording();
    try {
        startRecorder(freePath(temporaryFolder(), newDatedName(QStringLiteral("microphone_")), QStringLiteral("wav")));
    } catch (const Error &error) {
        run()->setError(QStringLiteral("Could not start recording: ") + error.localizedDescription());
        stopTake(true);
    }
}

void RecordAudioView::clearForNewTake()
{
    run()->clearOutput();
    m_pane.search()->setSearchText(QString());
}

void RecordAudioView::startRecorder(const QString &path)
{
    m_audioRecorder =
        m_input.makeRecorder(path, {.failed = [this](const Error &failure) { handleRecorderFailure(failure); }});
    m_audioRecorder->setMeteringEnabled(true);
    m_audioRecorder->record();
    m_recordingStart = m_seconds();
    m_recordingAccumulated = 0;
    m_recordingDuration = 0;
    m_isRecording = true;
    m_isPaused = false;
    selectFile(path);
    emit takeChanged();
    m_recordingTimer.start();
    run()->setStatus(QStringLiteral("Recording…"));
}

void RecordAudioView::tick()
{
    setRecordingDuration(m_recordingAccumulated + (m_recordingStart ? m_seconds() - *m_recordingStart : 0));
    if (!m_audioRecorder) {
        setInputLevel(0);
        return;
    }
    m_audioRecorder->updateMeters();
    setInputLevel(std::min(std::pow(10.0F, m_audioRecorder->averagePower(0) / 20), 1.0F));
}

void RecordAudioView::addOpenStretch()
{
    if (m_recordingStart)
        m_recordingAccumulated += m_seconds() - *m_recordingStart;
    m_recordingStart = std::nullopt;
}

void RecordAudioView::pauseTake()
{
    if (!m_isRecording || m_isPaused)
        return;
    addOpenStretch();
    m_audioRecorder->pause();
    m_recordingTimer.stop();
    setRecordingDuration(m_recordingAccumulated);
    m_isPaused = true;
    setInputLevel(0);
    emit takeChanged();
    run()->setStatus(QStringLiteral("Recording paused."));
}

void RecordAudioView::resumeTake()
{
    if (!m_isRecording || !m_isPaused)
        return;
    m_audioRecorder->record();
    m_recordingStart = m_seconds();
    m_recordingTimer.start();
    m_isPaused = false;
    emit takeChanged();
    run()->setStatus(QStringLiteral("Recording…"));
}

void RecordAudioView::stopTake(bool discards)
{
    addOpenStretch();
    m_recordingDuration = m_recordingAccumulated;
    m_recordingTimer.stop();
    m_playback.stopPlayback();
    if (m_audioRecorder && (m_audioRecorder->isRecording() || m_isPaused))
        m_audioRecorder->stop();
    m_audioRecorder.reset();
    m_isRecording = false;
    m_isPaused = false;
    m_recordingAccumulated = 0;
    m_interruption = std::nullopt;
    setInputLevel(0);
    if (discards) {
        selectFile(std::nullopt);
        run()->setStatus(QString());
    }
    emit takeChanged();
    if (discards || !m_selectedFile)
        return;
    enterRecording();
    run()->setStatus(QStringLiteral("Recording ready. Transcribe when you're ready."));
}

void RecordAudioView::setInputLevel(float level)
{
    if (level == m_inputLevel)
        return;
    m_inputLevel = level;
    emit inputLevelChanged();
    emit levelTextChanged();
}

void RecordAudioView::setRecordingDuration(double seconds)
{
    m_recordingDuration = seconds;
    emit recordingStatusTextChanged();
}

void RecordAudioView::selectFile(const std::optional<QString> &path)
{
    if (m_selectedFile == path)
        return;
    m_selectedFile = path;
    m_playback.stopPlayback();
    m_pane.syncTranscriptWindow();
    m_playback.refreshPlaybackState();
}

// What happens to a take that is open: the user is told at once that sound is missing.

void RecordAudioView::handleInterruption(const Error &interruption)
{
    if (!m_isRecording)
        return;
    m_interruption = interruption.localizedDescription();
    run()->setError(m_interruption);
}

void RecordAudioView::handleResumption()
{
    if (m_interruption && run()->error() == m_interruption)
        run()->setError(std::nullopt);
    m_interruption = std::nullopt;
}

void RecordAudioView::handleRecorderFailure(const Error &failure)
{
    stopTake(false);
    run()->setError(failure.localizedDescription());
}

void RecordAudioView::saveAudio()
{
    saveSource(QStringLiteral("wav"), [this](const QString &status) { run()->setStatus(status); });
}

void RecordAudioView::transcribe()
{
    if (m_isRecording)
        stopTake(false);
    const auto modelPath = modelPathForStart();
    if (!modelPath)
        return;
    run()->beginRun();
    prepare(*m_selectedFile, [this, modelPath = *modelPath, language = language()->language()](
                                 const QString &audioPath) { run()->startBegun(audioPath, modelPath, language); });
}

} // namespace sorvanta
