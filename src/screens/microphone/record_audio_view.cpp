#include "screens/microphone/record_audio_view.h"

#include "core/audio_preparation.h"
#include "core/languages.h"
#include "export/text_export.h"
#include "history/transcription_history_store.h"
#include "platform/desktop/file_panels.h"
#include "platform/error.h"
#include "platform/file_system.h"
#include "platform/folders.h"
#include "platform/main_queue.h"
#include "platform/paths.h"
#include "platform/unicode_text.h"
#include "platform/unique_names.h"
#include "platform/worker.h"

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

/// The fields of a screen that a preparation writes. The screen may go while the worker still prepares.
PreparationReport reportTo(const QPointer<RecordAudioView> &screen)
{
    return {
        .status = [screen] { return screen ? screen->run()->status() : QString(); },
        .setStatus =
            [screen](const QString &status) {
                if (screen)
                    screen->run()->setStatus(status);
            },
        .error = [screen] { return screen ? screen->run()->error() : std::nullopt; },
        .setError =
            [screen](const QString &error) {
                if (screen)
                    screen->run()->setError(error);
            },
        .endRun =
            [screen] {
                if (screen)
                    screen->run()->endPreparation();
            },
        .refreshPlaybackState = {},
    };
}

} // namespace

QString recordingTimeText(double seconds)
{
    const auto whole = std::max(0LL, std::llround(seconds));
    return QStringLiteral("%1:%2").arg(whole / 60).arg(whole % 60, 2, 10, QChar(u'0'));
}

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
    : QObject(parent)
    , m_history(surroundings.history)
    , m_panels(surroundings.panels)
    , m_preparer(m_temporaries, surroundings.preparation)
    , m_model(surroundings.models)
    , m_run({surroundings.resourceFolder, true}, {.removeTemporaries = [this] { m_temporaries.removeTemporaries(); },
                                                  .saveToHistory = [this] { saveToHistory(); }})
    , m_seconds(surroundings.seconds)
    , m_exports({.run = m_run,
                 .panels = surroundings.panels,
                 .naming = transcriptionNaming(),
                 .source = [this] { return m_selectedFile; }})
    , m_playback(microphonePlayback(),
                 {.file = [this] { return m_selectedFile; },
                  .setError = [this](const QString &error) { m_run.setError(error); },
                  .setStatus = [this](const QString &status) { m_run.setStatus(status); }},
                 surroundings.openPlayer)
    , m_pane(m_run, {}, {.controller = &m_playback, .isAvailable = [this] { return m_selectedFile.has_value(); }})
    , m_input(surroundings.makeInput(
          {.interrupted = [this](const Error &interruption) { handleInterruption(interruption); },
           .resumed = [this] { handleResumption(); }}))
{
    m_recordingTimer.setInterval(tickInterval);
    m_recordingTimer.callOnTimeout(this, &RecordAudioView::tick);
    connect(&m_run, &TranscriptionRun::isTranscribingChanged, this, &RecordAudioView::controlsChanged);
    connect(this, &RecordAudioView::takeChanged, this, &RecordAudioView::controlsChanged);
    connect(this, &RecordAudioView::takeChanged, this, &RecordAudioView::recordingStatusTextChanged);
    connect(this, &RecordAudioView::takeChanged, this, &RecordAudioView::levelTextChanged);
    connect(&m_model, &ModelChoice::changed, this, &RecordAudioView::controlsChanged);
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
    const QString time = recordingTimeText(m_recordingDuration);
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

QString RecordAudioView::startLabel() const
{
    return m_run.isTranscribing() ? QStringLiteral("Transcribing…") : QStringLiteral("Transcribe");
}

bool RecordAudioView::canStart() const
{
    return !m_run.isTranscribing() && m_selectedFile && m_model.modelPath();
}

void RecordAudioView::appear()
{
    m_model.refresh();
    m_pane.syncTranscriptWindow();
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
    m_run.setError(std::nullopt);
    m_run.setStatus(QString());
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
        m_run.setError(QStringLiteral("Microphone access is required to record."));
        return;
    }
    clearForNewTake();
    if (m_selectedFile)
        removeIfThere(*m_selectedFile);
    m_lastHistoryRecordingPath = std::nullopt;
    try {
        startRecorder(freePath(temporaryFolder(), newDatedName(QStringLiteral("microphone_")), QStringLiteral("wav")));
    } catch (const Error &error) {
        m_run.setError(QStringLiteral("Could not start recording: ") + error.localizedDescription());
        stopTake(true);
    }
}

void RecordAudioView::clearForNewTake()
{
    m_run.clearOutput();
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
    m_run.setStatus(QStringLiteral("Recording…"));
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
    m_run.setStatus(QStringLiteral("Recording paused."));
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
    m_run.setStatus(QStringLiteral("Recording…"));
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
        m_run.setStatus(QString());
    }
    emit takeChanged();
    if (discards || !m_selectedFile)
        return;
    enterInHistory();
    m_run.setStatus(QStringLiteral("Recording ready. Transcribe when you're ready."));
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

void RecordAudioView::enterInHistory()
{
    if (!itemExists(*m_selectedFile) || m_selectedFile == m_lastHistoryRecordingPath)
        return;
    m_lastHistoryRecordingPath = m_selectedFile;
    m_history.addEntry({
        .text = {},
        .srtText = std::nullopt,
        .sourceLabel = *m_selectedFile,
        .model = m_model.modelName(),
        .language = effectiveLanguage(m_language.language()),
        .diarization = false,
        .recordingPath = m_selectedFile,
        .replaceExisting = true,
    });
}

// What happens to a take that is open: the user is told at once that sound is missing.

void RecordAudioView::handleInterruption(const Error &interruption)
{
    if (!m_isRecording)
        return;
    m_interruption = interruption.localizedDescription();
    m_run.setError(m_interruption);
}

void RecordAudioView::handleResumption()
{
    if (m_interruption && m_run.error() == m_interruption)
        m_run.setError(std::nullopt);
    m_interruption = std::nullopt;
}

void RecordAudioView::handleRecorderFailure(const Error &failure)
{
    stopTake(false);
    m_run.setError(failure.localizedDescription());
}

void RecordAudioView::saveAudio()
{
    if (!m_selectedFile)
        return;
    m_panels.saveFile({lastPathComponent(*m_selectedFile), {QStringLiteral("wav")}},
                      [self = QPointer(this)](const std::optional<QString> &destination) {
                          if (self && self->m_selectedFile && destination)
                              self->saveTake(*destination);
                      });
}

void RecordAudioView::saveTake(const QString &destination)
{
    try {
        if (!isSameItem(*m_selectedFile, destination)) {
            if (itemExists(destination))
                removeItem(destination);
            copyFile(*m_selectedFile, destination, FileAccess::Usual);
        }
        m_run.setStatus(QStringLiteral("Saved recording to ") + lastPathComponent(destination));
    } catch (const Error &error) {
        m_run.setError(QStringLiteral("Could not save recording: ") + error.localizedDescription());
    }
}

// The run

void RecordAudioView::transcribe()
{
    if (m_isRecording)
        stopTake(false);
    if (!m_selectedFile) {
        m_run.setError(QStringLiteral("Please record audio first."));
        return;
    }
    const auto modelPath = m_model.modelPath();
    if (!modelPath) {
        m_run.setError(QStringLiteral("Please select a downloaded model."));
        return;
    }
    m_run.beginRun();
    prepareAndRun(*m_selectedFile, *modelPath);
}

void RecordAudioView::prepareAndRun(const QString &path, const QString &modelPath)
{
    runOnWorker([self = QPointer(this), report = reportTo(this), preparer = m_preparer, path, modelPath,
                 language = m_language.language()] {
        const auto audioPath = prepareAudio(path, microphonePreparation(), preparer, report);
        if (!audioPath)
            return;
        postToMain([self, audioPath = *audioPath, modelPath, language] {
            if (self)
                self->m_run.startBegun(audioPath, modelPath, language);
        });
    });
}

void RecordAudioView::saveToHistory()
{
    const QString text = m_run.displayedTranscript();
    if (trimmedOfWhitespaceAndNewlines(text).isEmpty())
        return;
    const auto segments = parseTimedSegments(m_run.rawOutput(), m_run.stripDashes());
    m_history.addEntry({
        .text = text,
        .srtText = renderExport(ExportFormat::srt, {.text = text, .segments = segments}),
        .sourceLabel = m_selectedFile.value_or(QStringLiteral("recording")),
        .model = m_model.modelName(),
        .language = m_run.runLanguage(),
        .diarization = false,
        .recordingPath = m_selectedFile,
        .replaceExisting = true,
    });
}

} // namespace sorvanta
