#pragma once

#include "audio/captured_track.h"
#include "audio/playback_controller.h"
#include "audio/recording_mixer.h"
#include "audio/system_sound.h"
#include "platform/media/audio_recorder.h"

#include <QObject>
#include <QObjectBindableProperty>
#include <QString>

#include <functional>
#include <memory>
#include <optional>

namespace sorvanta {

/// Records what the machine plays and, on request, the microphone beside it; makes one file of them and plays it.
/// Main thread only. Its errors have the domain "MeetingRecorder".
class ScreenAudioRecorder : public QObject {
    Q_OBJECT

public:
    /// What the recorder works with. All functions are called on the main thread.
    struct Surroundings {
        std::function<std::unique_ptr<SystemSound>(const AudioFormat &, std::function<void(SystemSound::Answer)>)>
            openSystemSound = sorvanta::openSystemSound;
        /// Asks for the microphone; the answer comes later, on the main thread.
        std::function<void(std::function<void(bool)>)> requestMicAccess;
        /// A recorder into a new WAV file: 44,100 Hz, one channel, 16 bits. Throws an Error.
        std::function<std::unique_ptr<AudioRecorder>(const QString &path)> makeMicRecorder;
        RecordingMixer mixer = {};
        PlaybackController::OpenPlayer openPlayer = openAudioPlayer;
        AudioFileSettings systemFile = {AudioFileSettings::Container::M4a,  44100, 2, 128000,
                                        AudioFileSettings::AacSearch::Fast, true};

        /// With the microphone and the sound output of this machine.
        static Surroundings ofThisMachine();
    };

    explicit ScreenAudioRecorder(Surroundings surroundings, QObject *parent = nullptr);
    ~ScreenAudioRecorder() override;

    /// Starts a recording, unless one is on or is being started. Failures land in errorMessage().
    /// @param completed called when the start has succeeded or failed; not once this object is gone
    void startRecording(bool includeMic, std::function<void()> completed);
    /// Stops the recording. The system's file is whole when this returns; the final one follows.
    void stopRecording();
    /// What is played meanwhile leaves silence in the system's file; the microphone goes on.
    void pauseRecording();
    void resumeRecording();

    void togglePlayback() { m_playback.togglePlayback(); }
    void seekPlayback(double seconds) { m_playback.seekPlayback(seconds); }
    void stopPlayback() { m_playback.stopPlayback(); }
    /// Plays outputURL(), with the fields of the playback.
    PlaybackController &playback() { return m_playback; }
    const PlaybackController &playback() const { return m_playback; }

    /// Also true while paused.
    bool isRecording() const { return m_isRecording; }
    bool isStarting() const { return m_isStarting; }
    bool isPaused() const { return m_isPaused; }
    /// The path of the file that the user gets, or none: during a recording the system's file alone.
    const std::optional<QString> &outputURL() const { return m_outputURL.value(); }
    /// The last failure or warning, or none.
    const std::optional<QString> &errorMessage() const { return m_errorMessage.value(); }

    const std::optional<QString> &systemURL() const { return m_systemURL; }
    const std::optional<QString> &micURL() const { return m_micURL; }

    Q_SIGNAL void isRecordingChanged();
    Q_SIGNAL void isStartingChanged();
    Q_SIGNAL void isPausedChanged();
    Q_SIGNAL void outputURLChanged();
    Q_SIGNAL void errorMessageChanged();

protected:
    /// A second way for the microphone: a track of its own, which whoever captures it feeds. Nothing in this class
    /// opens it.
    void setMicWriter(const QString &path, const AudioFileSettings &settings);
    CapturedTrack *micWriter() const { return m_micWriter.get(); }

    /// How the user is told that the system's file, or the second way's, cannot be written on; the system's own
    /// words may be empty.
    static QString systemFailureText(const QString &description);
    static QString micFailureText(const QString &description);

private:
    void takeContent(const SystemSound::Answer &answer);
    void startSystemCapture();
    void takeMicAccess(bool isGranted);
    void startMicCapture(bool isGranted);
    void beginRecording();
    void failStart(const Error &failure);
    void endStart();
    void setTracksPaused(bool isPaused);
    void stopMicCapture();
    void dropMicFile();
    void finishWriting();
    void finishOutputs();
    void runMix(const QString &systemURL, const QString &micURL, const QString &destinationURL);
    void resetCaptureState(bool keepRecordingFlag);
    CapturedTrack::ReportFailure failureReport(std::function<void(const QString &)> show);

    Surroundings m_surroundings;
    bool m_includesMic = false; ///< of the start that goes on
    std::function<void()> m_startCompleted;
    std::unique_ptr<SystemSound> m_content; ///< asked for by the start that goes on
    std::unique_ptr<SystemSound> m_stream;
    std::shared_ptr<CapturedTrack> m_writer; ///< of the system's file
    std::unique_ptr<AudioRecorder> m_micRecorder;
    std::unique_ptr<SystemSound> m_micSession; ///< with m_micWriter, of the second way
    std::shared_ptr<CapturedTrack> m_micWriter;
    std::optional<QString> m_systemURL;
    std::optional<QString> m_micURL;

    Q_OBJECT_BINDABLE_PROPERTY(ScreenAudioRecorder, bool, m_isRecording, &ScreenAudioRecorder::isRecordingChanged)
    Q_OBJECT_BINDABLE_PROPERTY(ScreenAudioRecorder, bool, m_isStarting, &ScreenAudioRecorder::isStartingChanged)
    Q_OBJECT_BINDABLE_PROPERTY(ScreenAudioRecorder, bool, m_isPaused, &ScreenAudioRecorder::isPausedChanged)
    Q_OBJECT_BINDABLE_PROPERTY(ScreenAudioRecorder, std::optional<QString>, m_outputURL,
                               &ScreenAudioRecorder::outputURLChanged)
    Q_OBJECT_BINDABLE_PROPERTY(ScreenAudioRecorder, std::optional<QString>, m_errorMessage,
                               &ScreenAudioRecorder::errorMessageChanged)
    PlaybackController m_playback;
};

} // namespace sorvanta
