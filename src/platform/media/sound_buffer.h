#pragma once

#include <QtGlobal>

#include <chrono>
#include <cstddef>
#include <span>

namespace sorvanta {

/// The clock of all captured sound. It is never set, and it stands still while the machine sleeps.
using SoundTime = std::chrono::steady_clock::time_point;

/// The time that `frames` take at `sampleRate`.
constexpr SoundTime::duration soundDuration(qint64 frames, int sampleRate)
{
    return std::chrono::nanoseconds(frames * 1'000'000'000 / sampleRate);
}

/// The frames nearest to the end of `duration`; less than 0 for a negative one.
constexpr qint64 soundFrames(SoundTime::duration duration, int sampleRate)
{
    const qint64 scaled = std::chrono::nanoseconds(duration).count() / 1000 * sampleRate;
    return (scaled + (scaled < 0 ? -500'000 : 500'000)) / 1'000'000;
}

/// A piece of captured sound.
struct SoundBuffer {
    std::span<const std::byte> frames; ///< whole interleaved frames, valid during the call that hands them over
    SoundTime time; ///< when the first frame was heard, or played
    bool isContinuous = false; ///< whether it follows upon the buffer before; else sound may be missing between them
};

} // namespace sorvanta
