#pragma once

#include "platform/error.h"
#include "platform/media/audio_format.h"
#include "platform/media/sound_capture.h"

#include <QString>

#include <functional>
#include <memory>

namespace sorvanta {

/// Records sound into one WAV file, which plays at any moment, also if the process is killed. The file has exactly the
/// sound of the time between record() and pause() or stop(); a pause leaves no trace, and where no sound came, for
/// example because the sound server was started anew, the file is silent. Main thread only.
class AudioRecorder {
public:
    /// Told on the main thread; the recorder may be destroyed in it. May be empty.
    struct Events {
        /// The file cannot be written any further, and stays as it was before. The recorder has stopped.
        std::function<void(const Error &)> failed = {};
    };

    virtual ~AudioRecorder() = default;

    /// Starts, or goes on in the same file. After stop() this does nothing.
    virtual void record() = 0;
    virtual void pause() = 0;
    /// Ends the file and closes it. Waits until the last sound has come, for some 50 milliseconds; if it does not
    /// come within half a second, the file ends with silence.
    virtual void stop() = 0;
    /// From record() to pause(), stop() or a failure.
    virtual bool isRecording() const = 0;

    virtual void setMeteringEnabled(bool isEnabled) = 0;
    /// Takes the measures of the sound that was recorded since the last call.
    virtual void updateMeters() = 0;
    /// The average power of a channel at the last updateMeters(), in decibels: 0 is a square wave of full scale, -160
    /// is silence, or no sound.
    virtual float averagePower(int channel) const = 0;
};

constexpr float silentPower = -160;

/// A recorder of what `capture`, which was asked for in `format`, hears; of the type Int16. It records nothing yet.
/// @param path where nothing may lie
/// @throws Error of file_errors.h if the file cannot be made
std::unique_ptr<AudioRecorder> openAudioRecorder(const QString &path, const AudioFormat &format,
                                                 std::unique_ptr<SoundCapture> capture, AudioRecorder::Events events);

} // namespace sorvanta
