#pragma once

#include "platform/error.h"
#include "platform/media/audio_format.h"
#include "platform/media/sound_buffer.h"

#include <functional>
#include <memory>
#include <optional>

namespace sorvanta {

/// The right to hear what the machine plays, and the stream of it. Main thread only.
class SystemSound {
public:
    /// What the system says to the wish to hear it.
    struct Answer {
        std::optional<Error> failure = {};
        bool hasDisplay = false; ///< whether there is anything that plays sound
    };
    using Receive = std::function<void(const SoundBuffer &)>;

    virtual ~SystemSound() = default;

    /// Hands over the sound from now on, on a thread of its own. To be called once, behind an answer without a failure.
    virtual void start(Receive receive) = 0;
    /// Ends the stream, once all sound from before `time` was handed over; if it does not come within half a second,
    /// without it. `receive` is not called any more when this returns.
    virtual void stop(SoundTime time) = 0;
};

/// The domain of the system's refusals to be heard, and the code of a user's.
inline constexpr const char *systemSoundErrorDomain = "SCStreamErrorDomain";
constexpr int systemSoundDeclined = -3801;

/// Asks to hear what the machine plays: the sound of its default sink, in `format`.
/// @param answer called once on the main thread, within two seconds and not from within this call; not once the result
///        is gone
/// @throws Error if the system has no thread to give
std::unique_ptr<SystemSound> openSystemSound(const AudioFormat &format,
                                             const std::function<void(SystemSound::Answer)> &answer);

} // namespace sorvanta
