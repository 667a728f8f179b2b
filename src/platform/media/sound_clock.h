#pragma once

#include "platform/media/sound_buffer.h"

namespace sorvanta {

/// Gives the buffers of a capture their places in time. Their times are measured one by one and waver; the sound itself
/// runs evenly, but for the sound card's clock, which is not quite ours.
class SoundClock {
public:
    struct Place {
        SoundTime time;
        bool isContinuous;
    };

    explicit SoundClock(int sampleRate);

    /// The place of a buffer of `frames` whose first one was measured to be heard at `measured`.
    Place place(SoundTime measured, qint64 frames);

    /// Sound was lost in front of the next buffer, or may have been: its measured time counts.
    void interrupt() { m_isRunning = false; }

private:
    int m_sampleRate;
    bool m_isRunning = false;
    int m_tracked = 0; ///< how many buffers the mean is taken over
    SoundTime m_next; ///< where the next buffer stands if it continues
    SoundTime::duration m_deviating{}; ///< how long the measured times have been far off
};

} // namespace sorvanta
