#pragma once

#include "audio/playback_controller.h"
#include "core/audio_preparer.h"
#include "core/language_choice.h"
#include "core/temporary_files.h"
#include "core/transcription_run.h"
#include "export/run_exports.h"
#include "models/model_choice.h"
#include "platform/media/audio_recorder.h"
#include "platform/media/microphone.h"
#include "screens/pane/transcript_pane.h"

#include <QObject>
#include <QObjectBindableProperty>
#include <QTimer>
#include <QtQml/qqml.h>

#include <functional>
#include <memory>
#include <optional>

namespace sorvanta {

class FilePanels;
class ModelsSettingsViewModel;
class TranscriptionHistoryStore;

/// "1:05" of seconds, which are rounded to whole ones and no less than 0.
QString recordingTimeText(double seconds);

/// The screen that records the microphone and turns the take into a transcript. Main thread only.
class RecordAudioView : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the application")
    Q_PROPERTY(sorvanta::TranscriptionRun *run READ run CONSTANT)
    Q_PROPERTY(sorvanta::ModelChoice *model READ model CONSTANT)
    Q_PROPERTY(sorvanta::LanguageChoice *language READ language CONSTANT)
    Q_PROPERTY(sorvanta::TranscriptPane *pane READ pane CONSTANT)
    Q_PROPERTY(sorvanta::ExportMenu *exportMenu READ exportMenu CONSTANT)
    Q_PROPERTY(bool isRecording READ isRecording NOTIFY takeChanged)
    Q_PROPERTY(QString recordLabel READ recordLabel NOTIFY takeChanged)
    Q_PROPERTY(QString recordSymbol READ recordSymbol NOTIFY takeChanged)
    Q_PROPERTY(bool canRecord READ canRecord NOTIFY controlsChanged)
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
    Q_PROPERTY(QString startLabel READ startLabel NOTIFY controlsChanged)
    Q_PROPERTY(bool canStart READ canStart NOTIFY controlsChanged)

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
        ModelsSettingsViewModel &models;
        TranscriptionHistoryStore &history;
        FilePanels &panels;
        QString resourceFolder; ///< where the engine lies
        AudioPreparer::Settings preparation = {};
        PlaybackController::OpenPlayer openPlayer = openAudioPlayer;
        MakeInput makeInput = systemInput;
        std::function<double()> seconds = systemSeconds;
    };

    explicit RecordAudioView(const Surroundings &surroundings, QObject *parent = nullptr);
    /// Ends a take that is open; it stays in the history.
    ~RecordAudioView() override;

    TranscriptionRun *run() { return &m_run; }
    ModelChoice *model() { return &m_model; }
    LanguageChoice *language() { return &m_language; }
    TranscriptPane *pane() { return &m_pane; }
    PlaybackController &playback() { return m_playback; }
    /// What the transcript can be exported as.
    ExportMenu *exportMenu() { return m_exports.menu(); }

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
    bool canRecord() const { return !m_run.isTranscribing(); }
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
    QString startLabel() const;
    bool canStart() const;

    /// What the screen does when it comes on show.
    void appear();

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
    Q_SIGNAL void controlsChanged();
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
    void enterInHistory();
    void saveTake(const QString &destination);
    void prepareAndRun(const QString &path, const QString &modelPath);
    void saveToHistory();
    void handleInterruption(const Error &interruption);
    void handleResumption();
    void handleRecorderFailure(const Error &failure);

    TranscriptionHistoryStore &m_history;
    FilePanels &m_panels;
    TemporaryFiles m_temporaries;
    AudioPreparer m_preparer;
    ModelChoice m_model;
    LanguageChoice m_language;
    TranscriptionRun m_run;
    std::optional<QString> m_selectedFile;
    bool m_isRecording = false;
    bool m_isPaused = false;
    float m_inputLevel = 0;
    double m_recordingDuration = 0;
    double m_recordingAccumulated = 0; // of the stretches that are over
    std::optional<double> m_recordingStart; // of the running stretch, on the clock
    std::optional<QString> m_lastHistoryRecordingPath;
    std::optional<QString> m_interruption; // what the error says while no sound comes
    const std::function<double()> m_seconds;
    QTimer m_recordingTimer;
    RunExports m_exports;
    PlaybackController m_playback;
    TranscriptPane m_pane;
    Input m_input;
    std::unique_ptr<AudioRecorder> m_audioRecorder;
};

} // namespace sorvanta
