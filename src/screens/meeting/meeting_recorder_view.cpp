#include "screens/meeting/meeting_recorder_view.h"

#include "core/audio_preparation.h"
#include "core/languages.h"
#include "core/transcript_text.h"
#include "export/text_export.h"
#include "history/transcription_history_store.h"
#include "platform/desktop/file_panels.h"
#include "platform/error.h"
#include "platform/file_system.h"
#include "platform/main_queue.h"
#include "platform/paths.h"
#include "platform/unicode_text.h"
#include "platform/worker.h"

#include <QPointer>

#include <algorithm>

namespace sorvanta {

namespace {

/// The fields of a screen that a preparation writes. The screen may go while the worker still prepares.
PreparationReport reportTo(const QPointer<MeetingRecorderView> &screen)
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

MeetingRecorderView::MeetingRecorderView(const Surroundings &surroundings, QObject *parent)
    : QObject(parent)
    , m_history(surroundings.history)
    , m_panels(surroundings.panels)
    , m_preparer(m_temporaries, surroundings.preparation)
    , m_model(surroundings.models)
    , m_run({surroundings.resourceFolder, false}, {.removeTemporaries = [this] { m_temporaries.removeTemporaries(); },
                                                   .saveToHistory = [this] { saveToHistory(); }})
    , m_recorder(surroundings.recorder)
    , m_exports({.run = m_run,
                 .panels = surroundings.panels,
                 .naming = meetingNaming(),
                 .source = [this] { return m_recorder.outputURL(); }})
    , m_pane(m_run, {.clearsError = false},
             {.controller = &m_recorder.playback(), .isAvailable = [this] { return hasOutput(); }})
{
    m_timer.setInterval(surroundings.second);
    connect(&m_timer, &QTimer::timeout, this, [this] {
        m_elapsed += 1;
        emit recordingChanged();
    });
    followRecorder();
    followPlayback();
    connect(&m_run, &TranscriptionRun::isTranscribingChanged, this, &MeetingRecorderView::canTranscribeChanged);
    connect(&m_model, &ModelChoice::changed, this, &MeetingRecorderView::canTranscribeChanged);
}

MeetingRecorderView::~MeetingRecorderView()
{
    disappear();
}

void MeetingRecorderView::followRecorder()
{
    connect(&m_recorder, &ScreenAudioRecorder::isRecordingChanged, this, &MeetingRecorderView::takeIsRecording);
    connect(&m_recorder, &ScreenAudioRecorder::outputURLChanged, this, &MeetingRecorderView::takeOutputURL);
    connect(&m_recorder, &ScreenAudioRecorder::isStartingChanged, this, &MeetingRecorderView::recordingChanged);
    connect(&m_recorder, &ScreenAudioRecorder::isPausedChanged, this, &MeetingRecorderView::recordingChanged);
    connect(&m_recorder, &ScreenAudioRecorder::errorMessageChanged, this, [this] {
        if (const auto &message = m_recorder.errorMessage())
            m_run.setError(message);
    });
}

void MeetingRecorderView::followPlayback()
{
    const PlaybackController *playback = &m_recorder.playback();
    connect(playback, &PlaybackController::isPlayingChanged, this, &MeetingRecorderView::playbackChanged);
    connect(playback, &PlaybackController::isPlaybackPausedChanged, this, &MeetingRecorderView::playbackChanged);
    connect(playback, &PlaybackController::playbackTimeChanged, this, &MeetingRecorderView::playbackChanged);
    connect(playback, &PlaybackController::playbackDurationChanged, this, &MeetingRecorderView::playbackChanged);
}

void MeetingRecorderView::setIncludeMic(bool includeMic)
{
    m_includeMic = includeMic;
    emit recordingChanged();
}

QString MeetingRecorderView::recordLabel() const
{
    if (m_recorder.isRecording())
        return QStringLiteral("Stop Recording");
    return m_includeMic ? QStringLiteral("Record System Audio + Microphone") : QStringLiteral("Record System Audio");
}

QString MeetingRecorderView::recordSymbol() const
{
    return m_recorder.isRecording() ? QStringLiteral("stop.circle.fill") : QStringLiteral("record.circle.fill");
}

QString MeetingRecorderView::pauseLabel() const
{
    return m_recorder.isPaused() ? QStringLiteral("Resume") : QStringLiteral("Pause");
}

QString MeetingRecorderView::pauseSymbol() const
{
    return m_recorder.isPaused() ? QStringLiteral("play.circle") : QStringLiteral("pause.circle");
}

QString MeetingRecorderView::playLabel() const
{
    const PlaybackController &playback = m_recorder.playback();
    if (!playback.isPlaying())
        return QStringLiteral("Play Latest");
    return playback.isPlaybackPaused() ? QStringLiteral("Resume Playback") : QStringLiteral("Pause Playback");
}

QString MeetingRecorderView::playSymbol() const
{
    return m_recorder.playback().isRunning() ? QStringLiteral("pause.fill") : QStringLiteral("play.fill");
}

/// While paused, the recording still is on: its words come first, and those of a pause never.
QString MeetingRecorderView::headline() const
{
    if (m_recorder.isRecording())
        return QStringLiteral("Recording system audio… ") + formatClock(m_elapsed);
    if (m_recorder.isPaused())
        return QStringLiteral("Recording paused at ") + formatClock(m_elapsed);
    if (const auto &output = m_recorder.outputURL())
        return QStringLiteral("Latest recording ready: ") + lastPathComponent(*output);
    return QStringLiteral("Press Record to capture system output audio.");
}

bool MeetingRecorderView::isPlaybackShown() const
{
    return m_recorder.playback().playbackDuration() > 0;
}

double MeetingRecorderView::sliderPosition() const
{
    return std::min(m_recorder.playback().playbackTime(), m_recorder.playback().playbackDuration());
}

double MeetingRecorderView::sliderEnd() const
{
    return m_recorder.playback().playbackDuration();
}

QString MeetingRecorderView::positionText() const
{
    return formatClock(m_recorder.playback().playbackTime());
}

QString MeetingRecorderView::durationText() const
{
    return formatClock(m_recorder.playback().playbackDuration());
}

QString MeetingRecorderView::transcribeLabel() const
{
    return m_run.isTranscribing() ? QStringLiteral("Transcribing…") : QStringLiteral("Transcribe");
}

bool MeetingRecorderView::canTranscribe() const
{
    return !m_run.isTranscribing() && hasOutput() && m_model.modelPath();
}

void MeetingRecorderView::appear()
{
    m_model.refresh();
    m_pane.syncTranscriptWindow();
}

void MeetingRecorderView::disappear()
{
    m_recorder.stopRecording();
    if (m_recorder.playback().isPlaying())
        m_recorder.togglePlayback();
}

void MeetingRecorderView::toggleRecording()
{
    if (m_recorder.isRecording()) {
        m_recorder.stopRecording();
        return;
    }
    setRecordStatus(QStringLiteral("Starting…"));
    m_recorder.startRecording(m_includeMic, [this] { takeStartResult(); });
}

void MeetingRecorderView::takeStartResult()
{
    if (m_recorder.isRecording()) {
        setRecordStatus(QStringLiteral("Recording system audio."));
        m_lastHistoryRecordingPath.reset();
    } else if (const auto &message = m_recorder.errorMessage()) {
        setRecordStatus(QString());
        m_run.setError(message);
    }
}

void MeetingRecorderView::togglePause()
{
    if (!m_recorder.isRecording())
        return;
    if (m_recorder.isPaused()) {
        m_recorder.resumeRecording();
        m_timer.start();
        setRecordStatus(QStringLiteral("Recording system audio."));
    } else {
        m_recorder.pauseRecording();
        m_timer.stop();
        setRecordStatus(QStringLiteral("Recording paused."));
    }
}

void MeetingRecorderView::setRecordStatus(const QString &status)
{
    m_recordStatus = status;
    emit recordingChanged();
}

void MeetingRecorderView::takeIsRecording()
{
    if (m_recorder.isRecording()) {
        m_timer.start();
        m_run.setError(std::nullopt);
        setRecordStatus(QStringLiteral("Recording system audio. Keep this app open."));
        return;
    }
    m_timer.stop();
    m_elapsed = 0;
    setRecordStatus(hasOutput() ? QStringLiteral("Captured audio. Use Transcribe below.") : QString());
    enterRecording();
}

void MeetingRecorderView::takeOutputURL()
{
    if (m_recorder.playback().isPlaying())
        m_recorder.togglePlayback();
    m_pane.syncTranscriptWindow();
    enterRecording();
    emit recordingChanged();
    emit canTranscribeChanged();
}

void MeetingRecorderView::playLatest()
{
    m_recorder.togglePlayback();
    const PlaybackController &playback = m_recorder.playback();
    if (playback.isRunning())
        setRecordStatus(QStringLiteral("Playing latest recording…"));
    else if (playback.isPlaying())
        setRecordStatus(QStringLiteral("Playback paused."));
}

void MeetingRecorderView::moveSlider(double seconds)
{
    m_seeking = true;
    m_recorder.seekPlayback(seconds);
    m_seeking = false;
}

void MeetingRecorderView::saveAudio()
{
    const auto &output = m_recorder.outputURL();
    if (!output)
        return;
    const QPointer self(this);
    m_panels.saveFile({lastPathComponent(*output), {QStringLiteral("m4a")}},
                      [self](const std::optional<QString> &path) {
                          if (self && path)
                              self->copyRecording(*path);
                      });
}

void MeetingRecorderView::copyRecording(const QString &destination)
{
    const auto &output = m_recorder.outputURL();
    if (!output)
        return;
    try {
        // To save the recording in its own place must not remove it.
        if (!isSameItem(*output, destination)) {
            if (itemExists(destination))
                removeItem(destination);
            copyFile(*output, destination, FileAccess::Usual);
        }
        setRecordStatus(QStringLiteral("Saved recording to ") + lastPathComponent(destination));
    } catch (const Error &failure) {
        m_run.setError(QStringLiteral("Could not save recording: ") + failure.localizedDescription());
    }
}

void MeetingRecorderView::transcribe()
{
    const std::optional<QString> path = m_recorder.outputURL();
    if (!path) {
        m_run.setError(QStringLiteral("Please record audio first."));
        return;
    }
    const auto modelPath = m_model.modelPath();
    if (!modelPath) {
        m_run.setError(QStringLiteral("Please select a downloaded model."));
        return;
    }
    m_recorder.stopRecording();
    m_run.beginPreparation(QStringLiteral("Converting…"));
    prepareAndRun(*path, *modelPath);
}

void MeetingRecorderView::prepareAndRun(const QString &path, const QString &modelPath)
{
    runOnWorker([self = QPointer(this), report = reportTo(this), preparer = m_preparer, path, modelPath] {
        const auto audioPath = prepareAudio(path, meetingPreparation(), preparer, report);
        if (!audioPath)
            return;
        postToMain([self, audioPath = *audioPath, modelPath] {
            if (self)
                self->m_run.start(audioPath, modelPath, self->m_language.language());
        });
    });
}

void MeetingRecorderView::enterRecording()
{
    const auto &output = m_recorder.outputURL();
    if (!output || !itemExists(*output) || output == m_lastHistoryRecordingPath)
        return;
    m_lastHistoryRecordingPath = output;
    m_history.addEntry({
        .sourceLabel = *output,
        .model = m_model.modelName(),
        .language = effectiveLanguage(m_language.language()),
        .recordingPath = output,
        .replaceExisting = true,
    });
}

void MeetingRecorderView::saveToHistory()
{
    const QString text = m_run.displayedTranscript();
    if (trimmedOfWhitespaceAndNewlines(text).isEmpty())
        return;
    const auto segments = parseTimedSegments(m_run.rawOutput(), m_run.stripDashes());
    const auto &output = m_recorder.outputURL();
    m_history.addEntry({
        .text = text,
        .srtText = renderExport(ExportFormat::srt, {.text = text, .segments = segments}),
        .sourceLabel = output.value_or(QStringLiteral("meeting-recording")),
        .model = m_model.modelName(),
        .language = m_run.runLanguage(),
        .diarization = false,
        .recordingPath = output,
        .replaceExisting = true,
    });
}

} // namespace sorvanta
