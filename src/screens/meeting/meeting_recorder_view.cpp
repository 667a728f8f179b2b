#include "screens/meeting/meeting_recorder_view.h"

#include "core/transcript_text.h"
#include "platform/paths.h"

#include <algorithm>

namespace sorvanta {

MeetingRecorderView::MeetingRecorderView(const Surroundings &surroundings, QObject *parent)
    : TranscriptionScreen(
        surroundings.shared,
        {.preparation = meetingPreparation(),
         .printsCommand = false,
         .naming = meetingNaming(),
         .source = [this] { return m_recorder.outputURL(); },
         .missingSourceError = QStringLiteral("Please record audio first."),
         .unknownSource = QStringLiteral("meeting-recording"),
         .keepsRecording = true,
         .transcribed = [this] { return m_earlierOutput ? m_earlierOutput : m_recorder.outputURL(); }},
        parent)
    , m_recorder(surroundings.recorder)
    , m_pane(*run(), {.clearsError = false},
             {.controller = &m_recorder.playback(), .isAvailable = [this] { return hasOutput(); }})
{
    m_timer.setInterval(surroundings.second);
    connect(&m_timer, &QTimer::timeout, this, [this] {
        m_elapsed += 1;
        emit recordingChanged();
    });
    followRecorder();
    followPlayback();
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
            run()->setError(message);
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
    if (run()->isTranscribing() && !m_earlierOutput)
        m_earlierOutput = m_recorder.outputURL();
    setRecordStatus(QStringLiteral("Starting…"));
    m_recorder.startRecording(m_includeMic, [this] { takeStartResult(); });
}

void MeetingRecorderView::takeStartResult()
{
    if (m_recorder.isRecording()) {
        setRecordStatus(QStringLiteral("Recording system audio."));
        expectNewRecording();
    } else if (const auto &message = m_recorder.errorMessage()) {
        setRecordStatus(QString());
        run()->setError(message);
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
        run()->setError(std::nullopt);
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
    emit canStartChanged();
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
    saveSource(QStringLiteral("m4a"), [this](const QString &status) { setRecordStatus(status); });
}

void MeetingRecorderView::transcribe()
{
    const auto modelPath = modelPathForStart();
    if (!modelPath)
        return;
    const QString path = *m_recorder.outputURL();
    m_recorder.stopRecording();
    m_earlierOutput.reset();
    run()->beginPreparation(QStringLiteral("Converting…"));
    prepare(path, [this, modelPath = *modelPath](const QString &audioPath) {
        if (run()->isStopping())
            run()->cancelPreparation();
        else
            run()->start(audioPath, modelPath, language()->language());
    });
}

} // namespace sorvanta
