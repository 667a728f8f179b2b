#pragma once

#include "audio/playback_controller.h"
#include "platform/media/audio_recorder.h"
#include "platform/media/microphone.h"
#include "screens/transcription_screen.h"

#include <QTimer>
#include <QtQml/qqml.h>

#include <functional>
#include <memory>
#include <optional>

namespace sorvanta {

/// The screen that records the microphone and turns the take into a transcript. Main thread only.
class RecordAudioView : public sorvanta::TranscriptionScreen { // the whole name, by which QML finds the base
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the application")
    Q_PROPERTY(bool isRecording READ isRecording NOTIFY takeChanged)
    Q_PROPERTY(QString recordLabel READ recordLabel NOTIFY takeChanged)
    Q_PROPERTY(QString recordSymbol READ recordSymbol NOTIFY takeChanged)
    Q_PROPERTY(bool canRecord READ canRecord NOTIFY canRecordChanged)
    Q_PROPERTY(QString pauseLabel READ pauseLabel NOTIFY takeChanged)
    Q_PROPERTY(QString pauseSymbol READ pauseSymbol NOTIFY takeChanged)
    Q_PROPERTY(QString heading READ heading NOTIFY takeChanged)
    Q_PROPERTY(QString recordingStatusText READ recordingStatusText NOTIFY recordingStatusTextChanged)
    Q_PROPERTY(float inputLevel READ inputLevel NOTIFY inputLevelChanged)
    Q_PROPERTY(bool isLevelActive READ isLevelActive NOTIFY takeChanged)
    Q_PROPERTY(QString levelText READ levelText NOTIFY levelTextChanged)
    Q_PROPERTY(bool canUseTake READ canUseTake NOTIFY takeChanged)
    Q_PROPERTY(QString playLabel READ playLabel NOTIFY playChanged)
    Q_PROPERTY(QString playSymbol READ playSymbol NOTIFY playChanged)

public:
    /// The microphone as the screen uses it; a test brings its own.
    struct Input {
        /// Asks whether the microphone may be recorded; as Microphone::requestAccess().
        std::function<void(std::function<void(bool)>)> requestAccess;
        /// A recorder into a new file, made within the answer; as Microphone::makeRecorder(). @throws Error
        std::function<std::unique_ptr<AudioRecorder>(const QString &, AudioRecorder::Events)> makeRecorder;
    };
    /// Makes the input of a screen. Each of the two events may come while a recorder lives.
    using MakeInput = std::function<Input(Microphone::Events)>;

    /// The default microphone of the sound server, in the form that the engine wants.
    static Input systemInput(Microphone::Events events);
    /// Seconds of a clock that is never set.
    static double systemSeconds();

    /// What the screen works with; all of it outlives the screen.
    struct Surroundings {
        ScreenSurroundings shared;
        PlaybackController::OpenPlayer openPlayer = openAudioPlayer;
        MakeInput makeInput = systemInput;
        std::function<double()> seconds = systemSeconds;
    };

    explicit RecordAudioView(const Surroundings &surroundings, QObject *parent = nullptr);
    /// Ends a take that is open; it stays in the history.
    ~RecordAudioView() override;

    TranscriptPane *pane() override { return &m_pane; }
    PlaybackController &playback() { return m_playback; }

    /// The path of the take, or none.
    const std::optional<QString> &selectedFile() const { return m_selectedFile; }
    /// Whether a take is open, also while it is paused.
    bool isRecording() const { return m_isRecording; }
    bool isPaused() const { return m_isPaused; }
    /// The length of the take as it is shown, in seconds.
    double recordingDuration() const { return m_recordingDuration; }
    /// Whether the time and the level are being read at intervals.
    bool isTicking() const { return m_recordingTimer.isActive(); }

    QString recordLabel() const;
    QString recordSymbol() const;
    bool canRecord() const { return !run()->isTranscribing(); }
    QString pauseLabel() const;
    QString pauseSymbol() const;
    QString heading() const;
    QString recordingStatusText() const;
    /// The amplitude of the average power, 0 to 1.
    float inputLevel() const { return m_inputLevel; }
    bool isLevelActive() const { return m_isRecording && !m_isPaused; }
    QString levelText() const;
    /// Whether there is a take that can be played and saved.
    bool canUseTake() const { return m_selectedFile && !m_isRecording; }
    QString playLabel() const;
    QString playSymbol() const;

    /// Begins a take, or ends the open one.
    Q_INVOKABLE void toggleRecording();
    /// Pauses the open take, or goes on with it.
    Q_INVOKABLE void togglePause();
    Q_INVOKABLE void togglePlayback() { m_playback.togglePlayback(); }
    /// Shows a panel and puts a copy of the take where the user says.
    Q_INVOKABLE void saveAudio();
    /// Ends an open take and transcribes the take with the chosen model.
    Q_INVOKABLE void transcribe();

    Q_SIGNAL void takeChanged();
    Q_SIGNAL void canRecordChanged();
    Q_SIGNAL void recordingStatusTextChanged();
    Q_SIGNAL void inputLevelChanged();
    Q_SIGNAL void levelTextChanged();
    Q_SIGNAL void playChanged();

private:
    void beginTake();
    void handleAccess(bool isGranted);
    void clearForNewTake();
    void startRecorder(const QString &path);
    void pauseTake();
    void resumeTake();
    void stopTake(bool discards);
    void tick();
    void addOpenStretch();
    void setInputLevel(float level);
    void setRecordingDuration(double seconds);
    void selectFile(const std::optional<QString> &path);
    void handleInterruption(const Error &interruption);
    void handleResumption();
    void handleRecorderFailure(const Error &failure);

    std::optional<QString> m_selectedFile;
    bool m_isRecording = false;
    bool m_isPaused = false;
    float m_inputLevel = 0;
    double m_recordingDuration = 0;
    double m_recordingAccumulated = 0; // of the stretches that are over
    std::optional<double> m_recordingStart; // of the running stretch, on the clock
    std::optional<QString> m_interruption; // what the error says while no sound comes
    const std::function<double()> m_seconds;
    QTimer m_recordingTimer{this};
    PlaybackController m_playback;
    TranscriptPane m_pane;
    Input m_input;
    std::unique_ptr<AudioRecorder> m_audioRecorder;
};

} // namespace sorvanta
