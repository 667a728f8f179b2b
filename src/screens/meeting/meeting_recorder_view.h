#pragma once

#include "audio/screen_audio_recorder.h"
#include "screens/transcription_screen.h"

#include <QTimer>
#include <QtQml/qqml.h>

#include <chrono>
#include <optional>

namespace sorvanta {

/// The screen that records what the machine plays, with or without the microphone, and transcribes that. Main thread
/// only.
class MeetingRecorderView : public sorvanta::TranscriptionScreen { // the whole name, by which QML finds the base
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the application")
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

public:
    /// What the screen works with; all of it outlives the screen.
    struct Surroundings {
        ScreenSurroundings shared;
        ScreenAudioRecorder::Surroundings recorder = ScreenAudioRecorder::Surroundings::ofThisMachine();
        std::chrono::milliseconds second = std::chrono::seconds(1); ///< between two steps of the elapsed time
    };

    explicit MeetingRecorderView(const Surroundings &surroundings, QObject *parent = nullptr);
    /// Does what disappear() does.
    ~MeetingRecorderView() override;

    ScreenAudioRecorder &recorder() { return m_recorder; }
    TranscriptPane *pane() override { return &m_pane; }

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

    /// What the screen does when its window goes.
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

private:
    void followRecorder();
    void followPlayback();
    void setRecordStatus(const QString &status);
    void takeStartResult();
    void takeIsRecording();
    void takeOutputURL();

    ScreenAudioRecorder m_recorder;
    TranscriptPane m_pane;
    QTimer m_timer;
    QString m_recordStatus;
    double m_elapsed = 0;
    bool m_includeMic = true;
    bool m_seeking = false;
    std::optional<QString> m_earlierOutput; // what is being transcribed, once another recording was begun meanwhile
};

} // namespace sorvanta
