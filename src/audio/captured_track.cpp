#include "audio/captured_track.h"

#include <algorithm>
#include <utility>

namespace sorvanta {

CapturedTrack::CapturedTrack(const QString &path, const AudioFileSettings &settings, ReportFailure reportFailure)
    : m_format(settings.inputFormat())
    , m_writer(path, settings)
    , m_reportFailure(std::move(reportFailure))
{
}

void CapturedTrack::take(const SoundBuffer &buffer)
{
    const bool continues = std::exchange(m_continues, false) && buffer.isContinuous;
    if (m_isPaused)
        return;
    if (m_writer.status() == AudioWriter::Status::Failed) {
        m_reportFailure(m_writer.errorDescription());
        return;
    }
    const qint64 count = static_cast<qint64>(buffer.frames.size()) / m_format.bytesPerFrame();
    const qint64 start = continues ? m_written : position(buffer.time);
    const SoundTime end = m_end;
    const qint64 wanted = end == SoundTime::max() ? count : std::clamp<qint64>(position(end) - start, 0, count);
    const qint64 first = std::clamp<qint64>(m_written - start, 0, count);
    if (first >= wanted)
        return;
    fillUpTo(start);
    const auto frameSize = static_cast<std::size_t>(m_format.bytesPerFrame());
    m_writer.append(buffer.frames.subspan(static_cast<std::size_t>(first) * frameSize,
                                          static_cast<std::size_t>(wanted - first) * frameSize));
    m_written += wanted - first;
    m_continues = true;
}

void CapturedTrack::finish()
{
    const SoundTime end = m_end;
    if (!m_isPaused && end != SoundTime::max())
        fillUpTo(position(end));
    m_writer.finish();
}

void CapturedTrack::fillUpTo(qint64 frame)
{
    if (frame <= m_written)
        return;
    m_writer.appendSilence(frame - m_written);
    m_written = frame;
}

} // namespace sorvanta
