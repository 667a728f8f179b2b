#pragma once

#include "platform/media/audio_format.h"
#include "platform/media/sound_buffer.h"

#include <deque>
#include <functional>
#include <optional>

namespace sorvanta {

/// Lays captured sound out in a file: of the stretches of time that are wanted every moment has its place, what lies
/// between them leaves no trace, and where sound is missing there is silence. One thread at a time.
class SoundTimeline {
public:
    /// @param write is given whole frames in order, sound and silence alike
    SoundTimeline(const AudioFormat &format, std::function<void(std::span<const std::byte>)> write);

    /// A wanted stretch begins, behind the one before. To be called before the sound of `time` arrives.
    void begin(SoundTime time);
    /// The last stretch ends.
    void end(SoundTime time);

    /// Takes the next buffer of the capture.
    void take(const SoundBuffer &buffer);

    /// No more sound comes: what is missing of the stretches that have ended becomes silence.
    void finish();

    /// Whether all that was wanted so far is written: the last stretch has ended.
    bool isComplete() const { return m_stretches.empty(); }

private:
    struct Stretch {
        SoundTime begin;
        std::optional<SoundTime> end;
        qint64 written = 0;
    };

    qint64 frames(SoundTime::duration duration) const { return soundFrames(duration, m_format.sampleRate); }
    void takePart(Stretch &stretch, const SoundBuffer &buffer, bool continues);
    void fill(Stretch &stretch, qint64 frames);

    AudioFormat m_format;
    std::function<void(std::span<const std::byte>)> m_write;
    std::deque<Stretch> m_stretches;
    bool m_isRunning = false; ///< whether the buffer before reached into the first stretch
};

} // namespace sorvanta
