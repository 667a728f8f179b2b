#pragma once

#include "platform/media/audio_writer.h"
#include "platform/media/sound_buffer.h"

#include <QString>

#include <atomic>
#include <functional>
#include <optional>

namespace sorvanta {

/// One file that grows by captured sound. Every buffer stands where its time says, counted from the beginning of the
/// track; where none came, or none was wanted, there is silence up to the next one. All operations but take() belong
/// to the main thread.
class CapturedTrack {
public:
    using ReportFailure = std::function<void(const QString &)>;

    /// Makes the file, where nothing may lie.
    /// @param reportFailure called on the thread of take(), with what the system says or an empty text
    /// @throws Error as AudioWriter does
    CapturedTrack(const QString &path, const AudioFileSettings &settings, ReportFailure reportFailure);

    /// The moment at which the file begins. To be called before the first take().
    void begin(SoundTime time) { m_begin = time; }

    /// While true, buffers are dropped.
    void setPaused(bool isPaused) { m_isPaused = isPaused; }

    /// Takes a buffer. Once the file cannot be written any further, each one is lost and reported.
    void take(const SoundBuffer &buffer);

    /// Nothing behind this moment is taken.
    void end(SoundTime time) { m_end = time; }

    /// Ends the file; nothing may be taken any more. It lasts to the end, but not through a pause that nothing
    /// followed.
    void finish();

private:
    qint64 position(SoundTime time) const { return soundFrames(time - m_begin, m_format.sampleRate); }
    void fillUpTo(qint64 frame);

    AudioFormat m_format;
    AudioWriter m_writer;
    ReportFailure m_reportFailure;
    SoundTime m_begin;
    qint64 m_written = 0; ///< frames
    bool m_continues = false; ///< whether the buffer before was written
    std::atomic<bool> m_isPaused = false;
    std::atomic<SoundTime> m_end = SoundTime::max();
};

} // namespace sorvanta
