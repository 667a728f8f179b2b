#pragma once

#include "audio/screen_audio_recorder.h"
#include "core/audio_preparer.h"
#include "core/language_choice.h"
#include "core/temporary_files.h"
#include "core/transcription_run.h"
#include "export/run_exports.h"
#include "models/model_choice.h"
#include "screens/pane/transcript_pane.h"

#include <QObject>
#include <QTimer>
#include <QtQml/qqml.h>

#include <chrono>
#include <optional>

namespace sorvanta {

class FilePanels;
class ModelsSettingsViewModel;
class TranscriptionHistoryStore;

/// The screen that records what the machine plays, with or without the microphone, and transcribes that. Main thread
/// only.
class MeetingRecorderView : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the application")
    Q_PROPERTY(sorvanta::TranscriptionRun *run READ run CONSTANT)
    Q_PROPERTY(sorvanta::ModelChoice *model READ model CONSTANT)
    Q_PROPERTY(sorvanta::LanguageChoice *language READ language CONSTANT)
    Q_PROPERTY(sorvanta::TranscriptPane *pane READ pane CONSTANT)
    Q_PROPERTY(sorvanta::ExportMenu *exportMenu READ exportMenu CONSTANT)
    Q_PROPERTY(bool includeMic READ includeMic WRITE setIncludeMic NOTIFY recordingChanged)
    Q_PROPERTY(bool isRecording READ isRecording NOTIFY recordingChanged)
    Q_PROPERTY(QString recordLabel READ recordLabel NOTIFY recordingChanged)
    Q_PROPERTY(QString recordSymbol READ recordSymbol NOTIFY recordingChanged)
    Q_PROPERTY(bool canRecord READ canRecord NOTIFY recordingChanged)
    Q_PROPERTY(bool isPauseShown READ isPauseShown NOTIFY recordingChanged)
    Q_PROPERTY(QString pauseLabel READ pauseLabel NOTIFY recordingChanged)
    Q_PROPERTY(QString pauseSymbol READ pauseSymbol NOTIFY recordingChanged)
    Q_PROPERTY(bool canPause READ canPause NOTIFY recordingChanged)
    Q_PROPERTY(QString playLabel READ playLabel NOTIFY playbackChanged)
    Q_PROPERTY(QString playSymbol READ playSymbol NOTIFY playbackChanged)
    Q_PROPERTY(bool hasOutput READ hasOutput NOTIFY recordingChanged)
    Q_PROPERTY(QString headline READ headline NOTIFY recordingChanged)
    Q_PROPERTY(QString recordStatus READ recordStatus NOTIFY recordingChanged)
    Q_PROPERTY(bool isPlaybackShown READ isPlaybackShown NOTIFY playbackChanged)
    Q_PROPERTY(double sliderPosition READ sliderPosition NOTIFY playbackChanged)
    Q_PROPERTY(double sliderEnd READ sliderEnd NOTIFY playbackChanged)
    Q_PROPERTY(QString positionText READ positionText NOTIFY playbackChanged)
    Q_PROPERTY(QString durationText READ durationText NOTIFY playbackChanged)
    Q_PROPERTY(QString transcribeLabel READ transcribeLabel NOTIFY canTranscribeChanged)
    Q_PROPERTY(bool canTranscribe READ canTranscribe NOTIFY canTranscribeChanged)

public:
    /// What the screen works with; all of it outlives the screen.
    struct Surroundings {
        ModelsSettingsViewModel &models;
        TranscriptionHistoryStore &history;
        FilePanels &panels;
        QString resourceFolder; ///< where the engine lies
        ScreenAudioRecorder::Surroundings recorder = ScreenAudioRecorder::Surroundings::ofThisMachine();
        AudioPreparer::Settings preparation = {};
        std::chrono::milliseconds second = std::chrono::seconds(1); ///< between two steps of the elapsed time
    };

    explicit MeetingRecorderView(const Surroundings &surroundings, QObject *parent = nullptr);
    /// Does what disappear() does.
    ~MeetingRecorderView() override;

    ScreenAudioRecorder &recorder() { return m_recorder; }
    TranscriptionRun *run() { return &m_run; }
    ModelChoice *model() { return &m_model; }
    LanguageChoice *language() { return &m_language; }
    TranscriptPane *pane() { return &m_pane; }
    /// What the transcript can be exported as.
    ExportMenu *exportMenu() { return m_exports.menu(); }

    bool includeMic() const { return m_includeMic; }
    /// Of the next recording; the one under way stays as it is.
    void setIncludeMic(bool includeMic);

    bool isRecording() const { return m_recorder.isRecording(); }
    QString recordLabel() const;
    QString recordSymbol() const;
    bool canRecord() const { return !m_recorder.isStarting(); }
    bool isPauseShown() const { return m_recorder.isRecording(); }
    QString pauseLabel() const;
    QString pauseSymbol() const;
    bool canPause() const { return !m_recorder.isStarting(); }
    QString playLabel() const;
    QString playSymbol() const;
    /// Whether there is a file to play and to save.
    bool hasOutput() const { return m_recorder.outputURL().has_value(); }

    QString headline() const;
    /// A line under the headline; may be empty.
    const QString &recordStatus() const { return m_recordStatus; }
    /// Seconds; a count of the timer's steps since the recording began, without its pauses.
    double elapsed() const { return m_elapsed; }
    bool isTiming() const { return m_timer.isActive(); }

    bool isPlaybackShown() const;
    double sliderPosition() const;
    double sliderEnd() const;
    QString positionText() const;
    QString durationText() const;
    bool isSeeking() const { return m_seeking; }

    QString transcribeLabel() const;
    bool canTranscribe() const;

    /// What the screen does when it comes on show, and when its window goes.
    void appear();
    void disappear();

    Q_INVOKABLE void toggleRecording();
    Q_INVOKABLE void togglePause();
    Q_INVOKABLE void playLatest();
    /// Asks for a place and copies the recording there.
    Q_INVOKABLE void saveAudio();
    /// The slider was moved, to this position in seconds.
    Q_INVOKABLE void moveSlider(double seconds);
    /// Transcribes the recording with the chosen model; one that is still on is stopped first.
    Q_INVOKABLE void transcribe();

    Q_SIGNAL void recordingChanged();
    Q_SIGNAL void playbackChanged();
    Q_SIGNAL void canTranscribeChanged();

private:
    void followRecorder();
    void followPlayback();
    void setRecordStatus(const QString &status);
    void takeStartResult();
    void takeIsRecording();
    void takeOutputURL();
    void copyRecording(const QString &destination);
    void prepareAndRun(const QString &path, const QString &modelPath);
    void enterRecording();
    void saveToHistory();

    TranscriptionHistoryStore &m_history;
    FilePanels &m_panels;
    TemporaryFiles m_temporaries;
    AudioPreparer m_preparer;
    ModelChoice m_model;
    LanguageChoice m_language;
    TranscriptionRun m_run;
    ScreenAudioRecorder m_recorder;
    RunExports m_exports;
    TranscriptPane m_pane;
    QTimer m_timer;
    QString m_recordStatus;
    double m_elapsed = 0;
    bool m_includeMic = true;
    bool m_seeking = false;
    std::optional<QString> m_lastHistoryRecordingPath;
};

} // namespace sorvanta
