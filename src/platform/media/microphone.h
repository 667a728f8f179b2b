#pragma once

#include "platform/media/audio_recorder.h"
#include "platform/media/sound_capture.h"

#include <functional>
#include <memory>
#include <optional>

namespace sorvanta {

/// The microphone of one screen: the right to use it, and recorders of what it hears. Main thread only.
class Microphone {
public:
    /// Told on the main thread while a recorder of this microphone lives. Each may be empty.
    struct Events {
        std::function<void(const Error &)> interrupted = {}; ///< no sound has come for a second
        std::function<void()> resumed = {};
    };

    /// @param threadName of the threads that receive the sound
    Microphone(const AudioFormat &format, QString threadName, Events events);

    /// Asks the sound server, within two seconds. Whether there is a server to ask at all, and a thread to ask on, is
    /// makeRecorder()'s to say.
    /// @param answer called on the main thread, not from within this call, and not once this object is gone or another
    ///        request was made: whether this application may record, and there is a microphone
    void requestAccess(std::function<void(bool)> answer);

    /// A recorder into a new file at `path`, to be made within the answer of yes: a microphone that nobody wants to
    /// record is let go.
    /// @throws Error if the sound server could not be asked, or the file cannot be made
    std::unique_ptr<AudioRecorder> makeRecorder(const QString &path, AudioRecorder::Events events);

private:
    void fail(const Error &failure);
    void answer(bool isGranted);

    AudioFormat m_format;
    QString m_threadName;
    Events m_events;
    std::function<void(bool)> m_answer;
    std::unique_ptr<SoundCapture> m_capture; ///< opened, or being opened, for the next recorder
    std::optional<Error> m_failure;
    std::shared_ptr<int> m_request; ///< gone with this object, and with the next request
};

} // namespace sorvanta
