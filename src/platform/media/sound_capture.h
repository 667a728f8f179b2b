#pragma once

#include "platform/error.h"
#include "platform/media/audio_format.h"
#include "platform/media/sound_buffer.h"

#include <QString>

#include <functional>
#include <memory>

namespace sorvanta {

enum class SoundSource {
    Microphone, ///< the default source of the sound server
    SystemOutput, ///< the monitor of its default sink: whatever the machine plays, also this application
};

/// Captures sound from the sound server, from the making of this object on. It follows the user to another default
/// device, and comes back when the server does. Main thread only; no call waits for the server.
class SoundCapture {
public:
    /// What becomes of a capture, told on the main thread and never from within a call of its own. The capture may be
    /// destroyed in any of these. Each may be empty.
    struct Events {
        /// Sound flows from now on; or, of a device that takes longer than one and a half seconds, will flow.
        std::function<void()> opened = {};
        /// There is nothing to capture from, found out within two seconds. The capture is of no more use.
        std::function<void(const Error &)> failedToOpen = {};
        /// No sound has come for a second: the server or the device went away, or hangs.
        std::function<void(const Error &)> interrupted = {};
        /// After an interruption sound flows again.
        std::function<void()> resumed = {};
    };
    using Receive = std::function<void(const SoundBuffer &)>;

    /// Codes of the errors, whose domain is "SoundCapture".
    enum Failure {
        NoServer = 1,
        Refused, ///< the server lets this application not in, or not to the device
        NoDevice, ///< there is no source or no sink. A monitor of the default sink is no microphone
        NoAnswer, ///< the server or the device hangs
        Lost, ///< the server or the device is gone
        OtherFailure, ///< described in the words of libpulse
    };

    /// @param format in which the sound is asked for; the server converts
    /// @param threadName of the thread that receives the sound; see runOnNamedThread()
    /// @throws Error if the system has no thread to give, or no file
    SoundCapture(SoundSource source, const AudioFormat &format, const QString &threadName, Events events);
    /// Ends the capture; `receive` is not called any more once this returns.
    ~SoundCapture();
    SoundCapture(const SoundCapture &) = delete;
    SoundCapture &operator=(const SoundCapture &) = delete;

    /// Hands over all sound from now on; to be called once. `receive` is called on the thread of the capture, some 50
    /// times a second, and does not throw. If it takes long, the server keeps the sound for some seconds.
    void start(Receive receive);

private:
    class Session;
    std::unique_ptr<Session> m_session;
};

} // namespace sorvanta
