#pragma once

#include "platform/media/audio_format.h"
#include "platform/media/sound_buffer.h"

#include <functional>

namespace sorvanta {

/// Gives the buffers of a capture their places in time. Their times are measured one by one and waver; the sound itself
/// runs evenly, but for the sound card's clock, which is not quite ours, and for what a busy server leaves out.
class SoundClock {
public:
    struct Place {
        SoundTime time;
        bool isContinuous;
        /// 1 if a frame is to be put in behind the buffer, -1 if its last one is to be left out: so that the
        /// frames of a recording, which are not placed one by one, keep pace with time.
        int correction;
    };

    explicit SoundClock(int sampleRate);

    /// The place of a buffer of `frames` whose first one was measured to be heard at `measured`.
    Place place(SoundTime measured, qint64 frames);

    /// Sound was lost in front of the next buffer, or may have been: its measured time counts.
    void interrupt() { m_isRunning = false; }

private:
    int nextCorrection();

    int m_sampleRate;
    bool m_isRunning = false;
    int m_tracked = 0; ///< how many buffers the mean is taken over
    SoundTime m_next; ///< where the next buffer stands if it continues
    SoundTime m_counted; ///< the same by the number of frames that came and were corrected
    bool m_isCorrecting = false;
    int m_sinceCorrection = 0; ///< buffers
    SoundTime::duration m_deviating{}; ///< how long the measured times have been far off
};

/// Gives `receive` the frames of a buffer that has this place, with one left out or put in if it says so.
void handOverCorrected(std::span<const std::byte> frames, const SoundClock::Place &place, const AudioFormat &format,
                       const std::function<void(const SoundBuffer &)> &receive);

} // namespace sorvanta
